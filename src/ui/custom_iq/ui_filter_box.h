#pragma once
// The Filter group of the Custom IQ setup: pulse-shaping filter type, its roll-off (or
// bandwidth-time product for Gaussian), its length in symbols, and the oversampling. Filter types
// the engine would refuse are greyed out in the list (Gaussian under OQPSK, Half Sine elsewhere)
// and MSK locks the type at Gaussian. The group greys out for multitone and chirp, which have no
// pulse shaping.

#include "ui/custom_iq/ui_custom_iq_section.h"

namespace nal {

class ui_filter_box_t : public ui_custom_iq_section_t {
  Q_OBJECT

 public:
  ui_filter_box_t(custom_iq_t& engine, QTreeWidgetItem& group, QObject* parent = nullptr);

  // See base class.
  void refresh_from_engine() override;

 private:
  void _show_allowed_filter_types(bool oqpsk);

  QComboBox* _type;
  ui_double_spin_box_t* _alpha;
  ui_double_spin_box_t* _length;
  ui_double_spin_box_t* _oversampling;
};

}  // namespace nal

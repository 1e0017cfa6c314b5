#pragma once
// The multitone rows of the Modulation group: tone placement by span or by start and stop, the
// sample rate, tone count, single side, and the notch that leaves out tones in a band. Rows for
// the placement not in use are hidden; the notch limits grey out while the notch is off.

#include "ui/custom_iq/ui_custom_iq_section.h"

namespace nal {

class ui_multitone_panel_t : public ui_custom_iq_section_t {
  Q_OBJECT

 public:
  ui_multitone_panel_t(custom_iq_t& engine, QTreeWidgetItem& group, QObject* parent = nullptr);

  // See base class.
  void refresh_from_engine() override;

 private:
  QComboBox* _mode;
  ui_double_spin_box_t* _sample_rate;
  ui_double_spin_box_t* _span;
  ui_double_spin_box_t* _start;
  ui_double_spin_box_t* _stop;
  ui_double_spin_box_t* _number;
  QCheckBox* _single_side;
  QCheckBox* _notch;
  ui_double_spin_box_t* _notch_start;
  ui_double_spin_box_t* _notch_stop;
};

}  // namespace nal

#pragma once
// The Basic group of the Custom IQ setup: waveform name, frame number, mirror spectrum, and the
// derived sample rate, waveform length and sample count as read-only lines.

#include "ui/custom_iq/ui_custom_iq_section.h"

namespace nal {

class ui_basic_box_t : public ui_custom_iq_section_t {
  Q_OBJECT

 public:
  ui_basic_box_t(custom_iq_t& engine, QTreeWidgetItem& group, QObject* parent = nullptr);

  // See base class.
  void refresh_from_engine() override;

 private:
  QLineEdit* _name;
  ui_double_spin_box_t* _frames;
  QCheckBox* _mirror;
  QLabel* _sample_rate;
  QLabel* _length;
  QLabel* _points;
};

}  // namespace nal

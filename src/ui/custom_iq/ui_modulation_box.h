#pragma once
// The Modulation group of the Custom IQ setup: the modulator type and the rows of that modulator
// alone. APSK/QAM: constellation type and Gray coding. MFSK: FSK type, deviation (fixed under
// MSK) and the tone table. Multitone, custom constellation and chirp bring their own panels.
// Rows of the other modulators are hidden.

#include "ui/custom_iq/ui_custom_iq_section.h"

namespace nal {

class ui_fsk_deviation_table_t;

class ui_modulation_box_t : public ui_custom_iq_section_t {
  Q_OBJECT

 public:
  ui_modulation_box_t(custom_iq_t& engine, QTreeWidgetItem& group, QObject* parent = nullptr);

  // See base class.
  void refresh_from_engine() override;
  // See base class; the panels' rows too.
  void fit_row_heights() override;

 private:
  QComboBox* _modulator;
  QComboBox* _apsk_qam;
  QCheckBox* _gray;
  QComboBox* _mfsk;
  ui_double_spin_box_t* _deviation;
  ui_fsk_deviation_table_t* _deviation_table;
  QCheckBox* _show_symbols;
  std::vector<ui_custom_iq_section_t*> _panels;
};

}  // namespace nal

#pragma once
// The DataSource group of the Custom IQ setup: source type (PRBS order or user bits), symbol
// length and rate, the custom bits (edited in ui_bit_pattern_editor_dialog_t) and the derived
// bits per symbol. The symbol rows apply to the symbol modulators only and grey out for
// multitone and chirp; the custom bits apply to the user and custom sources.

#include "ui/custom_iq/ui_custom_iq_section.h"

namespace nal {

class ui_data_source_box_t : public ui_custom_iq_section_t {
  Q_OBJECT

 public:
  ui_data_source_box_t(custom_iq_t& engine, QTreeWidgetItem& group, QObject* parent = nullptr);

  // See base class.
  void refresh_from_engine() override;

 private:
  void _edit_custom_bits();

  QComboBox* _source;
  ui_double_spin_box_t* _symbol_length;
  ui_double_spin_box_t* _symbol_rate;
  QLabel* _custom_bits;
  QLabel* _bits_per_symbol;
};

}  // namespace nal

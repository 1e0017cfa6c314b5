#include "ui/custom_iq/ui_data_source_box.h"

#include <QLabel>
#include <QTreeWidget>
#include <cmath>

#include "ui/widgets/ui_bit_pattern_editor_dialog.h"
#include "ui/widgets/ui_count_text.h"

namespace nal {

ui_data_source_box_t::ui_data_source_box_t(custom_iq_t& engine, QTreeWidgetItem& group,
                                           QObject* parent)
    : ui_custom_iq_section_t(engine, group, parent) {
  _source = _add_choice(
      tr("Data source"), QStringLiteral("DataSourceType"),
      choices(common_lib::data_source_type_text_map(), DATA_SOURCE_PN7, DATA_SOURCE_CUSTOM),
      [this](uint32 type) { _engine.set_data_source_type(static_cast<data_source_type_t>(type)); });
  _symbol_length = _add_count(tr("Symbol length"), QStringLiteral("symbolLength"),
                              [this](uint32 length) { _engine.set_symbol_length(length); });
  _symbol_rate = _add_number(
      tr("Symbol rate"), QStringLiteral("symbolRate"), QStringLiteral("Sym/s"),
      [this](fp64 rate) { _engine.set_symbol_rate(static_cast<uint64>(std::llround(rate))); });
  _symbol_rate->set_integer(true);
  _custom_bits = _add_dialog_launcher(tr("Custom bits"), QStringLiteral("customBits"),
                                      [this] { _edit_custom_bits(); });
  _bits_per_symbol = _add_readout(tr("Bits per symbol"), QStringLiteral("bitsPerSymbol"));
}

void ui_data_source_box_t::_edit_custom_bits() {
  ui_bit_pattern_editor_dialog_t dialog(QString::fromStdString(_engine.get_custom_bits()),
                                        _group.treeWidget());
  if (dialog.exec() == QDialog::Accepted) {
    _apply([&] { _engine.set_custom_bits(dialog.bits().toStdString()); });
  }
}

void ui_data_source_box_t::refresh_from_engine() {
  _show(_source, _engine.get_data_source_type());
  _show(_symbol_length, _engine.get_symbol_length_bounds());
  _show(_symbol_rate, _engine.get_symbol_rate_bounds());
  const std::size_t bits = _engine.get_custom_bits().size();
  _custom_bits->setText(bits == 0 ? tr("None") : ui_count_text_t::bits(static_cast<qint64>(bits)));
  _bits_per_symbol->setText(QString::number(_engine.get_bits_per_symbol()));

  const modulator_type_t modulator = _engine.get_modulator_type();
  set_rows_enabled(modulator != MODULATOR_MULTITONE && modulator != MODULATOR_LFM);
  const data_source_type_t source = _engine.get_data_source_type();
  if (source != DATA_SOURCE_USER && source != DATA_SOURCE_CUSTOM) {
    _row_of(_custom_bits->parentWidget()).set_enabled(false);
  }
}

}  // namespace nal

#include "ui/custom_iq/ui_fsk_deviation_table.h"

#include <QHeaderView>

#include "ui/units/lib_unit.h"

namespace nal {

// Eight rows: 8FSK fits whole.
ui_fsk_deviation_table_t::ui_fsk_deviation_table_t(QWidget* parent)
    : ui_compact_table_t({tr("Symbol"), tr("Deviation")}, 8, parent) {
  setObjectName(QStringLiteral("FskDeviationTable"));
  verticalHeader()->setVisible(false);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionMode(QAbstractItemView::NoSelection);
  setFocusPolicy(Qt::NoFocus);
}

void ui_fsk_deviation_table_t::show_table(const lib_constellation_map_t& table) {
  setRowCount(static_cast<int>(table.size()));
  int row = 0;
  for (const auto& [symbol, deviation] : table) {
    _cell(row, 0)->setText(QString::number(symbol));
    _cell(row, 1)->setText(lib_unit_t::format(deviation.real(), QStringLiteral("Hz"), 10));
    ++row;
  }
}

}  // namespace nal

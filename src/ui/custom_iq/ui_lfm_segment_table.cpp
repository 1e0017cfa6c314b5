#include "ui/custom_iq/ui_lfm_segment_table.h"

#include "ui/widgets/ui_unit_item_delegate.h"

namespace nal {
namespace {

// Rows shown before the table scrolls.
constexpr int visible_rows = 6;
constexpr fp64 min_duration = 1e-8;
constexpr fp64 max_duration = 1.0;

}  // namespace

ui_lfm_segment_table_t::ui_lfm_segment_table_t(QWidget* parent)
    : ui_compact_table_t({tr("Start"), tr("Stop"), tr("Duration")}, visible_rows, parent),
      _delegate(new ui_unit_item_delegate_t(this)) {
  setObjectName(QStringLiteral("lfmSweepData"));
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setItemDelegate(_delegate);
  _delegate->set_column(COLUMN_DURATION, {QStringLiteral("s"), min_duration, max_duration, false});
  connect(this, &QTableWidget::itemChanged, this, &ui_lfm_segment_table_t::_on_item_changed);
}

void ui_lfm_segment_table_t::show_segments(const custom_iq_t::lfm_segment_list_t& segments,
                                           fp64 half_rate) {
  for (const column_t column : {COLUMN_START, COLUMN_STOP}) {
    _delegate->set_column(column, {QStringLiteral("Hz"), -half_rate, half_rate, false});
  }
  const QSignalBlocker blocker(this);
  const int rows = static_cast<int>(segments.size());
  const bool resized = rows != rowCount();
  setRowCount(rows);
  for (int row = 0; row < rows; ++row) {
    const fp64 values[] = {segments[row].start_frequency, segments[row].stop_frequency,
                           segments[row].duration};
    for (int column = 0; column < 3; ++column) {
      QTableWidgetItem* cell = _cell(row, column);
      if (cell->data(Qt::EditRole) != QVariant(values[column])) {
        cell->setData(Qt::EditRole, values[column]);
      }
    }
  }
  if (resized) {
    updateGeometry();
  }
  viewport()->update();
}

void ui_lfm_segment_table_t::_on_item_changed(QTableWidgetItem* item) {
  emit sig_cell_committed(item->row(), item->column(), item->data(Qt::EditRole).toDouble());
}

}  // namespace nal

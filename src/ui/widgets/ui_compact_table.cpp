#include "ui/widgets/ui_compact_table.h"

#include <QHeaderView>
#include <algorithm>

namespace nal {

ui_compact_table_t::ui_compact_table_t(const QStringList& headers, int visible_rows,
                                       QWidget* parent)
    : QTableWidget(0, headers.size(), parent), _visible_rows(visible_rows) {
  setHorizontalHeaderLabels(headers);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

QSize ui_compact_table_t::sizeHint() const {
  const int rows = std::clamp(rowCount(), 1, _visible_rows);
  const int height = horizontalHeader()->sizeHint().height() +
                     rows * verticalHeader()->defaultSectionSize() + 2 * frameWidth();
  return QSize(QTableWidget::sizeHint().width(), height);
}

QTableWidgetItem* ui_compact_table_t::_cell(int row, int column) {
  QTableWidgetItem* cell = item(row, column);
  if (cell == nullptr) {
    cell = new QTableWidgetItem;
    cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setItem(row, column, cell);
  }
  return cell;
}

}  // namespace nal

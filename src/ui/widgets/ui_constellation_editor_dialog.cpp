#include "ui/widgets/ui_constellation_editor_dialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <cmath>
#include <set>

#include "ui/chart/ui_constellation_chart.h"
#include "ui/widgets/ui_count_text.h"
#include "ui/widgets/ui_message_label.h"
#include "ui/widgets/ui_unit_item_delegate.h"

namespace nal {
namespace {

enum column_t { COLUMN_SYMBOL = 0, COLUMN_I = 1, COLUMN_Q = 2 };
// Generous: points are normalised when the waveform is computed.
constexpr fp64 max_coordinate = 1e6;

QTableWidgetItem* number_item(fp64 value) {
  auto* item = new QTableWidgetItem;
  item->setData(Qt::EditRole, value);
  item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return item;
}

}  // namespace

ui_constellation_editor_dialog_t::ui_constellation_editor_dialog_t(
    const lib_constellation_map_t& map, QWidget* parent)
    : ui_file_editor_dialog_t(tr("Constellation"), tr("Constellation (*.txt *.csv);;All files (*)"),
                              parent),
      _table(new QTableWidget(0, 3)),
      _preview(new ui_constellation_chart_t) {
  setObjectName(QStringLiteral("ConstellationEditorDialog"));

  _table->setObjectName(QStringLiteral("ConstellationTable"));
  _table->setHorizontalHeaderLabels({tr("Symbol"), tr("I"), tr("Q")});
  _table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  _table->verticalHeader()->setVisible(false);
  _table->setSelectionBehavior(QAbstractItemView::SelectRows);
  auto* delegate = new ui_unit_item_delegate_t(_table);
  delegate->set_column(COLUMN_SYMBOL,
                       {QString(), 0.0, ui_constellation_file_t::max_points - 1.0, true});
  delegate->set_column(COLUMN_I, {QString(), -max_coordinate, max_coordinate, false, 6});
  delegate->set_column(COLUMN_Q, {QString(), -max_coordinate, max_coordinate, false, 6});
  _table->setItemDelegate(delegate);
  _preview->setObjectName(QStringLiteral("ConstellationPreview"));
  _preview->setMinimumSize(280, 280);

  auto* add = new QPushButton(tr("&Add point"));
  auto* remove = new QPushButton(tr("&Remove"));
  _ok = _buttons->button(QDialogButtonBox::Ok);

  auto* table_buttons = new QHBoxLayout;
  table_buttons->addWidget(add);
  table_buttons->addWidget(remove);
  table_buttons->addStretch(1);
  table_buttons->addWidget(_load_button);
  table_buttons->addWidget(_save_button);
  auto* table_column = new QVBoxLayout;
  table_column->addWidget(_table, 1);
  table_column->addLayout(table_buttons);
  auto* body = new QHBoxLayout;
  body->addLayout(table_column, 1);
  body->addWidget(_preview, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(body, 1);
  layout->addWidget(_message);
  layout->addWidget(_buttons);
  resize(760, 440);

  connect(_table, &QTableWidget::itemChanged, this,
          &ui_constellation_editor_dialog_t::_on_table_changed);
  connect(add, &QPushButton::clicked, this, &ui_constellation_editor_dialog_t::_add_point);
  connect(remove, &QPushButton::clicked, this, &ui_constellation_editor_dialog_t::_remove_points);

  _set_rows(ui_constellation_file_t::from_map(map));
}

ui_constellation_rows_t ui_constellation_editor_dialog_t::rows() const {
  ui_constellation_rows_t rows;
  rows.reserve(_table->rowCount());
  for (int row = 0; row < _table->rowCount(); ++row) {
    const auto value = [&](int column) { return _table->item(row, column)->data(Qt::EditRole); };
    rows.push_back({value(COLUMN_SYMBOL).toUInt(),
                    lib_iq_sample_t(value(COLUMN_I).toDouble(), value(COLUMN_Q).toDouble())});
  }
  return rows;
}

lib_constellation_map_t ui_constellation_editor_dialog_t::constellation() const {
  return ui_constellation_file_t::to_map(rows());
}

void ui_constellation_editor_dialog_t::_set_rows(const ui_constellation_rows_t& rows) {
  {
    const QSignalBlocker blocker(_table);
    _table->setRowCount(0);
    _table->setRowCount(static_cast<int>(rows.size()));
    for (int row = 0; row < _table->rowCount(); ++row) {
      _table->setItem(row, COLUMN_SYMBOL, number_item(rows[row].symbol));
      _table->setItem(row, COLUMN_I, number_item(rows[row].point.real()));
      _table->setItem(row, COLUMN_Q, number_item(rows[row].point.imag()));
    }
  }
  _on_table_changed();
}

void ui_constellation_editor_dialog_t::_on_table_changed() {
  const ui_constellation_rows_t current = rows();
  _problem = ui_constellation_file_t::check(current);
  _ok->setEnabled(_problem.isEmpty());
  if (_problem.isEmpty()) {
    _message->show_message(tr("%1, %2 bits per symbol")
                               .arg(ui_count_text_t::points(static_cast<qint64>(current.size())))
                               .arg(qRound(std::log2(static_cast<fp64>(current.size())))),
                           false);
  } else {
    _message->show_message(_problem, true);
  }
  // The preview shows whatever is in the table, so a doubled symbol shows only once.
  _preview->update_constellation(ui_constellation_file_t::to_map(current));
}

void ui_constellation_editor_dialog_t::_add_point() {
  ui_constellation_rows_t current = rows();
  std::set<uint32> used;
  for (const ui_constellation_row_t& row : current) {
    used.insert(row.symbol);
  }
  uint32 symbol = 0;
  while (used.count(symbol) != 0) {
    ++symbol;
  }
  current.push_back({symbol, lib_iq_sample_t(0.0, 0.0)});
  _set_rows(current);
  _table->setCurrentCell(_table->rowCount() - 1, COLUMN_I);
  _table->editItem(_table->currentItem());
}

void ui_constellation_editor_dialog_t::_remove_points() {
  const QModelIndexList selected = _table->selectionModel()->selectedRows();
  std::set<int> doomed;
  for (const QModelIndex& index : selected) {
    doomed.insert(index.row());
  }
  if (doomed.empty() && _table->currentRow() >= 0) {
    doomed.insert(_table->currentRow());
  }
  const ui_constellation_rows_t current = rows();
  ui_constellation_rows_t kept;
  for (int row = 0; row < static_cast<int>(current.size()); ++row) {
    if (doomed.count(row) == 0) {
      kept.push_back(current[row]);
    }
  }
  _set_rows(kept);
}

bool ui_constellation_editor_dialog_t::load_file(const QString& path) {
  ui_constellation_rows_t loaded;
  QString error;
  if (!ui_constellation_file_t::read(path, loaded, error)) {
    _message->show_message(error, true);
    return false;
  }
  _set_rows(loaded);
  return true;
}

bool ui_constellation_editor_dialog_t::save_file(const QString& path) {
  QString error;
  if (!ui_constellation_file_t::write(path, rows(), error)) {
    _message->show_message(error, true);
    return false;
  }
  _message->show_message(tr("Saved %1").arg(ui_count_text_t::points(_table->rowCount())), false);
  return true;
}

}  // namespace nal

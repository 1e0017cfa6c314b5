#pragma once
// A table for a row of a setup tree: it asks for the height of its rows (the tree row takes its
// height from the hint) up to a number of rows, beyond which it scrolls. Right-aligned numbers.

#include <QTableWidget>

namespace nal {

class ui_compact_table_t : public QTableWidget {
  Q_OBJECT

 public:
  ui_compact_table_t(const QStringList& headers, int visible_rows, QWidget* parent = nullptr);

  // See base class.
  QSize sizeHint() const override;

 protected:
  // The item of a cell, created right-aligned when missing.
  QTableWidgetItem* _cell(int row, int column);

 private:
  int _visible_rows;
};

}  // namespace nal

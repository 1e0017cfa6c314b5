#pragma once
// Table cells holding numbers with engineering units: each column has its unit and limits, the
// cell shows "2.5 MHz" and edits with a ui_double_spin_box_t. The model keeps the plain number
// (a double in Qt::EditRole); committing an edit writes the clamped number back.

#include <QStyledItemDelegate>
#include <map>

#include "lib/lib_types.h"

namespace nal {

class ui_unit_item_delegate_t : public QStyledItemDelegate {
  Q_OBJECT

 public:
  struct column_t {
    QString unit;
    fp64 minimum = 0.0;
    fp64 maximum = 0.0;
    bool integer = false;
    // Significant digits shown in the cell; the editor shows them all.
    int digits = 10;
  };

  explicit ui_unit_item_delegate_t(QObject* parent = nullptr);

  // Columns without a setting edit as the default delegate does.
  void set_column(int column, const column_t& setting);

  // See base class.
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;

 protected:
  // See base class.
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  const column_t* _find(const QModelIndex& index) const;

  std::map<int, column_t> _columns;
};

}  // namespace nal

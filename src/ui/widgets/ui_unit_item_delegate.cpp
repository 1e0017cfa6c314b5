#include "ui/widgets/ui_unit_item_delegate.h"

#include "ui/widgets/ui_double_spin_box.h"

namespace nal {

ui_unit_item_delegate_t::ui_unit_item_delegate_t(QObject* parent) : QStyledItemDelegate(parent) {}

void ui_unit_item_delegate_t::set_column(int column, const column_t& setting) {
  _columns[column] = setting;
}

const ui_unit_item_delegate_t::column_t* ui_unit_item_delegate_t::_find(
    const QModelIndex& index) const {
  const auto found = _columns.find(index.column());
  return found == _columns.end() ? nullptr : &found->second;
}

QWidget* ui_unit_item_delegate_t::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                               const QModelIndex& index) const {
  const column_t* setting = _find(index);
  if (setting == nullptr) {
    return QStyledItemDelegate::createEditor(parent, option, index);
  }
  auto* editor = new ui_double_spin_box_t(parent);
  editor->setFrame(false);
  editor->set_unit(setting->unit);
  editor->set_integer(setting->integer);
  editor->set_range(setting->minimum, setting->maximum);
  return editor;
}

void ui_unit_item_delegate_t::setEditorData(QWidget* editor, const QModelIndex& index) const {
  auto* box = qobject_cast<ui_double_spin_box_t*>(editor);
  if (box == nullptr) {
    QStyledItemDelegate::setEditorData(editor, index);
    return;
  }
  box->set_value(index.data(Qt::EditRole).toDouble());
}

void ui_unit_item_delegate_t::setModelData(QWidget* editor, QAbstractItemModel* model,
                                           const QModelIndex& index) const {
  auto* box = qobject_cast<ui_double_spin_box_t*>(editor);
  if (box == nullptr) {
    QStyledItemDelegate::setModelData(editor, model, index);
    return;
  }
  // The view may close the editor before the box has read its text (Tab, a click elsewhere).
  box->commit_text();
  if (box->value() != index.data(Qt::EditRole).toDouble()) {
    model->setData(index, box->value(), Qt::EditRole);
  }
}

void ui_unit_item_delegate_t::initStyleOption(QStyleOptionViewItem* option,
                                              const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (const column_t* setting = _find(index)) {
    option->text = ui_double_spin_box_t::text_of(index.data(Qt::EditRole).toDouble(), setting->unit,
                                                 10, setting->integer);
  }
}

}  // namespace nal

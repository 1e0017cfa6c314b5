#include "ui/widgets/ui_tree_parameter.h"

#include <QTreeWidget>
#include <QWidget>
#include <algorithm>

namespace nal {

ui_tree_parameter_t::ui_tree_parameter_t(QTreeWidgetItem& group, const QString& name,
                                         QWidget* editor)
    : _item(new QTreeWidgetItem(&group, QStringList{name})), _editor(editor), _editor_column(1) {
  _item->setFlags(Qt::ItemIsEnabled);
  _item->treeWidget()->setItemWidget(_item, _editor_column, _editor);
  fit_height();
}

ui_tree_parameter_t::ui_tree_parameter_t(QTreeWidgetItem& group, QWidget* widget)
    : _item(new QTreeWidgetItem(&group)), _editor(widget), _editor_column(0) {
  _item->setFlags(Qt::ItemIsEnabled);
  _item->setFirstColumnSpanned(true);
  _item->treeWidget()->setItemWidget(_item, _editor_column, _editor);
  fit_height();
}

void ui_tree_parameter_t::set_name(const QString& name) {
  if (_editor_column == 1) {
    _item->setText(0, name);
  }
}

void ui_tree_parameter_t::set_limits_text(const QString& limits) {
  _item->setToolTip(0, QObject::tr("Limits: %1").arg(limits));
}

void ui_tree_parameter_t::set_visible(bool visible) {
  _item->setHidden(!visible);
}

void ui_tree_parameter_t::set_enabled(bool enabled) {
  _item->setDisabled(!enabled);
  _editor->setEnabled(enabled);
}

void ui_tree_parameter_t::fit_height() {
  // The view sizes rows by their items, not by the widgets placed on them. Rows of small editors
  // (check boxes, labels) get the height of a line edit, so that the column keeps one rhythm.
  const QSize hint = _editor->sizeHint();
  const int line_height = _editor->fontMetrics().height() + 10;
  _item->setSizeHint(_editor_column, QSize(hint.width(), std::max(hint.height(), line_height) + 2));
}

}  // namespace nal

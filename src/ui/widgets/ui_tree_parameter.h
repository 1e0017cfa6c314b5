#pragma once
// One parameter row of a setup tree (a two-column QTreeWidget): the parameter's name in the first
// column, its editor in the second, its limits in the row's tooltip. A row may instead hold one
// wide widget across both columns (a table, a row of buttons). The tree owns the item and the
// editor; this object only steers them, and must not outlive the tree.

#include <QString>

class QTreeWidgetItem;
class QWidget;

namespace nal {

class ui_tree_parameter_t {
 public:
  // Appends a row below `group`, which must already be in a tree.
  ui_tree_parameter_t(QTreeWidgetItem& group, const QString& name, QWidget* editor);
  // Appends a row whose `widget` spans both columns.
  ui_tree_parameter_t(QTreeWidgetItem& group, QWidget* widget);

  ui_tree_parameter_t(const ui_tree_parameter_t&) = delete;
  ui_tree_parameter_t& operator=(const ui_tree_parameter_t&) = delete;

  QTreeWidgetItem* item() const { return _item; }
  QWidget* editor() const { return _editor; }

  void set_name(const QString& name);
  // Shown as the tooltip of the name, "Limits: 1 to 300".
  void set_limits_text(const QString& limits);
  void set_visible(bool visible);
  void set_enabled(bool enabled);
  // Row height follows the editor's size hint; call after the editor's content changed its hint.
  void fit_height();

 private:
  QTreeWidgetItem* _item;
  QWidget* _editor;
  int _editor_column;
};

}  // namespace nal

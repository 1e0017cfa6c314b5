#pragma once
// The row of tab buttons above a ui_tab_widget_t, with the add button after the last tab. It
// keeps the current index (-1 while no tab exists) and tells its tab widget about presses and
// closes; the pages themselves belong to the tab widget. GUI thread only.

#include <QFrame>
#include <QIcon>

class QHBoxLayout;

namespace nal {

class ui_close_button_t;
class ui_tab_button_t;

class ui_tab_bar_t : public QFrame {
  Q_OBJECT
  Q_PROPERTY(int tabSpacing READ tab_spacing WRITE set_tab_spacing)

 public:
  explicit ui_tab_bar_t(QWidget* parent = nullptr);

  // Appends a tab button; the caller makes it current.
  void add_tab(const QString& text, const QIcon& icon);
  // Gives the tab at `index` a new text and icon and marks it selected.
  void rebuild_tab(int index, const QString& text, const QIcon& icon);
  // Removes the tab at `index` without any of the rules of a user's close.
  void remove_tab(int index);
  int count() const;
  int current_index() const { return _current_index; }
  // Does nothing for an index out of range or already current.
  void set_current_index(int index);
  ui_tab_button_t* tab_button(int index) const;
  ui_close_button_t* add_button() const { return _add_button; }
  // Inner tab widgets (setup and view tabs) have fixed tabs: no close buttons, no add button.
  void set_closable(bool closable);

  int tab_spacing() const;
  void set_tab_spacing(int spacing);

 signals:
  void sig_current_tab_changed(int index);
  void sig_tab_closed(int index);

 private slots:
  void _on_tab_pressed();
  void _on_close_pressed();

 private:
  QHBoxLayout* _tab_layout;
  ui_close_button_t* _add_button;
  int _current_index = -1;
  bool _closable = true;
};

}  // namespace nal

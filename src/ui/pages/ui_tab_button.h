#pragma once
// One tab of a ui_tab_bar_t: a checkable-looking push button with a close button at its right
// end. The dynamic property "selected" tells the style sheet which tab is current; the button
// deletes itself when closed.

#include <QPushButton>

namespace nal {

class ui_close_button_t;

class ui_tab_button_t : public QPushButton {
  Q_OBJECT

 public:
  ui_tab_button_t(const QString& text, const QIcon& icon, QWidget* parent = nullptr);

  // Sets the "selected" property and re-polishes, so that the style sheet applies at once.
  void set_selected(bool selected);
  bool is_selected() const;
  ui_close_button_t* close_button() const { return _close_button; }
  // Hidden close buttons make a tab that the user cannot close.
  void set_closable(bool closable);

 private:
  ui_close_button_t* _close_button;
};

}  // namespace nal

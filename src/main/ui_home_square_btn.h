#pragma once
// A large protocol button of the Home page. A click sends its text to the main window's
// addTabPage; buttons that open a menu instead leave the click to the menu.

#include <QPushButton>

namespace nal {

class ui_home_square_btn_t : public QPushButton {
  Q_OBJECT

 public:
  explicit ui_home_square_btn_t(const QString& text, QWidget* parent = nullptr);

 signals:
  void sig_module_click(QString text);
};

}  // namespace nal

#pragma once
// The menu of a Home button that groups several protocols (Bluetooth, IoT). When shown, it waits
// a quarter of a second, then lines its right edge up with the button's and moves up by one
// button height from where Qt put it.

#include <QMenu>

class QPushButton;

namespace nal {

class PopupMenu : public QMenu {
  Q_OBJECT

 public:
  explicit PopupMenu(QPushButton* button, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QPushButton* _button;
};

}  // namespace nal

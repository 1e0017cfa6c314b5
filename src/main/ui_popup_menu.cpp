#include "main/ui_popup_menu.h"

#include <QPushButton>
#include <QTime>

namespace nal {

PopupMenu::PopupMenu(QPushButton* button, QWidget* parent) : QMenu(parent), _button(button) {
  setObjectName("PopupMenu");
}

void PopupMenu::showEvent(QShowEvent* event) {
  // A deliberate pause of the GUI thread before the menu places itself. Elapsed time below zero
  // means midnight passed, which ends the wait as well.
  const QTime start = QTime::currentTime();
  for (int elapsed = 0; elapsed >= 0 && elapsed < 250;
       elapsed = start.msecsTo(QTime::currentTime())) {
  }
  const QPoint button_right = _button->mapToGlobal(QPoint(_button->width(), 0));
  move(button_right.x() - width(), pos().y() - _button->height());
  QMenu::showEvent(event);
}

}  // namespace nal

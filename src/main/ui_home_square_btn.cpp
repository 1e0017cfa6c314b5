#include "main/ui_home_square_btn.h"

#include <QColor>
#include <QGraphicsDropShadowEffect>

#include "main/ui_main_window.h"

namespace nal {

ui_home_square_btn_t::ui_home_square_btn_t(const QString& text, QWidget* parent)
    : QPushButton(text, parent) {
  setObjectName("HomeSquareButton");
  setFixedSize(225, 135);
  setCursor(Qt::PointingHandCursor);
  auto* shadow = new QGraphicsDropShadowEffect(this);
  shadow->setOffset(3, 3);
  shadow->setColor(QColor("#383839"));
  setGraphicsEffect(shadow);
  connect(this, &QPushButton::clicked, this, [this] {
    if (menu() == nullptr) {
      emit sig_module_click(this->text());
    }
  });
  if (ui_main_window_t* main_window = ui_find_main_window()) {
    connect(this, &ui_home_square_btn_t::sig_module_click, main_window,
            &ui_main_window_t::addTabPage);
  }
}

}  // namespace nal

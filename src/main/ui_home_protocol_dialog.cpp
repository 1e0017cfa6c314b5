#include "main/ui_home_protocol_dialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QVBoxLayout>

#include "main/ui_home_square_btn.h"
#include "main/ui_main_window.h"

namespace nal {

ui_home_protocol_dialog_t::ui_home_protocol_dialog_t(const QString& title,
                                                     const QStringList& protocols, QWidget* parent)
    : QDialog(parent, Qt::FramelessWindowHint) {
  setWindowOpacity(0.95);
  if (ui_main_window_t* main_window = ui_find_main_window()) {
    setGeometry(main_window->geometry());
  }
  auto* title_label = new QLabel(title, this);
  title_label->setObjectName("Title");
  auto* content = new QWidget(this);
  content->setObjectName("Content");
  auto* grid = new QGridLayout(content);
  for (int i = 0; i < protocols.size(); ++i) {
    auto* button = new ui_home_square_btn_t(protocols[i], content);
    connect(button, &QPushButton::clicked, this, &QDialog::close);
    grid->addWidget(button, i / 2, i % 2);
  }
  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(50);
  layout->setContentsMargins(120, 30, 120, 100);
  layout->addWidget(title_label);
  layout->addWidget(content);
}

void ui_home_protocol_dialog_t::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    close();
    return;
  }
  QDialog::mouseReleaseEvent(event);
}

}  // namespace nal

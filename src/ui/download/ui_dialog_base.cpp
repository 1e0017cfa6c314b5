#include "ui/download/ui_dialog_base.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace nal {

ui_dialog_base_t::ui_dialog_base_t(const QString& title, QWidget* parent) : QDialog(parent) {
  setWindowTitle(title);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

QHBoxLayout* ui_dialog_base_t::make_button_row(const QList<QPushButton*>& buttons) {
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  for (QPushButton* button : buttons) {
    row->addWidget(button);
  }
  if (!buttons.isEmpty()) {
    buttons.first()->setDefault(true);
  }
  return row;
}

}  // namespace nal

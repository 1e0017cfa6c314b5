#include "ui/pages/ui_tab_button.h"

#include <QHBoxLayout>
#include <QStyle>
#include <QVariant>

#include "ui/pages/ui_close_button.h"

namespace nal {

ui_tab_button_t::ui_tab_button_t(const QString& text, const QIcon& icon, QWidget* parent)
    : QPushButton(icon, text, parent),
      _close_button(new ui_close_button_t(":/image/widget/dialog/close_white.svg", 10, 15, this)) {
  setObjectName("TabButton");
  setFixedWidth(180);
  setIconSize(QSize(25, 25));
  setAttribute(Qt::WA_DeleteOnClose);
  setFocusPolicy(Qt::NoFocus);
  setProperty("selected", false);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addStretch();
  layout->addWidget(_close_button, 1, Qt::AlignRight);
}

void ui_tab_button_t::set_selected(bool selected) {
  setProperty("selected", selected);
  style()->unpolish(this);
  style()->polish(this);
}

bool ui_tab_button_t::is_selected() const {
  return property("selected").toBool();
}

void ui_tab_button_t::set_closable(bool closable) {
  _close_button->setVisible(closable);
}

}  // namespace nal

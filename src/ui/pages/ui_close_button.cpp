#include "ui/pages/ui_close_button.h"

namespace nal {

ui_close_button_t::ui_close_button_t(const QString& icon_path, int icon_size, int button_size,
                                     QWidget* parent)
    : QPushButton(parent) {
  setObjectName("CloseButton");
  setIcon(QIcon(icon_path));
  setIconSize(QSize(icon_size, icon_size));
  setFixedSize(button_size, button_size);
  setFocusPolicy(Qt::NoFocus);
}

}  // namespace nal

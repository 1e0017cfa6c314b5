#pragma once
// The small flat push button of the tab bar: the add button and each tab's close button share it.
// The style sheet keys on its object name, "CloseButton".

#include <QPushButton>

namespace nal {

class ui_close_button_t : public QPushButton {
  Q_OBJECT

 public:
  // `icon_size` is the square icon edge, `button_size` the fixed square button edge, in pixels.
  ui_close_button_t(const QString& icon_path, int icon_size, int button_size,
                    QWidget* parent = nullptr);
};

}  // namespace nal

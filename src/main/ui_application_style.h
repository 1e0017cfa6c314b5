#pragma once
// The application's widget style: Fusion with a dark palette, so that dialogs and widgets the
// style sheet does not reach match it, and title bar icons drawn for a dark title bar.

#include <QProxyStyle>

namespace nal {

class ui_application_style_t : public QProxyStyle {
  Q_OBJECT

 public:
  ui_application_style_t();

  QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption* option = nullptr,
                     const QWidget* widget = nullptr) const override;
  void polish(QPalette& palette) override;
  using QProxyStyle::polish;
};

}  // namespace nal

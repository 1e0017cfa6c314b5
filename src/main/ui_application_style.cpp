#include "main/ui_application_style.h"

#include <QIcon>
#include <QPalette>
#include <QStyleFactory>

namespace nal {

ui_application_style_t::ui_application_style_t() : QProxyStyle(QStyleFactory::create("Fusion")) {}

QIcon ui_application_style_t::standardIcon(StandardPixmap standardIcon, const QStyleOption* option,
                                           const QWidget* widget) const {
  switch (standardIcon) {
    case SP_TitleBarMinButton:
      return QIcon(":/image/title/minimize.svg");
    case SP_TitleBarNormalButton:
      return QIcon(":/image/title/restore.svg");
    case SP_TitleBarMaxButton:
      return QIcon(":/image/title/maximize.svg");
    case SP_TitleBarCloseButton:
      return QIcon(":/image/title/close.svg");
    default:
      return QProxyStyle::standardIcon(standardIcon, option, widget);
  }
}

void ui_application_style_t::polish(QPalette& palette) {
  const QColor window("#1f2329");
  const QColor base("#16191e");
  const QColor text("#d8dde3");
  const QColor disabled("#6b737d");
  const QColor accent("#3fa9f5");
  palette = QPalette(window);
  palette.setColor(QPalette::Window, window);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::AlternateBase, QColor("#1b1f24"));
  palette.setColor(QPalette::ToolTipBase, QColor("#2a3038"));
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::Button, QColor("#2a3038"));
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::BrightText, Qt::white);
  palette.setColor(QPalette::Link, accent);
  palette.setColor(QPalette::Highlight, QColor("#2d6ea3"));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::PlaceholderText, disabled);
  for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, disabled);
  }
}

}  // namespace nal

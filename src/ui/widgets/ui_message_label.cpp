#include "ui/widgets/ui_message_label.h"

#include <QStyle>
#include <QVariant>

namespace nal {

ui_message_label_t::ui_message_label_t(QWidget* parent) : QLabel(parent) {
  setObjectName(QStringLiteral("MessageLabel"));
  setWordWrap(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  show_message(QString(), false);
}

void ui_message_label_t::show_message(const QString& text, bool error) {
  _error = error;
  setText(text);
  setProperty("severity", error ? QStringLiteral("error") : QStringLiteral("info"));
  // Re-evaluates the style sheet's [severity=...] rules.
  style()->unpolish(this);
  style()->polish(this);
}

}  // namespace nal

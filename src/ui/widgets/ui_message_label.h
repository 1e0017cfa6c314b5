#pragma once
// The message line of a dialog: word-wrapped text with a dynamic property "severity" ("error" or
// "info") that the style sheet colours, e.g. QLabel#MessageLabel[severity="error"].

#include <QLabel>

namespace nal {

class ui_message_label_t : public QLabel {
  Q_OBJECT

 public:
  explicit ui_message_label_t(QWidget* parent = nullptr);

  void show_message(const QString& text, bool error);
  bool is_error() const { return _error; }

 private:
  bool _error = false;
};

}  // namespace nal

#pragma once
// Editor of a custom bit pattern: a text of "0" and "1" (white space and "#" comments allowed for
// layout) with a live bit count. A keystroke, paste or drop that would bring in any other
// character is undone and the message says which character at which place. Patterns load from and
// save to text files (ui_bit_pattern_file_t).

#include <QDialog>

class QDialogButtonBox;
class QLabel;
class QPlainTextEdit;

namespace nal {

class ui_message_label_t;

class ui_bit_pattern_editor_dialog_t : public QDialog {
  Q_OBJECT

 public:
  explicit ui_bit_pattern_editor_dialog_t(const QString& bits, QWidget* parent = nullptr);

  // The pattern as a string of '0' and '1'.
  QString bits() const { return _bits; }
  // On failure the editor keeps its text and message() tells why.
  bool load_file(const QString& path);
  bool save_file(const QString& path);
  QString message() const;

 private:
  void _on_text_changed();
  void _choose_file_to_load();
  void _choose_file_to_save();

  QPlainTextEdit* _edit;
  QLabel* _count;
  ui_message_label_t* _message;
  QString _bits;
  // The editor's text as last accepted; a refused change returns to it.
  QString _accepted_text;
};

}  // namespace nal

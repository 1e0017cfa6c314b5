#pragma once
// Editor of a custom bit pattern: a text of "0" and "1" (white space and "#" comments allowed for
// layout) with a live bit count. A keystroke, paste or drop that would bring in any other
// character is undone and the message says which character at which place. Patterns load from and
// save to text files (ui_bit_pattern_file_t).

#include "ui/widgets/ui_file_editor_dialog.h"

class QLabel;
class QPlainTextEdit;

namespace nal {

class ui_bit_pattern_editor_dialog_t : public ui_file_editor_dialog_t {
  Q_OBJECT

 public:
  explicit ui_bit_pattern_editor_dialog_t(const QString& bits, QWidget* parent = nullptr);

  // The pattern as a string of '0' and '1'.
  QString bits() const { return _bits; }
  // See base class.
  bool load_file(const QString& path) override;
  bool save_file(const QString& path) override;

 private:
  void _on_text_changed();

  QPlainTextEdit* _edit;
  QLabel* _count;
  QString _bits;
  // The editor's text as last accepted; a refused change returns to it.
  QString _accepted_text;
};

}  // namespace nal

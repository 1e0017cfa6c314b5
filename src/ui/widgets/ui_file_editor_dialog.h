#pragma once
// Common frame of the editors whose value lives in text files: "Load..." and "Save..." buttons
// that ask for a path and call load_file() or save_file(), a message line for their outcome, and
// OK and Cancel. A subclass places these among its own widgets.

#include <QDialog>

class QDialogButtonBox;
class QPushButton;

namespace nal {

class ui_message_label_t;

class ui_file_editor_dialog_t : public QDialog {
  Q_OBJECT

 public:
  // On failure the editor keeps its content and message() tells why.
  virtual bool load_file(const QString& path) = 0;
  virtual bool save_file(const QString& path) = 0;
  QString message() const;

 protected:
  // `file_filter` as QFileDialog takes it, e.g. "Bit pattern (*.txt);;All files (*)".
  ui_file_editor_dialog_t(const QString& title, const QString& file_filter, QWidget* parent);

  QPushButton* _load_button;
  QPushButton* _save_button;
  ui_message_label_t* _message;
  QDialogButtonBox* _buttons;

 private:
  void _choose_file_to_load();
  void _choose_file_to_save();

  QString _file_filter;
};

}  // namespace nal

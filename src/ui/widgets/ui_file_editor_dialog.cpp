#include "ui/widgets/ui_file_editor_dialog.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QPushButton>

#include "ui/widgets/ui_message_label.h"

namespace nal {

ui_file_editor_dialog_t::ui_file_editor_dialog_t(const QString& title, const QString& file_filter,
                                                 QWidget* parent)
    : QDialog(parent),
      _load_button(new QPushButton(tr("&Load..."))),
      _save_button(new QPushButton(tr("&Save..."))),
      _message(new ui_message_label_t),
      _buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)),
      _file_filter(file_filter) {
  setWindowTitle(title);
  connect(_load_button, &QPushButton::clicked, this,
          &ui_file_editor_dialog_t::_choose_file_to_load);
  connect(_save_button, &QPushButton::clicked, this,
          &ui_file_editor_dialog_t::_choose_file_to_save);
  connect(_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QString ui_file_editor_dialog_t::message() const {
  return _message->text();
}

void ui_file_editor_dialog_t::_choose_file_to_load() {
  const QString path =
      QFileDialog::getOpenFileName(this, tr("Load %1").arg(windowTitle()), QString(), _file_filter);
  if (!path.isEmpty()) {
    load_file(path);
  }
}

void ui_file_editor_dialog_t::_choose_file_to_save() {
  const QString path =
      QFileDialog::getSaveFileName(this, tr("Save %1").arg(windowTitle()), QString(), _file_filter);
  if (!path.isEmpty()) {
    save_file(path);
  }
}

}  // namespace nal

#include "ui/widgets/ui_bit_pattern_editor_dialog.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/widgets/ui_bit_pattern_file.h"
#include "ui/widgets/ui_count_text.h"
#include "ui/widgets/ui_message_label.h"

namespace nal {
ui_bit_pattern_editor_dialog_t::ui_bit_pattern_editor_dialog_t(const QString& bits, QWidget* parent)
    : ui_file_editor_dialog_t(tr("Bit Pattern"), tr("Bit pattern (*.txt *.bits);;All files (*)"),
                              parent),
      _edit(new QPlainTextEdit),
      _count(new QLabel) {
  setObjectName(QStringLiteral("BitPatternEditorDialog"));
  _edit->setObjectName(QStringLiteral("BitPatternEdit"));
  _edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  _edit->setPlaceholderText(tr("Type or paste 0 and 1, e.g. 0101 1100"));
  _count->setObjectName(QStringLiteral("BitCountLabel"));

  auto* label = new QLabel(tr("&Bits (first bit on air first):"));
  label->setBuddy(_edit);
  auto* clear = new QPushButton(tr("C&lear"));

  auto* file_row = new QHBoxLayout;
  file_row->addWidget(_count, 1);
  file_row->addWidget(clear);
  file_row->addWidget(_load_button);
  file_row->addWidget(_save_button);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addWidget(_edit, 1);
  layout->addLayout(file_row);
  layout->addWidget(_message);
  layout->addWidget(_buttons);
  resize(520, 360);

  connect(_edit, &QPlainTextEdit::textChanged, this,
          &ui_bit_pattern_editor_dialog_t::_on_text_changed);
  connect(clear, &QPushButton::clicked, _edit, &QPlainTextEdit::clear);

  _edit->setPlainText(ui_bit_pattern_file_t::print(bits).trimmed());
}

void ui_bit_pattern_editor_dialog_t::_on_text_changed() {
  const QString text = _edit->toPlainText();
  QString error;
  if (!ui_bit_pattern_file_t::parse(text, _bits, error)) {
    const int position = _edit->textCursor().position();
    const int added = text.size() - _accepted_text.size();
    {
      const QSignalBlocker blocker(_edit);
      _edit->setPlainText(_accepted_text);
    }
    QTextCursor cursor = _edit->textCursor();
    cursor.setPosition(std::max(0, std::min(position - added, int(_accepted_text.size()))));
    _edit->setTextCursor(cursor);
    _message->show_message(tr("Refused: %1").arg(error), true);
    return;
  }
  _accepted_text = text;
  _count->setText(ui_count_text_t::bits(_bits.size()));
  if (_message->is_error()) {
    _message->show_message(QString(), false);
  }
}

bool ui_bit_pattern_editor_dialog_t::load_file(const QString& path) {
  QString bits;
  QString error;
  if (!ui_bit_pattern_file_t::read(path, bits, error)) {
    _message->show_message(error, true);
    return false;
  }
  _edit->setPlainText(ui_bit_pattern_file_t::print(bits).trimmed());
  _message->show_message(tr("Loaded %1").arg(ui_count_text_t::bits(bits.size())), false);
  return true;
}

bool ui_bit_pattern_editor_dialog_t::save_file(const QString& path) {
  QString error;
  if (!ui_bit_pattern_file_t::write(path, _bits, error)) {
    _message->show_message(error, true);
    return false;
  }
  _message->show_message(tr("Saved %1").arg(ui_count_text_t::bits(_bits.size())), false);
  return true;
}

}  // namespace nal

#pragma once
// What the dialogs of the instrument link share: a plain window-manager frame with a title and
// no help button, Esc to cancel and Enter for the default button (QDialog's own keys), and a
// row of buttons on the right.

#include <QDialog>
#include <QList>
#include <QString>

class QHBoxLayout;
class QPushButton;

namespace nal {

class ui_dialog_base_t : public QDialog {
  Q_OBJECT

 public:
  ui_dialog_base_t(const QString& title, QWidget* parent);

 protected:
  // `buttons` aligned right, in order; the first is the default, pressed by Enter.
  static QHBoxLayout* make_button_row(const QList<QPushButton*>& buttons);
};

}  // namespace nal

#pragma once
// Help > About: product name, version, the acknowledgement of the open source libraries the
// program is built on, and Close.

#include <QDialog>

namespace nal {

class ui_dialog_about_t : public QDialog {
  Q_OBJECT

 public:
  explicit ui_dialog_about_t(QWidget* parent = nullptr);

  // The libraries and their licences, as the acknowledgement button shows them.
  static QString open_source_acknowledgement();
};

}  // namespace nal

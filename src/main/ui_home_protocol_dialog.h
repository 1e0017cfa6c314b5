#pragma once
// An overlay form of the protocol choice: it covers the main window, half transparent, with one
// square button per protocol in two columns. A button adds its protocol's tab and closes the
// overlay, as does a left click anywhere else. The Home page uses its popup menus instead.

#include <QDialog>
#include <QStringList>

namespace nal {

class ui_home_protocol_dialog_t : public QDialog {
  Q_OBJECT

 public:
  ui_home_protocol_dialog_t(const QString& title, const QStringList& protocols,
                            QWidget* parent = nullptr);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
};

}  // namespace nal

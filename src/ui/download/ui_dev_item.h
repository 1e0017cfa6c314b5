#pragma once
// One row of the device list: the resource name, its identification or "Unknow", the tick box
// and the download status. A double click asks for a connection to the device. GUI thread only.

#include <QFrame>
#include <QString>

#include "ui/download/ui_device_model.h"

class QCheckBox;
class QLabel;

namespace nal {

class ui_dev_item_t : public QFrame {
  Q_OBJECT

 public:
  static constexpr int row_height = 52;

  explicit ui_dev_item_t(QWidget* parent = nullptr);

  // The name shown in the title, "Resource Name" until a device is shown.
  QString get_resource_name() const;
  // Shows `device`, whichever it is; the row then belongs to it.
  void show_device(const ui_device_model_t& device);
  // What a double click does: shows that a connection is under way and asks for it.
  void request_connection();
  // What a click on the tick box does.
  void toggle_selected();

 public slots:
  // Shows `devInfo` when it is this row's device.
  void on_update_dev_info(const ui_device_model_t& devInfo);

 signals:
  void sig_connect_resource(QString resName);
  // The user ticked or unticked the row.
  void sig_selected_changed(QString resName, bool selected);

 protected:
  // See base class.
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  // Fits the identification to its label whenever the label's width changes.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // The identification, or "Unknow" when there is none; shortened with an ellipsis where the
  // label is too narrow for it.
  void _show_idn();

  QLabel* _title;
  QLabel* _info;
  QCheckBox* _tick;
  QLabel* _status;
  QString _idn;
  // Between a request for a connection and the answer, which the label shows meanwhile.
  bool _connecting = false;
};

}  // namespace nal

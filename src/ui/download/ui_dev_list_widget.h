#pragma once
// The device list of the Download dialog: one ui_dev_item_t per device of a ui_devices_model_t,
// rows separated by an item whose widget is named "SplitLine", so that device k sits at list
// index 2k. An overlay, "Updating Devices Information...", covers the list while the devices
// are being listed. Keyboard: Enter connects the current device, Space ticks it. GUI thread
// only.

#include <QListWidget>
#include <QString>

class QLabel;

namespace nal {

class ui_dev_item_t;
class ui_devices_model_t;

class ui_dev_list_widget_t : public QListWidget {
  Q_OBJECT

 public:
  explicit ui_dev_list_widget_t(QWidget* parent = nullptr);

  // Shows the devices of `model` and follows its changes; `model` outlives the list.
  void set_devices_model(ui_devices_model_t* model);
  void set_overlay_visible(bool visible);
  bool is_overlay_visible() const;
  // The row of `resName`, or null.
  ui_dev_item_t* get_item(const QString& resName) const;

 signals:
  void sig_connect_resource(QString resName);

 protected:
  // See base class.
  void keyPressEvent(QKeyEvent* event) override;
  // See base class.
  void resizeEvent(QResizeEvent* event) override;

 private:
  // One row per device of the model, in its order.
  void _rebuild();
  void _add_split_line();
  void _add_row(const QString& resName);
  ui_dev_item_t* _current_item() const;

  ui_devices_model_t* _model = nullptr;
  QLabel* _overlay;
};

}  // namespace nal

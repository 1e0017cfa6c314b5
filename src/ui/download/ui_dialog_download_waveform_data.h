#pragma once
// The Download dialog: the instruments the link knows, each with its tick box, and a download
// of the page's current setting or of a waveform file to every ticked instrument that has
// answered "*IDN?".
//
// It talks to the instrument link through a comm_deal_t, on the GUI thread: a connection or a
// transfer blocks the GUI up to the session timeout, after the row's "Connecting device, please
// wait..." or "[Downloading...]" has been painted. A download of the current setting goes out
// as sig_download_curr_waveform_to_inst(resName) to the page that opened the dialog, which
// generates and sends the waveform and answers with on_download_data_callback(resName, result).
//
// Keyboard: Esc closes, Enter presses "Download" (in the list: connects the current device),
// Space in the list ticks the current device.

#include <QByteArray>
#include <QString>
#include <QVector>
#include <functional>

#include "ui/download/ui_device_model.h"
#include "ui/download/ui_dialog_base.h"

class QPushButton;
class QRadioButton;

namespace nal {

class comm_deal_t;
class ui_dev_list_widget_t;
class ui_devices_model_t;

class ui_dialog_download_waveform_data_t : public ui_dialog_base_t {
  Q_OBJECT

 public:
  // Asks for a waveform file; the path chosen, empty when cancelled.
  using file_chooser_t =
      std::function<QString(QWidget* parent, const QString& caption, const QString& filter)>;

  // On the process's instrument link.
  explicit ui_dialog_download_waveform_data_t(QWidget* parent = nullptr);
  // On `deal`, which outlives the dialog.
  explicit ui_dialog_download_waveform_data_t(comm_deal_t& deal, QWidget* parent = nullptr);

  // Replaces the file box of "From File".
  void set_file_chooser(file_chooser_t chooser);
  const ui_devices_model_t& get_devices_model() const { return *_devices; }
  ui_dev_list_widget_t* get_dev_list() const { return _dev_list; }

 signals:
  // A device's identification, tick or status changed.
  void sig_update_dev_info(ui_device_model_t devInfo);
  // The user added an address; goes to the link.
  void sig_add_new_tcpip_resource(QString ip);
  // A file's bytes for one device; goes to the link, which answers with its callback.
  void sig_download_waveform_to_inst(QString resName, QByteArray data);
  // The devices to show, as the link lists them.
  void sig_list_resources(QVector<QString> resNameList);
  // The page's current setting for one device; the page answers with on_download_data_callback.
  void sig_download_curr_waveform_to_inst(QString resName);

 public slots:
  // "Download" is enabled while one device is ticked and identified.
  void update_download_enabled();
  // The list of devices changed: the overlay goes.
  void on_dev_list_changed();
  // The end of a transfer to `resName`: status 2 when it succeeded, 3 when not.
  void on_download_data_callback(const QString& resName, bool successed);

 private:
  QWidget* _make_devices_group();
  QWidget* _make_data_source_group();
  void _connect_to_link();
  void _add_new_resource();
  void _connect_resource(const QString& resName);
  void _download();
  // The chosen file's bytes; empty when cancelled or unreadable.
  QByteArray _read_chosen_file();

  comm_deal_t& _deal;
  ui_devices_model_t* _devices;
  ui_dev_list_widget_t* _dev_list;
  QPushButton* _add_new;
  QRadioButton* _current_setting;
  QRadioButton* _from_file;
  QPushButton* _download_button;
  file_chooser_t _choose_file;
};

}  // namespace nal

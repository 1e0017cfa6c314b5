#pragma once
// The Qt front of the device list, through which the Download dialog and the pages reach
// visa_device_manager_t. The process has one instance, created on first use on the thread that
// asks (the GUI thread) with no parent; tests build their own over their own device manager.
// Slots run the VISA calls on the calling thread and block up to the session timeout.

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QVector>

namespace nal {

class visa_device_manager_t;

class comm_deal_t : public QObject {
  Q_OBJECT

 public:
  static comm_deal_t* instance();

  explicit comm_deal_t(visa_device_manager_t& device_manager, QObject* parent = nullptr);

 signals:
  // The resources to show: those found, then those added by hand.
  void sig_list_resources(QVector<QString> resNameList);
  void sig_update_resource_info(QString resName, QString idn);
  // The end of a transfer started by download_waveform_data_to_inst.
  void sig_download_data_to_inst_callback(QString resName, bool successed);

 public slots:
  void add_tcpip_inst_res(const QString& ip);
  // True when the resource opened; its identification goes out either way.
  bool connect_resource(const QString& resName);
  // Lists the known resources without searching again.
  void update_resource_list();
  void download_waveform_data_to_inst(const QString& resName, const QByteArray& waveformData);

 private:
  visa_device_manager_t& _device_manager;
};

}  // namespace nal

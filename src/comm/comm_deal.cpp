#include "comm/comm_deal.h"

#include "comm/visa_device_manager.h"

namespace nal {

comm_deal_t* comm_deal_t::instance() {
  static comm_deal_t* const deal = new comm_deal_t(visa_device_manager_t::instance());
  return deal;
}

comm_deal_t::comm_deal_t(visa_device_manager_t& device_manager, QObject* parent)
    : QObject(parent), _device_manager(device_manager) {
  qRegisterMetaType<QVector<QString>>("QVector<QString>");
}

void comm_deal_t::add_tcpip_inst_res(const QString& ip) {
  _device_manager.add_tcpip_resource(ip);
  update_resource_list();
}

bool comm_deal_t::connect_resource(const QString& resName) {
  const bool connected = _device_manager.connect_resource(resName);
  emit sig_update_resource_info(resName, _device_manager.get_resource_info(resName).idn);
  return connected;
}

void comm_deal_t::update_resource_list() {
  QVector<QString> names;
  for (const QStringList& group :
       {_device_manager.get_found_names(), _device_manager.get_added_names()}) {
    for (const QString& name : group) {
      if (!names.contains(name)) {
        names.append(name);
      }
    }
  }
  emit sig_list_resources(names);
  for (const QString& name : qAsConst(names)) {
    emit sig_update_resource_info(name, _device_manager.get_resource_info(name).idn);
  }
}

void comm_deal_t::download_waveform_data_to_inst(const QString& resName,
                                                 const QByteArray& waveformData) {
  const bool connected = connect_resource(resName);
  const bool sent =
      connected && !waveformData.isEmpty() &&
      _device_manager.send_to_current(waveformData.constData(), waveformData.size(), QByteArray());
  emit sig_download_data_to_inst_callback(resName, sent);
}

}  // namespace nal

#include "ui/download/ui_devices_model.h"

namespace nal {

ui_devices_model_t::ui_devices_model_t(QObject* parent) : QObject(parent) {
  qRegisterMetaType<ui_device_model_t>("ui_device_model_t");
}

void ui_devices_model_t::set_resource_names(const QVector<QString>& names) {
  QMap<QString, ui_device_model_t> devices;
  for (const QString& name : names) {
    ui_device_model_t device = _devices.value(name);
    device.resource_name = name;
    devices.insert(name, device);
  }
  _devices = devices;
  emit sig_update_ui();
}

bool ui_devices_model_t::set_idn(const QString& name, const QString& idn) {
  return _update(name, [&idn](ui_device_model_t& device) { device.idn = idn; });
}

bool ui_devices_model_t::set_selected(const QString& name, bool selected) {
  return _update(name, [selected](ui_device_model_t& device) { device.selected = selected; });
}

bool ui_devices_model_t::set_download_status(const QString& name, int status) {
  if (status < ui_device_model_t::status_none || status > ui_device_model_t::status_failed ||
      !_update(name, [status](ui_device_model_t& device) { device.download_status = status; })) {
    return false;
  }
  emit sig_update_download_status(name, status);
  return true;
}

QStringList ui_devices_model_t::get_downloadable_names() const {
  QStringList names;
  for (const ui_device_model_t& device : _devices) {
    if (device.selected && !device.idn.isEmpty()) {
      names.append(device.resource_name);
    }
  }
  return names;
}

bool ui_devices_model_t::_update(const QString& name,
                                 const std::function<void(ui_device_model_t&)>& change) {
  const auto entry = _devices.find(name);
  if (entry == _devices.end()) {
    return false;
  }
  change(*entry);
  emit sig_update_dev_info(*entry);
  return true;
}

}  // namespace nal

#include "comm/visa_device_manager.h"

#include "comm/comm_visa_backend.h"
#include "comm/visa_resource.h"
#include "comm/visa_resource_manager.h"

namespace nal {

visa_device_manager_t& visa_device_manager_t::instance() {
  // Never destroyed: resources may still be used while static objects are torn down.
  static visa_device_manager_t* const manager =
      new visa_device_manager_t(comm_visa_backend_t::process_backend());
  return *manager;
}

visa_device_manager_t::visa_device_manager_t(std::shared_ptr<comm_visa_api_t> api)
    : _resource_manager(new visa_resource_manager_t(std::move(api))) {
  update_resource_list();
}

visa_device_manager_t::~visa_device_manager_t() {
  delete _resource_manager;
}

void visa_device_manager_t::update_resource_list() {
  QMap<QString, visa_resource_t*> found;
  for (const QString& name : _resource_manager->find_resources(QStringLiteral("?*::INSTR"))) {
    visa_resource_t* resource = _found_resources.take(name);
    found.insert(name,
                 resource != nullptr ? resource : new visa_resource_t(_resource_manager, name));
  }
  for (visa_resource_t* gone : qAsConst(_found_resources)) {
    _retire(gone);
  }
  _found_resources = found;
}

void visa_device_manager_t::add_tcpip_resource(const QString& ip) {
  add_resource(tcpip_resource_name(ip));
}

QString visa_device_manager_t::tcpip_resource_name(const QString& ip) {
  return ip == QLatin1String("localhost")
             ? QStringLiteral("LOCALHOST")
             : QStringLiteral("TCPIP0::") + ip + QStringLiteral("::inst0::INSTR");
}

void visa_device_manager_t::add_resource(const QString& name) {
  if (_added_resources.contains(name)) {
    return;
  }
  _added_resources.insert(name, new visa_resource_t(_resource_manager, name));
  _resource_info.insert(name, {_default_symbolic_name, _default_resource_name, _default_idn});
}

void visa_device_manager_t::remove_resource(const QString& name) {
  visa_resource_t* resource = _added_resources.take(name);
  if (resource != nullptr) {
    _retire(resource);
  }
  _resource_info.remove(name);
}

void visa_device_manager_t::_retire(visa_resource_t* resource) {
  if (resource == _current_resource) {
    _current_resource = nullptr;
  }
  // Closed now so that the instrument is free at once; deleted when the event loop allows.
  resource->close();
  resource->deleteLater();
}

visa_resource_info_t visa_device_manager_t::get_resource_info(const QString& name) const {
  return _resource_info.value(name, {_default_symbolic_name, _default_resource_name, _default_idn});
}

bool visa_device_manager_t::set_symbolic_name(const QString& name, const QString& text) {
  const auto entry = _resource_info.find(name);
  if (entry == _resource_info.end()) {
    return false;
  }
  entry->symbolic_name = text;
  return true;
}

bool visa_device_manager_t::connect_resource(const QString& name) {
  visa_resource_t* resource = _found_resources.value(name, _added_resources.value(name));
  if (resource == nullptr) {
    _current_resource = nullptr;
    return false;
  }
  const bool opened = resource->reopen();
  visa_resource_info_t info = get_resource_info(name);
  info.resource_name = name;
  info.idn = resource->get_idn();
  _resource_info.insert(name, info);
  _current_resource = opened ? resource : nullptr;
  return opened;
}

bool visa_device_manager_t::refresh_current() {
  return _current_resource != nullptr && _current_resource->refresh_idn();
}

bool visa_device_manager_t::send_to_current(const char* data, int size, const QByteArray& header) {
  if (size < 0 || (data == nullptr && size > 0)) {
    return false;
  }
  comm_block_t body;
  body.add_bytes(header.constData(), static_cast<std::size_t>(header.size()));
  body.add_bytes(data, static_cast<std::size_t>(size));
  return send_to_current(body);
}

bool visa_device_manager_t::send_to_current(const comm_block_t& body) {
  if (_current_resource == nullptr) {
    return false;
  }
  // A reopen succeeds even when the instrument stays silent, so its answer decides.
  if (!_current_resource->refresh_idn() &&
      (!_current_resource->reopen() || _current_resource->get_idn().isEmpty())) {
    return false;
  }
  static constexpr char prefix[] = "IQDA ";
  comm_block_t block;
  block.add_bytes(prefix, sizeof prefix - 1);
  block.add_block(body);
  return _current_resource->write_block(block) == block.size();
}

}  // namespace nal

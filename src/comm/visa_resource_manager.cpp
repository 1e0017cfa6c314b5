#include "comm/visa_resource_manager.h"

#include <array>

#include "comm/comm_visa_backend.h"

namespace nal {

visa_resource_manager_t::visa_resource_manager_t(QObject* parent)
    : visa_resource_manager_t(comm_visa_backend_t::process_backend(), parent) {}

visa_resource_manager_t::visa_resource_manager_t(std::shared_ptr<comm_visa_api_t> api,
                                                 QObject* parent)
    : QObject(parent), _api(std::move(api)) {
  _api->open_default_rm(_session);
}

visa_resource_manager_t::~visa_resource_manager_t() {
  // Resources close their sessions before the manager session goes.
  const QObjectList resources = children();
  qDeleteAll(resources);
  _api->close(_session);
}

QStringList visa_resource_manager_t::find_resources(const QString& expression) {
  QStringList names;
  std::array<char, VI_FIND_BUFLEN> description{};
  comm_vi_session_t find_list = 0;
  std::uint32_t count = 0;
  if (_api->find_resources(_session, expression.toLocal8Bit().constData(), find_list, count,
                           description.data()) != VI_SUCCESS) {
    return names;
  }
  bool last_step_succeeded = true;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (last_step_succeeded) {
      names.append(QString::fromLocal8Bit(description.data()));
    }
    description.fill('\0');
    const bool found = _api->find_next(find_list, description.data()) == VI_SUCCESS;
    last_step_succeeded = last_step_succeeded && found;
  }
  _api->close(find_list);
  return names;
}

}  // namespace nal

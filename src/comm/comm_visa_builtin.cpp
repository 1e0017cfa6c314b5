#include "comm/comm_visa_builtin.h"

#include <QRegularExpression>
#include <QString>
#include <algorithm>
#include <atomic>
#include <cstring>
#include <string>
#include <vector>

#include "comm/comm_hislip_transport.h"
#include "comm/comm_resource_name.h"
#include "comm/comm_socket_transport.h"
#include "comm/comm_usbtmc_devices.h"
#include "comm/comm_usbtmc_transport.h"
#include "comm/comm_visa_status.h"
#include "comm/comm_vxi11_transport.h"
#include "lib/lib_report.h"

namespace nal {

namespace {

enum object_kind_t { KIND_MANAGER, KIND_INSTRUMENT, KIND_FIND_LIST };

// A VISA search expression as a regular expression, or an invalid one when it has none.
QRegularExpression expression_pattern(const QString& expression) {
  QString pattern;
  bool in_set = false;
  for (int i = 0; i < expression.size(); ++i) {
    const QChar c = expression[i];
    if (c == QLatin1Char('\\') && i + 1 < expression.size()) {
      pattern += QRegularExpression::escape(expression.mid(++i, 1));
    } else if (in_set) {
      in_set = c != QLatin1Char(']');
      pattern += c;
    } else if (c == QLatin1Char('?')) {
      pattern += QLatin1Char('.');
    } else if (QStringLiteral("*+|()[").contains(c)) {
      in_set = c == QLatin1Char('[');
      pattern += c;
    } else if (c == QLatin1Char('{')) {
      return QRegularExpression(QStringLiteral("("));
    } else {
      pattern += QRegularExpression::escape(QString(c));
    }
  }
  return QRegularExpression(QStringLiteral("^(?:") + pattern + QStringLiteral(")$"),
                            QRegularExpression::CaseInsensitiveOption);
}

void copy_description(const std::string& text, char* description) {
  const std::size_t size = std::min<std::size_t>(text.size(), VI_FIND_BUFLEN - 1);
  std::memcpy(description, text.data(), size);
  description[size] = '\0';
}

comm_vi_status_t open_transport(const comm_resource_name_t& name, std::uint32_t timeout_ms,
                                std::unique_ptr<comm_transport_t>& transport) {
  switch (name.kind) {
    case comm_resource_name_t::KIND_SOCKET:
      return comm_socket_transport_t::open(name.host, name.port, timeout_ms, transport);
    case comm_resource_name_t::KIND_VXI11:
      return comm_vxi11_transport_t::open(name.host, name.device_name, timeout_ms, transport);
    case comm_resource_name_t::KIND_HISLIP:
      return comm_hislip_transport_t::open(name.host, name.port, name.device_name, timeout_ms,
                                           transport);
    case comm_resource_name_t::KIND_USBTMC:
      return comm_usbtmc_transport_t::open(name, transport);
  }
  return VI_ERROR_INV_RSRC_NAME;
}

}  // namespace

struct comm_visa_builtin_t::object_t {
  object_kind_t kind = KIND_MANAGER;
  // The manager session an instrument or find list was opened through.
  comm_vi_session_t manager = 0;
  // Serialises the I/O of one session.
  std::mutex io_mutex;
  std::unique_ptr<comm_transport_t> transport;
  std::atomic<std::uint32_t> timeout_ms{comm_default_timeout_ms};
  std::atomic<bool> send_end{true};
  std::vector<std::string> matches;
  std::size_t next_match = 0;
};

comm_visa_builtin_t::comm_visa_builtin_t() = default;
comm_visa_builtin_t::~comm_visa_builtin_t() = default;

comm_vi_session_t comm_visa_builtin_t::_add(std::shared_ptr<object_t> object) {
  std::lock_guard<std::mutex> lock(_mutex);
  do {
    ++_last_session;
  } while (_last_session == 0 || _objects.count(_last_session) != 0);
  _objects[_last_session] = std::move(object);
  return _last_session;
}

std::shared_ptr<comm_visa_builtin_t::object_t> comm_visa_builtin_t::_find(comm_vi_session_t session,
                                                                          int kind) {
  std::lock_guard<std::mutex> lock(_mutex);
  const auto found = _objects.find(session);
  return found != _objects.end() && found->second->kind == kind ? found->second : nullptr;
}

comm_vi_status_t comm_visa_builtin_t::open_default_rm(comm_vi_session_t& rm) {
  rm = _add(std::make_shared<object_t>());
  return VI_SUCCESS;
}

comm_vi_status_t comm_visa_builtin_t::open(comm_vi_session_t rm, const char* name,
                                           std::uint32_t /*access_mode*/, std::uint32_t timeout_ms,
                                           comm_vi_session_t& vi) {
  vi = 0;
  if (_find(rm, KIND_MANAGER) == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  comm_resource_name_t resource;
  std::string error;
  if (name == nullptr || !comm_resource_name_t::parse(name, resource, error)) {
    common_lib::lib_report("comm_visa_builtin_t::open Report: '" +
                           std::string(name != nullptr ? name : "") + "': " + error);
    return VI_ERROR_INV_RSRC_NAME;
  }
  auto instrument = std::make_shared<object_t>();
  instrument->kind = KIND_INSTRUMENT;
  instrument->manager = rm;
  const comm_vi_status_t status = open_transport(
      resource, timeout_ms != 0 ? timeout_ms : comm_default_timeout_ms, instrument->transport);
  if (status != VI_SUCCESS) {
    common_lib::lib_report("comm_visa_builtin_t::open Report: '" + std::string(name) +
                           "': " + comm_visa_status_t::text(status));
    return status;
  }
  vi = _add(std::move(instrument));
  return VI_SUCCESS;
}

comm_vi_status_t comm_visa_builtin_t::close(comm_vi_session_t object) {
  if (object == 0) {
    return VI_WARN_NULL_OBJECT;
  }
  // Destroyed after the table's lock is released: closing a link may talk to the instrument.
  std::vector<std::shared_ptr<object_t>> closed;
  std::lock_guard<std::mutex> lock(_mutex);
  const auto found = _objects.find(object);
  if (found == _objects.end()) {
    return VI_ERROR_INV_OBJECT;
  }
  const bool manager = found->second->kind == KIND_MANAGER;
  closed.push_back(std::move(found->second));
  _objects.erase(found);
  for (auto it = _objects.begin(); manager && it != _objects.end();) {
    if (it->second->manager == object) {
      closed.push_back(std::move(it->second));
      it = _objects.erase(it);
    } else {
      ++it;
    }
  }
  return VI_SUCCESS;
}

comm_vi_status_t comm_visa_builtin_t::find_resources(comm_vi_session_t rm, const char* expression,
                                                     comm_vi_session_t& find_list,
                                                     std::uint32_t& count, char* description) {
  find_list = 0;
  count = 0;
  if (_find(rm, KIND_MANAGER) == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  const QRegularExpression pattern =
      expression_pattern(QString::fromLocal8Bit(expression != nullptr ? expression : ""));
  if (!pattern.isValid()) {
    return VI_ERROR_INV_EXPR;
  }
  auto list = std::make_shared<object_t>();
  list->kind = KIND_FIND_LIST;
  list->manager = rm;
  for (const comm_usbtmc_device_t& device : comm_usbtmc_devices_t::list()) {
    const std::string name = device.resource_name();
    if (pattern.match(QString::fromStdString(name)).hasMatch()) {
      list->matches.push_back(name);
    }
  }
  if (list->matches.empty()) {
    return VI_ERROR_RSRC_NFOUND;
  }
  count = static_cast<std::uint32_t>(list->matches.size());
  copy_description(list->matches.front(), description);
  list->next_match = 1;
  find_list = _add(std::move(list));
  return VI_SUCCESS;
}

comm_vi_status_t comm_visa_builtin_t::find_next(comm_vi_session_t find_list, char* description) {
  const std::shared_ptr<object_t> list = _find(find_list, KIND_FIND_LIST);
  if (list == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  std::lock_guard<std::mutex> lock(list->io_mutex);
  if (list->next_match >= list->matches.size()) {
    return VI_ERROR_RSRC_NFOUND;
  }
  copy_description(list->matches[list->next_match++], description);
  return VI_SUCCESS;
}

comm_vi_status_t comm_visa_builtin_t::read(comm_vi_session_t vi, unsigned char* buffer,
                                           std::uint32_t count, std::uint32_t& read_count) {
  read_count = 0;
  const std::shared_ptr<object_t> instrument = _find(vi, KIND_INSTRUMENT);
  if (instrument == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  std::lock_guard<std::mutex> lock(instrument->io_mutex);
  std::size_t received = 0;
  const comm_vi_status_t status =
      instrument->transport->read(buffer, count, received, instrument->timeout_ms);
  read_count = static_cast<std::uint32_t>(received);
  return status;
}

comm_vi_status_t comm_visa_builtin_t::write(comm_vi_session_t vi, const unsigned char* buffer,
                                            std::uint32_t count, std::uint32_t& written_count) {
  written_count = 0;
  const std::shared_ptr<object_t> instrument = _find(vi, KIND_INSTRUMENT);
  if (instrument == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  std::lock_guard<std::mutex> lock(instrument->io_mutex);
  const comm_vi_status_t status =
      instrument->transport->write(buffer, count, instrument->send_end, instrument->timeout_ms);
  if (status == VI_SUCCESS) {
    written_count = count;
  }
  return status;
}

comm_vi_status_t comm_visa_builtin_t::set_attribute(comm_vi_session_t vi, std::uint32_t attribute,
                                                    comm_vi_attr_state_t value) {
  const std::shared_ptr<object_t> instrument = _find(vi, KIND_INSTRUMENT);
  if (instrument == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  switch (attribute) {
    case VI_ATTR_TMO_VALUE:
      instrument->timeout_ms = static_cast<std::uint32_t>(value);
      return VI_SUCCESS;
    case VI_ATTR_SEND_END_EN:
      instrument->send_end = value != 0;
      return VI_SUCCESS;
    default:
      return VI_ERROR_NSUP_ATTR;
  }
}

}  // namespace nal

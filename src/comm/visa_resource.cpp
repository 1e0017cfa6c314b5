#include "comm/visa_resource.h"

#include <QDebug>
#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include "comm/visa_resource_manager.h"
#include "lib/lib_report.h"

namespace nal {

namespace {

constexpr std::uint32_t reply_piece = 256;

QString identification(const QByteArray& reply) {
  const int zero = reply.indexOf('\0');
  return QString::fromLocal8Bit(zero < 0 ? reply : reply.left(zero)).trimmed();
}

}  // namespace

visa_resource_t::visa_resource_t(visa_resource_manager_t* manager, const QString& resource_name)
    : QObject(manager), _resource_name(resource_name) {}

visa_resource_t::~visa_resource_t() {
  close();
}

visa_resource_manager_t* visa_resource_t::get_manager() const {
  return qobject_cast<visa_resource_manager_t*>(parent());
}

bool visa_resource_t::open(std::uint32_t access_mode, std::uint32_t timeout_ms) {
  if (_session != 0) {
    return true;
  }
  visa_resource_manager_t* manager = get_manager();
  if (manager == nullptr) {
    return false;
  }
  comm_vi_session_t session = 0;
  const comm_vi_status_t status =
      manager->get_api().open(manager->get_session(), _resource_name.toLocal8Bit().constData(),
                              access_mode, timeout_ms, session);
  if (status != VI_SUCCESS) {
    qDebug().noquote() << "Open resource" << _resource_name << "failed:" << status;
    _session = 0;
    return false;
  }
  _session = session;
  _idn = identification(query("*IDN?"));
  return true;
}

bool visa_resource_t::reopen() {
  close();
  return open(VI_NO_LOCK, comm_default_timeout_ms);
}

bool visa_resource_t::close() {
  if (_session == 0) {
    _idn.clear();
    return true;
  }
  visa_resource_manager_t* manager = get_manager();
  const comm_vi_status_t status =
      manager != nullptr ? manager->get_api().close(_session) : VI_ERROR_INV_OBJECT;
  if (status == VI_WARN_NULL_OBJECT) {
    qDebug().noquote()
        << "[Warning] visa_resource_t::close() >> The specified object reference is uninitialized.";
  }
  _session = 0;
  return status == VI_SUCCESS || status == VI_WARN_NULL_OBJECT;
}

comm_vi_status_t visa_resource_t::set_attribute(std::uint32_t attribute,
                                                comm_vi_attr_state_t value) {
  visa_resource_manager_t* manager = get_manager();
  return manager != nullptr ? manager->get_api().set_attribute(_session, attribute, value)
                            : VI_ERROR_INV_OBJECT;
}

std::uint32_t visa_resource_t::write_command(const QByteArray& command) {
  std::uint32_t written = 0;
  if (_session == 0) {
    return 0;
  }
  if (_write(reinterpret_cast<const unsigned char*>(command.constData()),
             static_cast<std::size_t>(command.size()), written) != VI_SUCCESS) {
    common_lib::lib_report("cmd: '" + command.toStdString() + "' exec error -> ");
    return 0;
  }
  return written;
}

QByteArray visa_resource_t::read_reply() {
  visa_resource_manager_t* manager = get_manager();
  QByteArray reply;
  if (_session == 0 || manager == nullptr) {
    return reply;
  }
  for (;;) {
    std::array<unsigned char, reply_piece> piece{};
    std::uint32_t count = 0;
    const comm_vi_status_t status =
        manager->get_api().read(_session, piece.data(), reply_piece, count);
    if (status < 0 ||
        (status > 0 && status != VI_SUCCESS_TERM_CHAR && status != VI_SUCCESS_MAX_CNT)) {
      return QByteArray();
    }
    reply.append(reinterpret_cast<const char*>(piece.data()),
                 static_cast<int>(std::min(count, reply_piece)));
    if (status == VI_SUCCESS) {
      return reply;
    }
    if (reply.size() > max_reply_bytes) {
      common_lib::lib_report("visa_resource_t::read_reply Report: reply of " +
                             _resource_name.toStdString() + " longer than " +
                             std::to_string(max_reply_bytes) + " bytes, dropped");
      return QByteArray();
    }
  }
}

QByteArray visa_resource_t::query(const QByteArray& command) {
  return write_command(command) > 0 ? read_reply() : QByteArray();
}

std::uint64_t visa_resource_t::write_block(const comm_block_t& block) {
  if (_session == 0) {
    return 0;
  }
  const std::uint64_t total = block.size();
  const bool in_pieces = block.piece_count() > 1;
  if (in_pieces && !_send_end(false)) {
    const std::vector<unsigned char> bytes = block.joined();
    std::uint32_t written = 0;
    return _write(bytes.data(), bytes.size(), written) == VI_SUCCESS && written == total ? total
                                                                                         : 0;
  }
  std::uint64_t sent = 0;
  const bool whole = block.for_each_piece([&](const unsigned char* data, std::size_t size) {
    if (in_pieces && sent + size == total && !_send_end(true)) {
      return false;
    }
    std::uint32_t written = 0;
    if (_write(data, size, written) != VI_SUCCESS || written != size) {
      return false;
    }
    sent += size;
    return true;
  });
  if (!whole && in_pieces) {
    // Whatever the instrument makes of the cut block, the next command must end.
    _send_end(true);
  }
  return whole ? sent : 0;
}

comm_vi_status_t visa_resource_t::_write(const unsigned char* bytes, std::size_t size,
                                         std::uint32_t& written) {
  visa_resource_manager_t* manager = get_manager();
  written = 0;
  if (manager == nullptr || size > std::numeric_limits<std::uint32_t>::max()) {
    return VI_ERROR_INV_OBJECT;
  }
  return manager->get_api().write(_session, bytes, static_cast<std::uint32_t>(size), written);
}

bool visa_resource_t::_send_end(bool enabled) {
  return set_attribute(VI_ATTR_SEND_END_EN, enabled ? 1 : 0) == VI_SUCCESS;
}

bool visa_resource_t::refresh_idn() {
  _idn = identification(query("*IDN?"));
  return !_idn.isEmpty();
}

}  // namespace nal

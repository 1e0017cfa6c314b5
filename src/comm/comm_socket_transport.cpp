#include "comm/comm_socket_transport.h"

#include <algorithm>
#include <cstring>

namespace nal {

comm_vi_status_t comm_socket_transport_t::open(const std::string& host, std::uint16_t port,
                                               std::uint32_t timeout_ms,
                                               std::unique_ptr<comm_transport_t>& transport) {
  auto socket = std::make_unique<comm_socket_transport_t>();
  const comm_vi_status_t status = socket->_connection.connect(host, port, timeout_ms);
  if (status == VI_SUCCESS) {
    transport = std::move(socket);
  }
  return status;
}

comm_vi_status_t comm_socket_transport_t::write(const unsigned char* data, std::size_t size,
                                                bool /*end*/, std::uint32_t timeout_ms) {
  // After a command went out in part, the next one would run into its rest.
  if (!_connection.in_sync()) {
    return VI_ERROR_CONN_LOST;
  }
  const iovec piece = {const_cast<unsigned char*>(data), size};
  return _connection.send_all(&piece, 1, timeout_ms);
}

comm_vi_status_t comm_socket_transport_t::read(unsigned char* buffer, std::size_t size,
                                               std::size_t& received, std::uint32_t timeout_ms) {
  received = 0;
  constexpr std::size_t receive_chunk = 64 * 1024;
  for (;;) {
    const auto line_end = std::find(_pending.begin(), _pending.end(), '\n');
    const std::size_t reply_size = line_end == _pending.end()
                                       ? _pending.size()
                                       : static_cast<std::size_t>(line_end - _pending.begin()) + 1;
    const bool has_end = line_end != _pending.end();
    if (has_end || _pending.size() >= size) {
      received = std::min(reply_size, size);
      const bool complete = has_end && received == reply_size;
      std::memcpy(buffer, _pending.data(), received);
      _pending.erase(_pending.begin(), _pending.begin() + static_cast<std::ptrdiff_t>(received));
      return complete ? VI_SUCCESS : VI_SUCCESS_MAX_CNT;
    }
    const std::size_t old_size = _pending.size();
    _pending.resize(old_size + receive_chunk);
    std::size_t got = 0;
    const comm_vi_status_t status =
        _connection.receive_some(_pending.data() + old_size, receive_chunk, got, timeout_ms);
    _pending.resize(old_size + got);
    if (status != VI_SUCCESS) {
      return status;
    }
  }
}

}  // namespace nal

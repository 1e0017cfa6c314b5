#include "comm/comm_hislip_transport.h"

#include <algorithm>
#include <vector>

namespace nal {

namespace {

enum message_type_t : unsigned {
  INITIALIZE = 0,
  INITIALIZE_RESPONSE = 1,
  FATAL_ERROR = 2,
  ERROR_MESSAGE = 3,
  DATA = 6,
  DATA_END = 7,
  ASYNC_MAXIMUM_MESSAGE_SIZE = 15,
  ASYNC_MAXIMUM_MESSAGE_SIZE_RESPONSE = 16,
  ASYNC_INITIALIZE = 17,
  ASYNC_INITIALIZE_RESPONSE = 18,
};

constexpr std::size_t header_size = 16;
// Protocol version 1.0 and the vendor abbreviation "WL".
constexpr std::uint32_t client_identity = 0x0100u << 16 | 'W' << 8 | 'L';
// What this client accepts per message; the server cuts its replies to it.
constexpr std::uint64_t client_max_message = 1u << 20;
constexpr std::uint32_t any_message_id = 0xFFFFFFFFu;

void put_big_endian(unsigned char* at, std::uint64_t value, int bytes) {
  for (int i = bytes - 1; i >= 0; --i, value >>= 8) {
    at[i] = static_cast<unsigned char>(value);
  }
}

std::uint64_t get_big_endian(const unsigned char* at, int bytes) {
  std::uint64_t value = 0;
  for (int i = 0; i < bytes; ++i) {
    value = value << 8 | at[i];
  }
  return value;
}

}  // namespace

comm_vi_status_t comm_hislip_transport_t::open(const std::string& host, std::uint16_t port,
                                               const std::string& sub_address,
                                               std::uint32_t timeout_ms,
                                               std::unique_ptr<comm_transport_t>& transport) {
  std::unique_ptr<comm_hislip_transport_t> session(new comm_hislip_transport_t());
  const comm_vi_status_t status = session->_initialize(host, port, sub_address, timeout_ms);
  if (status == VI_SUCCESS) {
    transport = std::move(session);
  }
  return status;
}

comm_vi_status_t comm_hislip_transport_t::_initialize(const std::string& host, std::uint16_t port,
                                                      const std::string& sub_address,
                                                      std::uint32_t timeout_ms) {
  comm_vi_status_t status = _sync.connect(host, port, timeout_ms);
  if (status != VI_SUCCESS) {
    return status;
  }
  header_t header{INITIALIZE, 0, client_identity, sub_address.size()};
  status =
      _send(_sync, header, reinterpret_cast<const unsigned char*>(sub_address.data()), timeout_ms);
  if (status == VI_SUCCESS) {
    status = _receive_reply(_sync, INITIALIZE_RESPONSE, header, timeout_ms);
  }
  if (status != VI_SUCCESS) {
    return status == VI_ERROR_TMO ? status : VI_ERROR_RSRC_NFOUND;
  }
  const std::uint32_t session_id = header.parameter & 0xFFFFu;
  status = _async.connect(host, port, timeout_ms);
  if (status == VI_SUCCESS) {
    status = _send(_async, header_t{ASYNC_INITIALIZE, 0, session_id, 0}, nullptr, timeout_ms);
  }
  if (status == VI_SUCCESS) {
    status = _receive_reply(_async, ASYNC_INITIALIZE_RESPONSE, header, timeout_ms);
  }
  unsigned char size_payload[8];
  put_big_endian(size_payload, client_max_message, 8);
  if (status == VI_SUCCESS) {
    status = _send(_async, header_t{ASYNC_MAXIMUM_MESSAGE_SIZE, 0, 0, 8}, size_payload, timeout_ms);
  }
  if (status == VI_SUCCESS) {
    status = _receive_reply(_async, ASYNC_MAXIMUM_MESSAGE_SIZE_RESPONSE, header, timeout_ms);
  }
  if (status == VI_SUCCESS && header.payload_size != 8) {
    status = VI_ERROR_IO;
  }
  if (status == VI_SUCCESS) {
    status = _async.receive_exact(size_payload, 8, timeout_ms);
  }
  if (status != VI_SUCCESS) {
    return status;
  }
  const std::uint64_t server_max = get_big_endian(size_payload, 8);
  // A server whose messages have no room for data could never be written to.
  if (server_max <= header_size) {
    return VI_ERROR_IO;
  }
  _max_payload = server_max - header_size;
  return VI_SUCCESS;
}

comm_vi_status_t comm_hislip_transport_t::write(const unsigned char* data, std::size_t size,
                                                bool end, std::uint32_t timeout_ms) {
  if (_broken || !_sync.in_sync()) {
    return VI_ERROR_CONN_LOST;
  }
  if (size == 0 && !end) {
    return VI_SUCCESS;
  }
  std::size_t sent = 0;
  do {
    const std::size_t piece =
        static_cast<std::size_t>(std::min<std::uint64_t>(size - sent, _max_payload));
    const bool last = sent + piece == size;
    const header_t header{last && end ? DATA_END : DATA, _response_complete ? 1u : 0u,
                          _next_message_id, piece};
    const comm_vi_status_t status = _send(_sync, header, data + sent, timeout_ms);
    if (status != VI_SUCCESS) {
      return status;
    }
    _response_complete = false;
    _last_message_id = _next_message_id;
    _next_message_id += 2;
    sent += piece;
  } while (sent < size);
  return VI_SUCCESS;
}

comm_vi_status_t comm_hislip_transport_t::read(unsigned char* buffer, std::size_t size,
                                               std::size_t& received, std::uint32_t timeout_ms) {
  received = 0;
  if (_broken || !_sync.in_sync()) {
    return VI_ERROR_CONN_LOST;
  }
  for (;;) {
    if (_payload_left > 0 && !_message_wanted) {
      const comm_vi_status_t status = _discard(_sync, _payload_left, timeout_ms);
      if (status != VI_SUCCESS) {
        return status;
      }
    }
    if (_payload_left > 0) {
      if (received == size) {
        return VI_SUCCESS_MAX_CNT;
      }
      const std::size_t piece =
          static_cast<std::size_t>(std::min<std::uint64_t>(_payload_left, size - received));
      const comm_vi_status_t status = _sync.receive_exact(buffer + received, piece, timeout_ms);
      if (status != VI_SUCCESS) {
        return status;
      }
      received += piece;
      _payload_left -= piece;
      continue;
    }
    if (_in_message && _message_is_end && _message_wanted) {
      _in_message = false;
      _response_complete = true;
      return VI_SUCCESS;
    }
    _in_message = false;
    if (received == size) {
      return VI_SUCCESS_MAX_CNT;
    }
    header_t header;
    comm_vi_status_t status = _receive_header(_sync, header, timeout_ms);
    if (status != VI_SUCCESS) {
      return status;
    }
    if (header.type == DATA || header.type == DATA_END) {
      _in_message = true;
      _payload_left = header.payload_size;
      _message_is_end = header.type == DATA_END;
      _message_wanted = header.parameter == _last_message_id || header.parameter == any_message_id;
      continue;
    }
    status = _discard(_sync, header.payload_size, timeout_ms);
    if (status != VI_SUCCESS) {
      _broken = true;
      return status;
    }
    if (header.type == ERROR_MESSAGE || header.type == FATAL_ERROR) {
      return VI_ERROR_IO;
    }
  }
}

comm_vi_status_t comm_hislip_transport_t::_send(comm_tcp_connection_t& channel,
                                                const header_t& header,
                                                const unsigned char* payload,
                                                std::uint32_t timeout_ms) {
  unsigned char bytes[header_size] = {'H', 'S'};
  bytes[2] = static_cast<unsigned char>(header.type);
  bytes[3] = static_cast<unsigned char>(header.control);
  put_big_endian(bytes + 4, header.parameter, 4);
  put_big_endian(bytes + 8, header.payload_size, 8);
  const iovec pieces[2] = {{bytes, header_size},
                           {const_cast<unsigned char*>(payload), header.payload_size}};
  return channel.send_all(pieces, header.payload_size > 0 ? 2 : 1, timeout_ms);
}

comm_vi_status_t comm_hislip_transport_t::_receive_header(comm_tcp_connection_t& channel,
                                                          header_t& header,
                                                          std::uint32_t timeout_ms) {
  unsigned char bytes[header_size];
  const comm_vi_status_t status = channel.receive_exact(bytes, header_size, timeout_ms);
  if (status != VI_SUCCESS) {
    return status;
  }
  if (bytes[0] != 'H' || bytes[1] != 'S') {
    return VI_ERROR_IO;
  }
  header.type = bytes[2];
  header.control = bytes[3];
  header.parameter = static_cast<std::uint32_t>(get_big_endian(bytes + 4, 4));
  header.payload_size = get_big_endian(bytes + 8, 8);
  return VI_SUCCESS;
}

comm_vi_status_t comm_hislip_transport_t::_receive_reply(comm_tcp_connection_t& channel,
                                                         unsigned expected, header_t& header,
                                                         std::uint32_t timeout_ms) {
  const comm_vi_status_t status = _receive_header(channel, header, timeout_ms);
  if (status != VI_SUCCESS) {
    return status;
  }
  if (header.type != expected) {
    _discard(channel, header.payload_size, timeout_ms);
    return VI_ERROR_IO;
  }
  return VI_SUCCESS;
}

comm_vi_status_t comm_hislip_transport_t::_discard(comm_tcp_connection_t& channel,
                                                   std::uint64_t& size, std::uint32_t timeout_ms) {
  std::vector<unsigned char> sink(
      static_cast<std::size_t>(std::min<std::uint64_t>(size, 1u << 16)));
  while (size > 0) {
    std::size_t received = 0;
    const comm_vi_status_t status = channel.receive_some(
        sink.data(), static_cast<std::size_t>(std::min<std::uint64_t>(size, sink.size())), received,
        timeout_ms);
    if (status != VI_SUCCESS) {
      return status;
    }
    size -= received;
  }
  return VI_SUCCESS;
}

}  // namespace nal

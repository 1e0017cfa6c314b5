#include "comm/comm_vxi11_transport.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "comm/comm_xdr_reader.h"

namespace nal {

namespace {

constexpr std::uint32_t portmapper_program = 100000;
constexpr std::uint32_t portmapper_version = 2;
constexpr std::uint32_t portmapper_getport = 3;
constexpr std::uint32_t protocol_tcp = 6;
constexpr std::uint16_t portmapper_default_port = 111;

constexpr std::uint32_t core_program = 0x0607AF;
constexpr std::uint32_t core_version = 1;
constexpr std::uint32_t create_link = 10;
constexpr std::uint32_t device_write = 11;
constexpr std::uint32_t device_read = 12;
constexpr std::uint32_t destroy_link = 23;

constexpr std::uint32_t flag_end = 8;
constexpr std::uint32_t reason_request_count = 1;
constexpr std::uint32_t reason_term_char = 2;
constexpr std::uint32_t reason_end = 4;
constexpr std::uint32_t device_error_io_timeout = 15;
// The smallest maxRecvSize the VXI-11 specification allows, used when a server announces 0.
constexpr std::uint32_t min_receive_size = 1024;
// Pieces and read requests stay well inside one RPC record.
constexpr std::uint32_t max_piece = 16u << 20;

std::uint16_t portmapper_port() {
  const char* text = std::getenv("WAVELUME_VXI11_PORTMAPPER_PORT");
  const long port = text != nullptr ? std::strtol(text, nullptr, 10) : 0;
  return port > 0 && port <= 65535 ? static_cast<std::uint16_t>(port) : portmapper_default_port;
}

comm_vi_status_t device_status(std::uint32_t device_error) {
  if (device_error == 0) {
    return VI_SUCCESS;
  }
  return device_error == device_error_io_timeout ? VI_ERROR_TMO : VI_ERROR_IO;
}

// The core channel's TCP port from the portmapper, or 0.
comm_vi_status_t core_port(const std::string& host, std::uint32_t timeout_ms, std::uint32_t& port) {
  comm_onc_rpc_client_t portmapper(portmapper_program, portmapper_version);
  comm_vi_status_t status = portmapper.connect(host, portmapper_port(), timeout_ms);
  if (status != VI_SUCCESS) {
    return status;
  }
  comm_xdr_writer_t arguments;
  for (const std::uint32_t word : {core_program, core_version, protocol_tcp, 0u}) {
    arguments.put_uint(word);
  }
  std::vector<unsigned char> results;
  status = portmapper.call(portmapper_getport, arguments, nullptr, 0, results, timeout_ms);
  if (status != VI_SUCCESS) {
    return status;
  }
  comm_xdr_reader_t reader(results.data(), results.size());
  return reader.get_uint(port) && port > 0 && port <= 65535 ? VI_SUCCESS : VI_ERROR_RSRC_NFOUND;
}

}  // namespace

comm_vxi11_transport_t::comm_vxi11_transport_t() : _core(core_program, core_version) {}

comm_vxi11_transport_t::~comm_vxi11_transport_t() {
  if (!_linked) {
    return;
  }
  comm_xdr_writer_t arguments;
  arguments.put_uint(_link_id);
  std::vector<unsigned char> results;
  _core.call(destroy_link, arguments, nullptr, 0, results, _last_timeout_ms);
}

comm_vi_status_t comm_vxi11_transport_t::open(const std::string& host,
                                              const std::string& device_name,
                                              std::uint32_t timeout_ms,
                                              std::unique_ptr<comm_transport_t>& transport) {
  std::uint32_t port = 0;
  comm_vi_status_t status = core_port(host, timeout_ms, port);
  if (status != VI_SUCCESS) {
    return status;
  }
  std::unique_ptr<comm_vxi11_transport_t> link(new comm_vxi11_transport_t());
  status = link->_core.connect(host, static_cast<std::uint16_t>(port), timeout_ms);
  if (status != VI_SUCCESS) {
    return status;
  }
  comm_xdr_writer_t arguments;
  arguments.put_uint(static_cast<std::uint32_t>(::getpid()));  // client id
  arguments.put_uint(0);                                       // no lock
  arguments.put_uint(0);                                       // lock timeout
  arguments.put_string(device_name);
  std::vector<unsigned char> results;
  status = link->_core.call(create_link, arguments, nullptr, 0, results, timeout_ms);
  if (status != VI_SUCCESS) {
    return status;
  }
  comm_xdr_reader_t reader(results.data(), results.size());
  std::uint32_t error = 0;
  std::uint32_t abort_port = 0;
  if (!reader.get_uint(error) || !reader.get_uint(link->_link_id) || !reader.get_uint(abort_port) ||
      !reader.get_uint(link->_max_receive_size)) {
    return VI_ERROR_IO;
  }
  if (error != 0) {
    return VI_ERROR_RSRC_NFOUND;
  }
  if (link->_max_receive_size == 0) {
    link->_max_receive_size = min_receive_size;
  }
  link->_last_timeout_ms = timeout_ms;
  link->_linked = true;
  transport = std::move(link);
  return VI_SUCCESS;
}

comm_vi_status_t comm_vxi11_transport_t::write(const unsigned char* data, std::size_t size,
                                               bool end, std::uint32_t timeout_ms) {
  _last_timeout_ms = timeout_ms;
  if (size == 0 && !end) {
    return VI_SUCCESS;
  }
  const std::size_t piece_limit = std::min(_max_receive_size, max_piece);
  std::size_t sent = 0;
  do {
    const std::size_t piece = std::min(size - sent, piece_limit);
    const bool last = sent + piece == size;
    comm_xdr_writer_t arguments;
    arguments.put_uint(_link_id);
    arguments.put_uint(timeout_ms);  // io_timeout
    arguments.put_uint(timeout_ms);  // lock_timeout
    arguments.put_uint(last && end ? flag_end : 0);
    arguments.put_uint(static_cast<std::uint32_t>(piece));
    std::vector<unsigned char> results;
    comm_vi_status_t status =
        _core.call(device_write, arguments, data + sent, piece, results, timeout_ms);
    if (status != VI_SUCCESS) {
      return status;
    }
    comm_xdr_reader_t reader(results.data(), results.size());
    std::uint32_t error = 0;
    std::uint32_t accepted = 0;
    if (!reader.get_uint(error) || !reader.get_uint(accepted)) {
      return VI_ERROR_IO;
    }
    status = device_status(error);
    if (status != VI_SUCCESS) {
      return status;
    }
    // A server may take part of a piece; the rest goes again. Taking nothing would never end.
    if (accepted == 0 && piece > 0) {
      return VI_ERROR_IO;
    }
    sent += std::min<std::size_t>(accepted, piece);
  } while (sent < size);
  return VI_SUCCESS;
}

comm_vi_status_t comm_vxi11_transport_t::read(unsigned char* buffer, std::size_t size,
                                              std::size_t& received, std::uint32_t timeout_ms) {
  _last_timeout_ms = timeout_ms;
  received = 0;
  while (received < size) {
    comm_xdr_writer_t arguments;
    arguments.put_uint(_link_id);
    arguments.put_uint(
        static_cast<std::uint32_t>(std::min<std::size_t>(size - received, max_piece)));
    arguments.put_uint(timeout_ms);  // io_timeout
    arguments.put_uint(timeout_ms);  // lock_timeout
    arguments.put_uint(0);           // flags: no termination character
    arguments.put_uint(0);           // termChar
    std::vector<unsigned char> results;
    comm_vi_status_t status = _core.call(device_read, arguments, nullptr, 0, results, timeout_ms);
    if (status != VI_SUCCESS) {
      return status;
    }
    comm_xdr_reader_t reader(results.data(), results.size());
    std::uint32_t error = 0;
    std::uint32_t reason = 0;
    const unsigned char* data = nullptr;
    std::uint32_t data_size = 0;
    if (!reader.get_uint(error) || !reader.get_uint(reason) ||
        !reader.get_opaque(data, data_size) || data_size > size - received) {
      return VI_ERROR_IO;
    }
    std::memcpy(buffer + received, data, data_size);
    received += data_size;
    status = device_status(error);
    if (status != VI_SUCCESS) {
      return status;
    }
    if ((reason & reason_end) != 0) {
      return VI_SUCCESS;
    }
    if ((reason & reason_term_char) != 0) {
      return VI_SUCCESS_TERM_CHAR;
    }
    if ((reason & reason_request_count) == 0 && data_size == 0) {
      return VI_ERROR_IO;
    }
  }
  return VI_SUCCESS_MAX_CNT;
}

}  // namespace nal

#pragma once
// Raw SCPI over TCP (TCPIP::host::port::SOCKET). The stream has no END indicator: bytes are
// written exactly as given, nothing appended whether the write ends a message or not, and a read
// ends with plain success at the reply's line feed.

#include <memory>
#include <string>
#include <vector>

#include "comm/comm_tcp_connection.h"
#include "comm/comm_transport.h"

namespace nal {

class comm_socket_transport_t : public comm_transport_t {
 public:
  static comm_vi_status_t open(const std::string& host, std::uint16_t port,
                               std::uint32_t timeout_ms,
                               std::unique_ptr<comm_transport_t>& transport);

  // See base class.
  comm_vi_status_t write(const unsigned char* data, std::size_t size, bool end,
                         std::uint32_t timeout_ms) override;
  // See base class.
  comm_vi_status_t read(unsigned char* buffer, std::size_t size, std::size_t& received,
                        std::uint32_t timeout_ms) override;

 private:
  comm_tcp_connection_t _connection;
  // Bytes received beyond the end of the last reply handed out.
  std::vector<unsigned char> _pending;
};

}  // namespace nal

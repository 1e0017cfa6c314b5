#pragma once
// HiSLIP (IVI-6.1, TCPIP::host::hislipN[,port]::INSTR) in synchronous mode: Initialize on the
// synchronous channel, AsyncInitialize and AsyncMaximumMessageSize on the asynchronous one.
// A write goes out as Data messages ending with one DataEnd (none when the write does not end
// the message), each at most the server's maximum message size, header included; message IDs start
// at 0xFFFFFF00 and grow by two per message. A read gathers the Data payloads that answer the last
// message until its DataEnd, discarding messages with other IDs.

#include <memory>
#include <string>

#include "comm/comm_tcp_connection.h"
#include "comm/comm_transport.h"

namespace nal {

class comm_hislip_transport_t : public comm_transport_t {
 public:
  static comm_vi_status_t open(const std::string& host, std::uint16_t port,
                               const std::string& sub_address, std::uint32_t timeout_ms,
                               std::unique_ptr<comm_transport_t>& transport);

  // See base class.
  comm_vi_status_t write(const unsigned char* data, std::size_t size, bool end,
                         std::uint32_t timeout_ms) override;
  // See base class.
  comm_vi_status_t read(unsigned char* buffer, std::size_t size, std::size_t& received,
                        std::uint32_t timeout_ms) override;

 private:
  struct header_t {
    unsigned type = 0;
    unsigned control = 0;
    std::uint32_t parameter = 0;
    std::uint64_t payload_size = 0;
  };

  comm_hislip_transport_t() = default;
  comm_vi_status_t _initialize(const std::string& host, std::uint16_t port,
                               const std::string& sub_address, std::uint32_t timeout_ms);
  static comm_vi_status_t _send(comm_tcp_connection_t& channel, const header_t& header,
                                const unsigned char* payload, std::uint32_t timeout_ms);
  static comm_vi_status_t _receive_header(comm_tcp_connection_t& channel, header_t& header,
                                          std::uint32_t timeout_ms);
  // Receives the header of a reply of type `expected`; any other type is refused.
  static comm_vi_status_t _receive_reply(comm_tcp_connection_t& channel, unsigned expected,
                                         header_t& header, std::uint32_t timeout_ms);
  // Reads and drops `size` bytes, counting `size` down as they go.
  static comm_vi_status_t _discard(comm_tcp_connection_t& channel, std::uint64_t& size,
                                   std::uint32_t timeout_ms);

  comm_tcp_connection_t _sync;
  comm_tcp_connection_t _async;
  std::uint64_t _max_payload = 0;
  std::uint32_t _next_message_id = 0xFFFFFF00u;
  std::uint32_t _last_message_id = 0xFFFFFF00u;
  // Response message terminator delivered: the last response was read to its end.
  bool _response_complete = false;
  // The message being read: payload bytes still on the wire, whether it is a DataEnd, and
  // whether it answers the last message sent.
  bool _in_message = false;
  std::uint64_t _payload_left = 0;
  bool _message_is_end = false;
  bool _message_wanted = false;
  // Set when a message was left half read: later calls report the connection lost.
  bool _broken = false;
};

}  // namespace nal

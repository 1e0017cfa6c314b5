#pragma once
// One TCP connection with bounded waits: the socket is non-blocking and every wait goes through
// poll, so a refused, silent or vanished peer ends an operation within its timeout. A timeout
// counts from the last progress, so a long transfer that keeps moving is never cut. Host names
// are resolved on a helper thread so that a slow name server is bounded by the timeout too.
// One user at a time; the socket is closed on destruction.

#include <sys/uio.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "comm/comm_visa_types.h"

namespace nal {

class comm_tcp_connection_t {
 public:
  comm_tcp_connection_t() = default;
  ~comm_tcp_connection_t();
  comm_tcp_connection_t(const comm_tcp_connection_t&) = delete;
  comm_tcp_connection_t& operator=(const comm_tcp_connection_t&) = delete;

  // VI_ERROR_RSRC_NFOUND for an unknown host or a refused connection, VI_ERROR_TMO when no
  // answer came within `timeout_ms` (VI_TMO_INFINITE waits for ever).
  comm_vi_status_t connect(const std::string& host, std::uint16_t port, std::uint32_t timeout_ms);
  // Sends every byte of the pieces, in order, with as few system calls as the kernel allows.
  comm_vi_status_t send_all(const iovec* pieces, int piece_count, std::uint32_t timeout_ms);
  // Receives between 1 and `size` bytes.
  comm_vi_status_t receive_some(void* buffer, std::size_t size, std::size_t& received,
                                std::uint32_t timeout_ms);
  // Receives exactly `size` bytes.
  comm_vi_status_t receive_exact(void* buffer, std::size_t size, std::uint32_t timeout_ms);
  // False once send_all or receive_exact failed part way: the byte stream no longer lines up
  // with the protocol's messages, and only a new connection can help.
  bool in_sync() const { return _in_sync; }

 private:
  // Waits for `events` on the socket; VI_SUCCESS when ready.
  comm_vi_status_t _wait(short events, std::uint32_t timeout_ms) const;

  int _socket = -1;
  bool _in_sync = true;
};

}  // namespace nal

#pragma once
// An ONC RPC (RFC 5531) client over TCP with record marking, for the portmapper and the VXI-11
// core channel. Calls carry AUTH_NONE; a call goes out as one record fragment, written straight
// from the caller's buffers, and a reply may arrive in any number of fragments. Replies to
// earlier calls that timed out are recognised by their transaction id and skipped. One user at
// a time.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "comm/comm_tcp_connection.h"
#include "comm/comm_xdr_writer.h"

namespace nal {

class comm_onc_rpc_client_t {
 public:
  // Largest reply accepted, all fragments together: a guard against a damaged record mark.
  static constexpr std::size_t max_reply_bytes = 64u << 20;

  comm_onc_rpc_client_t(std::uint32_t program, std::uint32_t version)
      : _program(program), _version(version) {}

  comm_vi_status_t connect(const std::string& host, std::uint16_t port, std::uint32_t timeout_ms) {
    return _connection.connect(host, port, timeout_ms);
  }
  // Calls `procedure` with `arguments` followed by the `tail_size` bytes at `tail` and the
  // padding that completes them to XDR words (the body of a trailing opaque whose length word
  // ends `arguments`). On success `results` holds the procedure's results. VI_ERROR_IO for a
  // call the server refused or a reply that is no RPC reply; VI_ERROR_CONN_LOST for every call
  // after one that stopped in the middle of a record.
  comm_vi_status_t call(std::uint32_t procedure, const comm_xdr_writer_t& arguments,
                        const unsigned char* tail, std::size_t tail_size,
                        std::vector<unsigned char>& results, std::uint32_t timeout_ms);

 private:
  comm_vi_status_t _receive_record(std::vector<unsigned char>& record, std::uint32_t timeout_ms);

  std::uint32_t _program;
  std::uint32_t _version;
  std::uint32_t _transaction_id = 0x57a1u;
  // Set when a call failed part way through a record: later calls report the connection lost.
  bool _broken = false;
  comm_tcp_connection_t _connection;
};

}  // namespace nal

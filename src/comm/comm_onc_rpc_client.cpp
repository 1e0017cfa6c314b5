#include "comm/comm_onc_rpc_client.h"

#include "comm/comm_xdr_reader.h"

namespace nal {

namespace {

constexpr std::uint32_t rpc_version = 2;
constexpr std::uint32_t message_call = 0;
constexpr std::uint32_t message_reply = 1;
constexpr std::uint32_t reply_accepted = 0;
constexpr std::uint32_t accept_success = 0;
constexpr std::uint32_t auth_none = 0;
constexpr std::uint32_t last_fragment = 0x80000000u;

}  // namespace

comm_vi_status_t comm_onc_rpc_client_t::call(std::uint32_t procedure,
                                             const comm_xdr_writer_t& arguments,
                                             const unsigned char* tail, std::size_t tail_size,
                                             std::vector<unsigned char>& results,
                                             std::uint32_t timeout_ms) {
  if (_broken || !_connection.in_sync()) {
    return VI_ERROR_CONN_LOST;
  }
  const std::uint32_t transaction_id = ++_transaction_id;
  comm_xdr_writer_t header;
  header.put_uint(0);  // record mark, filled in below
  for (const std::uint32_t word : {transaction_id, message_call, rpc_version, _program, _version,
                                   procedure, auth_none, 0u, auth_none, 0u}) {
    header.put_uint(word);
  }
  std::vector<unsigned char> head = header.bytes();
  head.insert(head.end(), arguments.bytes().begin(), arguments.bytes().end());
  static const unsigned char zeros[4] = {0, 0, 0, 0};
  const std::size_t pad = comm_xdr_writer_t::padding(tail_size);
  const std::size_t fragment = head.size() - 4 + tail_size + pad;
  if (fragment >= last_fragment) {
    return VI_ERROR_IO;
  }
  const std::uint32_t mark = last_fragment | static_cast<std::uint32_t>(fragment);
  for (int i = 0; i < 4; ++i) {
    head[static_cast<std::size_t>(i)] = static_cast<unsigned char>(mark >> (24 - 8 * i));
  }
  const iovec pieces[3] = {{head.data(), head.size()},
                           {const_cast<unsigned char*>(tail), tail_size},
                           {const_cast<unsigned char*>(zeros), pad}};
  comm_vi_status_t status = _connection.send_all(pieces, 3, timeout_ms);
  if (status != VI_SUCCESS) {
    _broken = !_connection.in_sync();
    return status;
  }
  for (;;) {
    std::vector<unsigned char> record;
    status = _receive_record(record, timeout_ms);
    if (status != VI_SUCCESS) {
      return status;
    }
    comm_xdr_reader_t reader(record.data(), record.size());
    std::uint32_t id = 0;
    std::uint32_t type = 0;
    if (!reader.get_uint(id) || !reader.get_uint(type) || type != message_reply) {
      return VI_ERROR_IO;
    }
    if (id != transaction_id) {
      continue;
    }
    std::uint32_t reply_state = 0;
    std::uint32_t flavor = 0;
    const unsigned char* verifier = nullptr;
    std::uint32_t verifier_size = 0;
    std::uint32_t accept_state = 0;
    if (!reader.get_uint(reply_state) || reply_state != reply_accepted ||
        !reader.get_uint(flavor) || !reader.get_opaque(verifier, verifier_size) ||
        !reader.get_uint(accept_state) || accept_state != accept_success) {
      return VI_ERROR_IO;
    }
    results.assign(reader.rest(), reader.rest() + reader.rest_size());
    return VI_SUCCESS;
  }
}

comm_vi_status_t comm_onc_rpc_client_t::_receive_record(std::vector<unsigned char>& record,
                                                        std::uint32_t timeout_ms) {
  for (bool first_mark = true;; first_mark = false) {
    unsigned char mark_bytes[4];
    comm_vi_status_t status = _connection.receive_exact(mark_bytes, 4, timeout_ms);
    if (status != VI_SUCCESS) {
      // Nothing of a reply read yet: a late reply is recognised by its id and skipped.
      _broken = !first_mark || !_connection.in_sync();
      return status;
    }
    const std::uint32_t mark = static_cast<std::uint32_t>(mark_bytes[0]) << 24 |
                               static_cast<std::uint32_t>(mark_bytes[1]) << 16 |
                               static_cast<std::uint32_t>(mark_bytes[2]) << 8 | mark_bytes[3];
    const std::size_t length = mark & ~last_fragment;
    if (record.size() + length > max_reply_bytes) {
      _broken = true;
      return VI_ERROR_IO;
    }
    const std::size_t old_size = record.size();
    record.resize(old_size + length);
    status = _connection.receive_exact(record.data() + old_size, length, timeout_ms);
    if (status != VI_SUCCESS) {
      _broken = true;
      return status;
    }
    if ((mark & last_fragment) != 0) {
      return VI_SUCCESS;
    }
  }
}

}  // namespace nal

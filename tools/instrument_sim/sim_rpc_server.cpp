#include "tools/instrument_sim/sim_rpc_server.h"

#include <algorithm>
#include <string>

#include "tools/instrument_sim/sim_socket_io.h"

namespace wavelume_sim {

namespace {

constexpr std::uint32_t last_fragment_bit = 0x80000000u;
constexpr std::uint32_t message_call = 0;
constexpr std::uint32_t message_reply = 1;
constexpr std::uint32_t reply_accepted = 0;
constexpr std::uint32_t reply_denied = 1;
constexpr std::uint32_t rpc_mismatch = 0;
constexpr std::uint32_t rpc_version = 2;
constexpr std::size_t credential_limit = 400;

}  // namespace

sim_rpc_server_t::sim_rpc_server_t(std::uint32_t program, std::uint32_t version,
                                   std::size_t record_limit, std::size_t reply_fragment_size)
    : _program(program),
      _version(version),
      _record_limit(record_limit),
      _reply_fragment_size(reply_fragment_size) {}

void sim_rpc_server_t::serve(int socket) {
  std::string record;
  std::string reply;
  while (_read_record(socket, record)) {
    if (!answer(socket, record, reply) || !_send_record(socket, reply)) {
      break;
    }
  }
  closed(socket);
}

bool sim_rpc_server_t::_read_record(int socket, std::string& record) const {
  record.clear();
  for (;;) {
    unsigned char mark[4];
    if (!sim_receive_exact(socket, mark, sizeof mark)) {
      return false;
    }
    const std::uint32_t word = (std::uint32_t{mark[0]} << 24) | (std::uint32_t{mark[1]} << 16) |
                               (std::uint32_t{mark[2]} << 8) | std::uint32_t{mark[3]};
    const std::size_t length = word & ~last_fragment_bit;
    if (length > _record_limit - std::min(_record_limit, record.size())) {
      return false;
    }
    const std::size_t old_size = record.size();
    record.resize(old_size + length);
    if (!sim_receive_exact(socket, record.data() + old_size, length)) {
      return false;
    }
    if ((word & last_fragment_bit) != 0) {
      return true;
    }
  }
}

bool sim_rpc_server_t::_send_record(int socket, const std::string& record) const {
  const std::size_t piece = _reply_fragment_size == 0 ? record.size() : _reply_fragment_size;
  std::size_t offset = 0;
  do {
    const std::size_t length = std::min(piece, record.size() - offset);
    const bool last = offset + length == record.size();
    sim_xdr_writer_t mark;
    mark.u32(static_cast<std::uint32_t>(length) | (last ? last_fragment_bit : 0));
    if (!sim_send_all(socket, mark.bytes().data(), 4) ||
        !sim_send_all(socket, record.data() + offset, length)) {
      return false;
    }
    offset += length;
  } while (offset < record.size());
  return true;
}

bool sim_rpc_server_t::answer(int socket, const std::string& call_message, std::string& reply) {
  sim_xdr_reader_t in(reinterpret_cast<const unsigned char*>(call_message.data()),
                      call_message.size());
  const std::uint32_t xid = in.u32();
  if (in.u32() != message_call || !in.ok()) {
    return false;
  }
  const std::uint32_t version_of_rpc = in.u32();
  const std::uint32_t program = in.u32();
  const std::uint32_t version = in.u32();
  const std::uint32_t procedure = in.u32();
  const unsigned char* ignored = nullptr;
  std::size_t ignored_size = 0;
  for (int credential = 0; credential < 2; ++credential) {
    in.u32();
    in.opaque(ignored, ignored_size, credential_limit);
  }

  sim_xdr_writer_t out;
  out.u32(xid);
  out.u32(message_reply);
  if (version_of_rpc != rpc_version) {
    out.u32(reply_denied);
    out.u32(rpc_mismatch);
    out.u32(rpc_version);
    out.u32(rpc_version);
    reply = out.bytes();
    return true;
  }
  out.u32(reply_accepted);
  out.u32(0);  // verifier AUTH_NONE, empty
  out.u32(0);
  sim_xdr_writer_t results;
  accept_status_t status = SUCCESS;
  if (!in.ok()) {
    status = GARBAGE_ARGS;
  } else if (program != _program) {
    status = PROG_UNAVAIL;
  } else if (version != _version) {
    status = PROG_MISMATCH;
  } else {
    status = call(socket, procedure, in, results);
  }
  out.u32(status);
  if (status == PROG_MISMATCH) {
    out.u32(_version);
    out.u32(_version);
  }
  reply = out.bytes();
  if (status == SUCCESS) {
    reply += results.bytes();
  }
  return true;
}

}  // namespace wavelume_sim

#pragma once
// ONC RPC (RFC 5531) over TCP for one program: record marking with calls of any number of
// fragments, and replies cut into fragments of `reply_fragment_size` bytes so that clients meet
// multi-fragment replies too. Calls to another program or version, or with a malformed header,
// get the standard rejections (PROG_UNAVAIL, PROG_MISMATCH, RPC_MISMATCH, GARBAGE_ARGS).

#include <cstddef>
#include <cstdint>

#include "tools/instrument_sim/sim_tcp_server.h"
#include "tools/instrument_sim/sim_xdr.h"

namespace wavelume_sim {

class sim_rpc_server_t : public sim_tcp_server_t {
 public:
  // `record_limit`: the largest call accepted, in bytes; a longer one closes the connection.
  // `reply_fragment_size`: 0 sends each reply as one fragment.
  sim_rpc_server_t(std::uint32_t program, std::uint32_t version, std::size_t record_limit,
                   std::size_t reply_fragment_size);

 protected:
  enum accept_status_t : std::uint32_t {
    SUCCESS = 0,
    PROG_UNAVAIL = 1,
    PROG_MISMATCH = 2,
    PROC_UNAVAIL = 3,
    GARBAGE_ARGS = 4,
  };

  // Decodes the arguments of `procedure` and writes its results; anything but SUCCESS sends no
  // results. `socket` names the connection.
  virtual accept_status_t call(int socket, std::uint32_t procedure, sim_xdr_reader_t& arguments,
                               sim_xdr_writer_t& results) = 0;
  // The connection has ended; its state may go.
  virtual void closed(int socket) { (void)socket; }

  // See base class.
  void serve(int socket) override;
  // The reply to one call (a record, or a datagram with `socket` -1); false for a message that
  // carries no call.
  bool answer(int socket, const std::string& call_message, std::string& reply);

 private:
  bool _read_record(int socket, std::string& record) const;
  bool _send_record(int socket, const std::string& record) const;

  const std::uint32_t _program;
  const std::uint32_t _version;
  const std::size_t _record_limit;
  const std::size_t _reply_fragment_size;
};

}  // namespace wavelume_sim

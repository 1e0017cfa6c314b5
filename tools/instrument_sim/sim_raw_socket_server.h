#pragma once
// Raw SCPI over TCP. The stream carries no end-of-message marker, so the simulator decides:
// - a command ends at its line feed, or, sent without one, when the line stays idle for
//   `command_idle_gap`;
// - a block ("IQDA " first) may hold any byte, line feeds included, so it runs until the peer
//   closes the connection or the line stays idle for `block_idle_gap`; whatever arrives after
//   that begins a new message. The bytes are kept exactly as received, a trailing line feed
//   included.
// The reply to "*IDN?" is sent at once, line feed included.

#include <chrono>

#include "tools/instrument_sim/sim_tcp_server.h"
#include "tools/instrument_sim/sim_wire_record.h"

namespace wavelume_sim {

struct sim_raw_socket_options_t {
  std::chrono::milliseconds command_idle_gap{50};
  std::chrono::milliseconds block_idle_gap{500};
  sim_block_keeping_t keeping = sim_block_keeping_t::md5;
};

class sim_raw_socket_server_t : public sim_tcp_server_t {
 public:
  sim_raw_socket_server_t(sim_wire_record_t& record, sim_raw_socket_options_t options);
  ~sim_raw_socket_server_t() override;

 protected:
  // See base class.
  void serve(int socket) override;

 private:
  sim_wire_record_t& _record;
  const sim_raw_socket_options_t _options;
};

}  // namespace wavelume_sim

#pragma once
// A portmapper (program 100000, version 2) that knows itself and the VXI-11 core channel over
// TCP at the port given. NULL, GETPORT and DUMP are served, over TCP and over UDP on the same
// port number (some clients fall back to UDP); GETPORT of anything else answers 0. It listens on
// a port of the test's choosing, so no system portmapper is needed or disturbed.

#include <array>
#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

#include "tools/instrument_sim/sim_rpc_server.h"

namespace wavelume_sim {

class sim_portmapper_server_t : public sim_rpc_server_t {
 public:
  static constexpr std::uint32_t program = 100000;
  static constexpr std::uint32_t version = 2;

  explicit sim_portmapper_server_t(std::uint16_t core_port);
  ~sim_portmapper_server_t() override;

  // Starts the TCP service on `port` and the UDP one on the same number. False when either
  // cannot be bound.
  bool start_both(std::uint16_t port);

  // GETPORT calls answered with the core channel's port.
  int core_port_lookups() const { return _lookups; }

 protected:
  // See base class.
  accept_status_t call(int socket, std::uint32_t procedure, sim_xdr_reader_t& arguments,
                       sim_xdr_writer_t& results) override;

 private:
  void _serve_datagrams();
  // Program, version, protocol and port of each service known.
  std::vector<std::array<std::uint32_t, 4>> _mappings() const;

  const std::uint16_t _core_port;
  std::atomic<int> _lookups{0};
  int _datagram_socket = -1;
  std::atomic<bool> _datagrams_stopping{false};
  std::thread _datagram_thread;
};

}  // namespace wavelume_sim

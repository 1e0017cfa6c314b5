#pragma once
// The loopback instrument simulator: a raw SCPI socket, the VXI-11 core channel with its own
// portmapper, and HiSLIP, all on 127.0.0.1 and all feeding one wire record. Ports are chosen by
// the caller or, left at 0, by the system. It answers "*IDN?" and keeps every block that begins
// "IQDA ". Written apart from the instrument link it serves, on POSIX sockets and threads
// only, so that the two ends do not merely agree with each other.

#include <cstdint>
#include <memory>
#include <string>

#include "tools/instrument_sim/sim_hislip_server.h"
#include "tools/instrument_sim/sim_portmapper_server.h"
#include "tools/instrument_sim/sim_raw_socket_server.h"
#include "tools/instrument_sim/sim_vxi11_server.h"
#include "tools/instrument_sim/sim_wire_record.h"

namespace wavelume_sim {

struct sim_instrument_options_t {
  std::uint16_t socket_port = 0;
  std::uint16_t vxi11_port = 0;
  std::uint16_t portmapper_port = 0;
  std::uint16_t hislip_port = 0;
  sim_raw_socket_options_t raw_socket;
  sim_vxi11_options_t vxi11;
  sim_hislip_options_t hislip;

  // The same way of keeping blocks on every transport.
  void set_keeping(sim_block_keeping_t keeping);
};

class sim_instrument_t {
 public:
  sim_instrument_t() = default;
  ~sim_instrument_t();
  sim_instrument_t(const sim_instrument_t&) = delete;
  sim_instrument_t& operator=(const sim_instrument_t&) = delete;

  // Starts every server; false, with all stopped again, when a port cannot be bound.
  bool start(const sim_instrument_options_t& options = {});
  void stop();

  std::uint16_t socket_port() const;
  std::uint16_t vxi11_port() const;
  std::uint16_t portmapper_port() const;
  std::uint16_t hislip_port() const;
  // VISA resource strings of the three transports. The VXI-11 one needs the client pointed at
  // `portmapper_port`.
  std::string socket_resource() const;
  std::string vxi11_resource() const;
  std::string hislip_resource() const;

  sim_wire_record_t& record() { return _record; }
  // Null before start.
  const sim_hislip_server_t* hislip() const { return _hislip.get(); }
  const sim_vxi11_server_t* vxi11() const { return _vxi11.get(); }
  const sim_portmapper_server_t* portmapper() const { return _portmapper.get(); }

 private:
  sim_wire_record_t _record;
  std::unique_ptr<sim_raw_socket_server_t> _raw_socket;
  std::unique_ptr<sim_vxi11_server_t> _vxi11;
  std::unique_ptr<sim_portmapper_server_t> _portmapper;
  std::unique_ptr<sim_hislip_server_t> _hislip;
};

}  // namespace wavelume_sim

#include "tools/instrument_sim/sim_instrument.h"

namespace wavelume_sim {

void sim_instrument_options_t::set_keeping(sim_block_keeping_t keeping) {
  raw_socket.keeping = keeping;
  vxi11.keeping = keeping;
  hislip.keeping = keeping;
}

sim_instrument_t::~sim_instrument_t() {
  stop();
}

bool sim_instrument_t::start(const sim_instrument_options_t& options) {
  stop();
  _raw_socket = std::make_unique<sim_raw_socket_server_t>(_record, options.raw_socket);
  _vxi11 = std::make_unique<sim_vxi11_server_t>(_record, options.vxi11);
  _hislip = std::make_unique<sim_hislip_server_t>(_record, options.hislip);
  bool started = _raw_socket->start(options.socket_port) && _vxi11->start(options.vxi11_port) &&
                 _hislip->start(options.hislip_port);
  if (started) {
    _portmapper = std::make_unique<sim_portmapper_server_t>(_vxi11->port());
    started = _portmapper->start_both(options.portmapper_port);
  }
  if (!started) {
    stop();
  }
  return started;
}

void sim_instrument_t::stop() {
  _portmapper.reset();
  _hislip.reset();
  _vxi11.reset();
  _raw_socket.reset();
}

std::uint16_t sim_instrument_t::socket_port() const {
  return _raw_socket ? _raw_socket->port() : 0;
}
std::uint16_t sim_instrument_t::vxi11_port() const {
  return _vxi11 ? _vxi11->port() : 0;
}
std::uint16_t sim_instrument_t::portmapper_port() const {
  return _portmapper ? _portmapper->port() : 0;
}
std::uint16_t sim_instrument_t::hislip_port() const {
  return _hislip ? _hislip->port() : 0;
}

std::string sim_instrument_t::socket_resource() const {
  return "TCPIP0::127.0.0.1::" + std::to_string(socket_port()) + "::SOCKET";
}

std::string sim_instrument_t::vxi11_resource() const {
  return "TCPIP0::127.0.0.1::inst0::INSTR";
}

std::string sim_instrument_t::hislip_resource() const {
  return "TCPIP0::127.0.0.1::hislip0," + std::to_string(hislip_port()) + "::INSTR";
}

}  // namespace wavelume_sim

#include "tools/instrument_sim/sim_portmapper_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "tools/instrument_sim/sim_vxi11_server.h"

namespace wavelume_sim {

namespace {

enum procedure_t : std::uint32_t { NULL_PROCEDURE = 0, GETPORT = 3, DUMP = 4 };
constexpr std::uint32_t protocol_tcp = 6;
constexpr std::uint32_t protocol_udp = 17;
constexpr std::size_t record_limit = 4096;

}  // namespace

sim_portmapper_server_t::sim_portmapper_server_t(std::uint16_t core_port)
    : sim_rpc_server_t(program, version, record_limit, 0), _core_port(core_port) {}

sim_portmapper_server_t::~sim_portmapper_server_t() {
  stop();
  if (_datagram_socket >= 0) {
    _datagrams_stopping = true;
    _datagram_thread.join();
    ::close(_datagram_socket);
  }
}

bool sim_portmapper_server_t::start_both(std::uint16_t port) {
  if (!start(port)) {
    return false;
  }
  _datagram_socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(this->port());
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (_datagram_socket < 0 ||
      ::bind(_datagram_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    if (_datagram_socket >= 0) {
      ::close(_datagram_socket);
    }
    _datagram_socket = -1;
    stop();
    return false;
  }
  _datagram_thread = std::thread([this] { _serve_datagrams(); });
  return true;
}

void sim_portmapper_server_t::_serve_datagrams() {
  std::string message;
  std::string reply;
  while (!_datagrams_stopping) {
    // A short poll keeps stopping prompt without signalling the thread.
    pollfd ready{_datagram_socket, POLLIN, 0};
    if (::poll(&ready, 1, 50) <= 0) {
      continue;
    }
    sockaddr_in peer{};
    socklen_t peer_size = sizeof peer;
    message.resize(record_limit);
    const ssize_t got = ::recvfrom(_datagram_socket, message.data(), message.size(), 0,
                                   reinterpret_cast<sockaddr*>(&peer), &peer_size);
    if (got <= 0) {
      continue;
    }
    message.resize(static_cast<std::size_t>(got));
    if (answer(-1, message, reply)) {
      ::sendto(_datagram_socket, reply.data(), reply.size(), 0,
               reinterpret_cast<const sockaddr*>(&peer), peer_size);
    }
  }
}

std::vector<std::array<std::uint32_t, 4>> sim_portmapper_server_t::_mappings() const {
  return {{program, version, protocol_tcp, port()},
          {program, version, protocol_udp, port()},
          {sim_vxi11_server_t::program, sim_vxi11_server_t::version, protocol_tcp, _core_port}};
}

sim_rpc_server_t::accept_status_t sim_portmapper_server_t::call(int, std::uint32_t procedure,
                                                                sim_xdr_reader_t& arguments,
                                                                sim_xdr_writer_t& results) {
  switch (procedure) {
    case NULL_PROCEDURE:
      return SUCCESS;
    case GETPORT: {
      const std::uint32_t wanted_program = arguments.u32();
      arguments.u32();  // version: as in the usual portmapper, any version of the program will do
      const std::uint32_t protocol = arguments.u32();
      arguments.u32();  // port, unused in a query
      if (!arguments.ok()) {
        return GARBAGE_ARGS;
      }
      std::uint32_t found = 0;
      for (const auto& mapping : _mappings()) {
        if (found == 0 && mapping[0] == wanted_program && mapping[2] == protocol) {
          found = mapping[3];
        }
      }
      _lookups += wanted_program == sim_vxi11_server_t::program && found != 0 ? 1 : 0;
      results.u32(found);
      return SUCCESS;
    }
    case DUMP:
      for (const auto& mapping : _mappings()) {
        results.u32(1);  // a value follows
        for (const std::uint32_t word : mapping) {
          results.u32(word);
        }
      }
      results.u32(0);
      return SUCCESS;
    default:
      return PROC_UNAVAIL;
  }
}

}  // namespace wavelume_sim

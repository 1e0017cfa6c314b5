#include "tools/instrument_sim/sim_tcp_server.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "tools/instrument_sim/sim_socket_io.h"

namespace wavelume_sim {

sim_tcp_server_t::~sim_tcp_server_t() {
  stop();
}

bool sim_tcp_server_t::start(std::uint16_t port) {
  _listener = sim_listen_loopback(port, _port);
  if (_listener < 0) {
    return false;
  }
  _accept_thread = std::thread([this] { _accept_loop(); });
  return true;
}

void sim_tcp_server_t::stop() {
  if (_listener < 0) {
    return;
  }
  _stopping = true;
  ::shutdown(_listener, SHUT_RDWR);
  _accept_thread.join();
  ::close(_listener);
  _listener = -1;
  std::list<std::unique_ptr<connection_t>> connections;
  {
    std::lock_guard<std::mutex> lock(_mutex);
    for (auto& connection : _connections) {
      ::shutdown(connection->socket, SHUT_RDWR);
    }
    connections.swap(_connections);
  }
  for (auto& connection : connections) {
    connection->thread.join();
    ::close(connection->socket);
  }
}

void sim_tcp_server_t::_accept_loop() {
  while (!_stopping) {
    const int socket = ::accept4(_listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) {
      if (errno == EINTR || errno == ECONNABORTED) {
        continue;
      }
      return;
    }
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    std::lock_guard<std::mutex> lock(_mutex);
    _reap_finished();
    if (_stopping) {
      ::close(socket);
      return;
    }
    auto connection = std::make_unique<connection_t>();
    connection_t* raw = connection.get();
    raw->socket = socket;
    raw->thread = std::thread([this, raw] {
      serve(raw->socket);
      // Shut down before closing: stop may still shut this descriptor down, and a closed
      // number could already belong to another socket.
      ::shutdown(raw->socket, SHUT_RDWR);
      raw->finished = true;
    });
    _connections.push_back(std::move(connection));
  }
}

void sim_tcp_server_t::_reap_finished() {
  for (auto it = _connections.begin(); it != _connections.end();) {
    if ((*it)->finished) {
      (*it)->thread.join();
      ::close((*it)->socket);
      it = _connections.erase(it);
    } else {
      ++it;
    }
  }
}

}  // namespace wavelume_sim

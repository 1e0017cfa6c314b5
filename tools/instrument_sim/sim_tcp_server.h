#pragma once
// A loopback TCP server that serves each connection on a thread of its own. Derived servers
// implement `serve`, which owns the conversation and returns when the peer closes or the server
// stops. `stop` shuts every socket down, so blocked calls return, and joins all threads; a derived
// class calls it in its own destructor, before its members go. start and stop from one thread;
// serve runs on the connection threads.

#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

namespace wavelume_sim {

class sim_tcp_server_t {
 public:
  sim_tcp_server_t() = default;
  virtual ~sim_tcp_server_t();
  sim_tcp_server_t(const sim_tcp_server_t&) = delete;
  sim_tcp_server_t& operator=(const sim_tcp_server_t&) = delete;

  // Listens on 127.0.0.1:`port` (0 picks a free one). False when the port cannot be bound.
  bool start(std::uint16_t port);
  // Ends the accept loop and every connection; idempotent.
  void stop();
  // The bound port, 0 before start.
  std::uint16_t port() const { return _port; }

 protected:
  // One connection, on its own thread. The socket is closed by the caller afterwards.
  virtual void serve(int socket) = 0;
  bool stopping() const { return _stopping; }

 private:
  struct connection_t {
    int socket = -1;
    std::atomic<bool> finished{false};
    std::thread thread;
  };

  void _accept_loop();
  // Joins connection threads that have ended; called with `_mutex` held.
  void _reap_finished();

  int _listener = -1;
  std::uint16_t _port = 0;
  std::atomic<bool> _stopping{false};
  std::thread _accept_thread;
  std::mutex _mutex;
  std::list<std::unique_ptr<connection_t>> _connections;
};

}  // namespace wavelume_sim

#pragma once
// A loopback TCP server for fault tests: it accepts connections until the object is destroyed
// and runs the handler for each on a thread of its own. The handlers must return once their
// client closes.

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace test_comm {

class tiny_server_t {
 public:
  using handler_t = std::function<void(int client)>;

  explicit tiny_server_t(handler_t handler) : _handler(std::move(handler)) {
    _listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(_listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    ::bind(_listener, reinterpret_cast<sockaddr*>(&address), length);
    ::listen(_listener, 4);
    getsockname(_listener, reinterpret_cast<sockaddr*>(&address), &length);
    _port = ntohs(address.sin_port);
    _thread = std::thread([this]() { _serve(); });
  }
  ~tiny_server_t() {
    ::shutdown(_listener, SHUT_RDWR);
    _thread.join();
    for (std::thread& client : _clients) {
      client.join();
    }
    ::close(_listener);
  }
  tiny_server_t(const tiny_server_t&) = delete;
  tiny_server_t& operator=(const tiny_server_t&) = delete;

  std::uint16_t port() const { return _port; }

  // Reads exactly `size` bytes; false when the peer closed first.
  static bool read_exact(int client, void* buffer, std::size_t size) {
    char* at = static_cast<char*>(buffer);
    while (size > 0) {
      const ssize_t got = ::recv(client, at, size, 0);
      if (got <= 0) {
        return false;
      }
      at += got;
      size -= static_cast<std::size_t>(got);
    }
    return true;
  }
  static void write_all(int client, const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
      const ssize_t n = ::send(client, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
      if (n <= 0) {
        return;
      }
      sent += static_cast<std::size_t>(n);
    }
  }
  // Reads a command: up to a line feed, or what came before the line stayed idle for 100 ms
  // (a raw socket carries no end marker). Empty when the peer closed.
  static std::string read_command(int client) {
    std::string command;
    char c = 0;
    pollfd entry{client, POLLIN, 0};
    while (command.size() < 4096 && (command.empty() || ::poll(&entry, 1, 100) == 1) &&
           ::recv(client, &c, 1, 0) == 1) {
      command += c;
      if (c == '\n') {
        break;
      }
    }
    return command;
  }
  // Returns once the peer closed.
  static void wait_for_close(int client) {
    char sink[4096];
    while (::recv(client, sink, sizeof sink, 0) > 0) {
    }
  }

 private:
  void _serve() {
    for (;;) {
      const int client = ::accept4(_listener, nullptr, nullptr, SOCK_CLOEXEC);
      if (client < 0) {
        return;
      }
      _clients.emplace_back([this, client]() {
        _handler(client);
        ::close(client);
      });
    }
  }

  handler_t _handler;
  int _listener = -1;
  std::uint16_t _port = 0;
  std::thread _thread;
  std::vector<std::thread> _clients;
};

}  // namespace test_comm

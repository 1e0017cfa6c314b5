#include "comm/comm_tcp_connection.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <thread>

namespace nal {

namespace {

int poll_timeout(std::uint32_t timeout_ms) {
  return timeout_ms == VI_TMO_INFINITE
             ? -1
             : static_cast<int>(std::min<std::uint32_t>(timeout_ms, INT_MAX));
}

// The outcome of one name lookup, shared with its thread, which may outlive the wait.
struct lookup_t {
  std::mutex mutex;
  std::condition_variable done_signal;
  bool done = false;
  bool found = false;
  sockaddr_in address{};
};

bool resolve(const std::string& host, std::uint16_t port, std::uint32_t timeout_ms,
             sockaddr_in& address) {
  address = sockaddr_in{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  if (inet_pton(AF_INET, host.c_str(), &address.sin_addr) == 1) {
    return true;
  }
  auto lookup = std::make_shared<lookup_t>();
  std::thread([lookup, host]() {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    const bool found = getaddrinfo(host.c_str(), nullptr, &hints, &list) == 0 && list != nullptr;
    std::lock_guard<std::mutex> lock(lookup->mutex);
    if (found) {
      std::memcpy(&lookup->address, list->ai_addr, sizeof(sockaddr_in));
    }
    if (list != nullptr) {
      freeaddrinfo(list);
    }
    lookup->found = found;
    lookup->done = true;
    lookup->done_signal.notify_all();
  }).detach();
  std::unique_lock<std::mutex> lock(lookup->mutex);
  const auto finished = [&lookup]() { return lookup->done; };
  if (timeout_ms == VI_TMO_INFINITE) {
    lookup->done_signal.wait(lock, finished);
  } else if (!lookup->done_signal.wait_for(lock, std::chrono::milliseconds(timeout_ms), finished)) {
    return false;
  }
  address.sin_addr = lookup->address.sin_addr;
  return lookup->found;
}

}  // namespace

comm_tcp_connection_t::~comm_tcp_connection_t() {
  if (_socket >= 0) {
    ::close(_socket);
  }
}

comm_vi_status_t comm_tcp_connection_t::connect(const std::string& host, std::uint16_t port,
                                                std::uint32_t timeout_ms) {
  sockaddr_in address{};
  if (!resolve(host, port, timeout_ms, address)) {
    return VI_ERROR_RSRC_NFOUND;
  }
  _socket = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (_socket < 0) {
    return VI_ERROR_SYSTEM_ERROR;
  }
  const int on = 1;
  setsockopt(_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  if (::connect(_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    if (errno != EINPROGRESS) {
      return VI_ERROR_RSRC_NFOUND;
    }
    const comm_vi_status_t ready = _wait(POLLOUT, timeout_ms);
    if (ready != VI_SUCCESS) {
      return ready == VI_ERROR_TMO ? VI_ERROR_TMO : VI_ERROR_RSRC_NFOUND;
    }
    int error = 0;
    socklen_t length = sizeof error;
    if (getsockopt(_socket, SOL_SOCKET, SO_ERROR, &error, &length) != 0 || error != 0) {
      return VI_ERROR_RSRC_NFOUND;
    }
  }
  return VI_SUCCESS;
}

comm_vi_status_t comm_tcp_connection_t::send_all(const iovec* pieces, int piece_count,
                                                 std::uint32_t timeout_ms) {
  // A private copy of the piece list, advanced as the kernel takes bytes.
  iovec rest[8];
  if (piece_count > 8) {
    return VI_ERROR_SYSTEM_ERROR;
  }
  std::copy(pieces, pieces + piece_count, rest);
  int first = 0;
  std::size_t total_sent = 0;
  while (first < piece_count) {
    msghdr message{};
    message.msg_iov = rest + first;
    message.msg_iovlen = static_cast<std::size_t>(piece_count - first);
    const ssize_t sent = ::sendmsg(_socket, &message, MSG_NOSIGNAL);
    if (sent < 0) {
      if (errno == EINTR) {
        continue;
      }
      if (errno != EAGAIN && errno != EWOULDBLOCK) {
        _in_sync = false;
        return VI_ERROR_CONN_LOST;
      }
      const comm_vi_status_t ready = _wait(POLLOUT, timeout_ms);
      if (ready != VI_SUCCESS) {
        _in_sync = _in_sync && total_sent == 0;
        return ready;
      }
      continue;
    }
    std::size_t taken = static_cast<std::size_t>(sent);
    total_sent += taken;
    while (first < piece_count && taken >= rest[first].iov_len) {
      taken -= rest[first].iov_len;
      ++first;
    }
    if (first < piece_count) {
      rest[first].iov_base = static_cast<char*>(rest[first].iov_base) + taken;
      rest[first].iov_len -= taken;
    }
  }
  return VI_SUCCESS;
}

comm_vi_status_t comm_tcp_connection_t::receive_some(void* buffer, std::size_t size,
                                                     std::size_t& received,
                                                     std::uint32_t timeout_ms) {
  received = 0;
  for (;;) {
    const ssize_t got = ::recv(_socket, buffer, size, 0);
    if (got > 0) {
      received = static_cast<std::size_t>(got);
      return VI_SUCCESS;
    }
    if (got == 0) {
      return VI_ERROR_CONN_LOST;
    }
    if (errno == EINTR) {
      continue;
    }
    if (errno != EAGAIN && errno != EWOULDBLOCK) {
      return VI_ERROR_CONN_LOST;
    }
    const comm_vi_status_t ready = _wait(POLLIN, timeout_ms);
    if (ready != VI_SUCCESS) {
      return ready;
    }
  }
}

comm_vi_status_t comm_tcp_connection_t::receive_exact(void* buffer, std::size_t size,
                                                      std::uint32_t timeout_ms) {
  char* const start = static_cast<char*>(buffer);
  char* at = start;
  while (size > 0) {
    std::size_t received = 0;
    const comm_vi_status_t status = receive_some(at, size, received, timeout_ms);
    if (status != VI_SUCCESS) {
      _in_sync = _in_sync && at == start;
      return status;
    }
    at += received;
    size -= received;
  }
  return VI_SUCCESS;
}

comm_vi_status_t comm_tcp_connection_t::_wait(short events, std::uint32_t timeout_ms) const {
  if (_socket < 0) {
    return VI_ERROR_CONN_LOST;
  }
  pollfd entry{_socket, events, 0};
  for (;;) {
    const int ready = ::poll(&entry, 1, poll_timeout(timeout_ms));
    if (ready > 0) {
      // A hang-up or error still lets the following call report what happened.
      return VI_SUCCESS;
    }
    if (ready == 0) {
      return VI_ERROR_TMO;
    }
    if (errno != EINTR) {
      return VI_ERROR_SYSTEM_ERROR;
    }
  }
}

}  // namespace nal

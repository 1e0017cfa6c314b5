#include "tools/instrument_sim/sim_raw_socket_server.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "tools/instrument_sim/sim_message_sink.h"
#include "tools/instrument_sim/sim_socket_io.h"

namespace wavelume_sim {

namespace {

// Ends the message and sends the reply it leaves, if any. False when the peer is gone.
bool finish_message(int socket, sim_message_sink_t& sink) {
  sink.end_message();
  if (sink.pending_reply().empty()) {
    return true;
  }
  const std::string reply = sink.take_reply(sink.pending_reply().size());
  sink.record_event(sim_wire_event_t::READ, reply);
  return sim_send_all(socket, reply.data(), reply.size());
}

// Feeds received bytes to the sink, ending each command at its line feed. A block takes
// everything; the first bytes of a message are fed one step at a time until its kind is known.
bool consume(int socket, sim_message_sink_t& sink, const unsigned char* data, std::size_t size) {
  while (size > 0) {
    if (sink.in_block()) {
      sink.feed(data, size);
      return true;
    }
    const auto* line_feed = std::find(data, data + size, '\n');
    std::size_t count = static_cast<std::size_t>(line_feed - data) + (line_feed < data + size);
    if (sink.message_size() < sim_message_sink_t::block_prefix_size) {
      count = std::min(count, sim_message_sink_t::block_prefix_size - sink.message_size());
    }
    sink.feed(data, count);
    const bool line_ended = data[count - 1] == '\n' && !sink.in_block();
    data += count;
    size -= count;
    if (line_ended && !finish_message(socket, sink)) {
      return false;
    }
  }
  return true;
}

}  // namespace

sim_raw_socket_server_t::sim_raw_socket_server_t(sim_wire_record_t& record,
                                                 sim_raw_socket_options_t options)
    : _record(record), _options(options) {}

sim_raw_socket_server_t::~sim_raw_socket_server_t() {
  stop();
}

void sim_raw_socket_server_t::serve(int socket) {
  sim_message_sink_t sink(_record, sim_transport_t::raw_socket, _record.next_session(),
                          _options.keeping);
  sink.record_event(sim_wire_event_t::CONNECT);
  std::vector<unsigned char> buffer(256 * 1024);
  for (;;) {
    int timeout_ms = -1;
    if (sink.message_begun()) {
      timeout_ms = static_cast<int>(sink.in_block() ? _options.block_idle_gap.count()
                                                    : _options.command_idle_gap.count());
    }
    pollfd ready{socket, POLLIN, 0};
    const int polled = ::poll(&ready, 1, timeout_ms);
    if (polled < 0 && errno == EINTR) {
      continue;
    }
    if (polled == 0) {
      if (!finish_message(socket, sink)) {
        break;
      }
      continue;
    }
    const ssize_t got = polled < 0 ? -1 : ::recv(socket, buffer.data(), buffer.size(), 0);
    if (got < 0 && errno == EINTR) {
      continue;
    }
    if (got <= 0 || !consume(socket, sink, buffer.data(), static_cast<std::size_t>(got))) {
      break;
    }
  }
  // A message cut by the close is still recorded; its reply has nobody to go to.
  sink.end_message();
  sink.record_event(sim_wire_event_t::CLOSE);
}

}  // namespace wavelume_sim

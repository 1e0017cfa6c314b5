#pragma once
// What the simulated instrument saw, in arrival order: the wire sequence of every connection
// (connect, each complete write with its size and first bytes, each read served, close) and the
// blocks kept from writes that begin "IQDA ". Filled by the server threads, read by tests and
// benchmarks; every member is safe to call from any thread.

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace wavelume_sim {

enum class sim_transport_t { raw_socket, vxi11, hislip };

// "socket", "vxi11" or "hislip".
const char* sim_transport_name(sim_transport_t transport);

struct sim_wire_event_t {
  enum kind_t { CONNECT, WRITE, READ, CLOSE };

  sim_transport_t transport = sim_transport_t::raw_socket;
  kind_t kind = CONNECT;
  // One number per instrument session (a raw connection, a VXI-11 link, a HiSLIP session),
  // counted from 1 across the whole simulator.
  int session = 0;
  // Bytes of the whole message written, or of the reply piece read.
  std::size_t size = 0;
  // The first bytes of the message or reply, at most `head_size` of them.
  std::string head;
  // When the event began on the wire: the connection accepted, a write's first byte received,
  // a reply sent.
  std::chrono::steady_clock::time_point time;
  // When a write's last byte was received; the same as `time` for other events.
  std::chrono::steady_clock::time_point last_byte_time;

  static constexpr std::size_t head_size = 32;
};

// How much of each kept block is held: its bytes, or only size and MD5, or only its size (for
// benchmarks, where hashing 100 MB on the receiving thread would slow the sender down).
enum class sim_block_keeping_t { bytes, md5, size_only };

struct sim_kept_block_t {
  sim_transport_t transport = sim_transport_t::raw_socket;
  int session = 0;
  // Including the leading "IQDA ".
  std::size_t size = 0;
  // Lowercase hexadecimal MD5 of all bytes; empty when kept by size only.
  std::string md5;
  // The bytes; empty unless kept as bytes.
  std::string bytes;
};

class sim_wire_record_t {
 public:
  void add_event(sim_wire_event_t event);
  void add_block(sim_kept_block_t block);
  std::vector<sim_wire_event_t> events() const;
  std::vector<sim_kept_block_t> blocks() const;
  // Forgets everything recorded so far; session numbers keep counting.
  void clear();
  int next_session();

  // Waits until `done` holds for the events and blocks recorded, or `timeout` passes; the
  // result of `done` at the end.
  bool wait_until(const std::function<bool(const std::vector<sim_wire_event_t>&,
                                           const std::vector<sim_kept_block_t>&)>& done,
                  std::chrono::milliseconds timeout) const;
  bool wait_for_blocks(std::size_t count, std::chrono::milliseconds timeout) const;

 private:
  mutable std::mutex _mutex;
  mutable std::condition_variable _changed;
  std::vector<sim_wire_event_t> _events;
  std::vector<sim_kept_block_t> _blocks;
  int _last_session = 0;
};

}  // namespace wavelume_sim

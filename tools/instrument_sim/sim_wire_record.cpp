#include "tools/instrument_sim/sim_wire_record.h"

#include <utility>

namespace wavelume_sim {

const char* sim_transport_name(sim_transport_t transport) {
  switch (transport) {
    case sim_transport_t::raw_socket:
      return "socket";
    case sim_transport_t::vxi11:
      return "vxi11";
    case sim_transport_t::hislip:
      return "hislip";
  }
  return "";
}

void sim_wire_record_t::add_event(sim_wire_event_t event) {
  {
    std::lock_guard<std::mutex> lock(_mutex);
    _events.push_back(std::move(event));
  }
  _changed.notify_all();
}

void sim_wire_record_t::add_block(sim_kept_block_t block) {
  {
    std::lock_guard<std::mutex> lock(_mutex);
    _blocks.push_back(std::move(block));
  }
  _changed.notify_all();
}

std::vector<sim_wire_event_t> sim_wire_record_t::events() const {
  std::lock_guard<std::mutex> lock(_mutex);
  return _events;
}

std::vector<sim_kept_block_t> sim_wire_record_t::blocks() const {
  std::lock_guard<std::mutex> lock(_mutex);
  return _blocks;
}

void sim_wire_record_t::clear() {
  std::lock_guard<std::mutex> lock(_mutex);
  _events.clear();
  _blocks.clear();
}

int sim_wire_record_t::next_session() {
  std::lock_guard<std::mutex> lock(_mutex);
  return ++_last_session;
}

bool sim_wire_record_t::wait_until(
    const std::function<bool(const std::vector<sim_wire_event_t>&,
                             const std::vector<sim_kept_block_t>&)>& done,
    std::chrono::milliseconds timeout) const {
  std::unique_lock<std::mutex> lock(_mutex);
  return _changed.wait_for(lock, timeout, [&] { return done(_events, _blocks); });
}

bool sim_wire_record_t::wait_for_blocks(std::size_t count,
                                        std::chrono::milliseconds timeout) const {
  return wait_until([count](const auto&, const auto& blocks) { return blocks.size() >= count; },
                    timeout);
}

}  // namespace wavelume_sim

#pragma once
// A counter spread over cache lines, so that threads counting at the same time do not contend
// for one line. Each thread works on its own slot (slots are handed out round-robin, so several
// threads may share one, which stays correct). Every operation is sequentially consistent.

#include <array>
#include <atomic>
#include <cstdint>

namespace nal::common_lib {

class lib_sharded_counter_t {
 public:
  // Increment and decrement act on the calling thread's slot: a thread must decrement what it
  // incremented itself.
  void increment() { _slots[_this_thread_slot()].value.fetch_add(1); }
  void decrement() { _slots[_this_thread_slot()].value.fetch_sub(1); }
  std::int64_t sum() const {
    std::int64_t total = 0;
    for (const auto& slot : _slots) {
      total += slot.value.load();
    }
    return total;
  }

 private:
  static constexpr std::size_t slot_count = 16;
  struct alignas(64) slot_t {
    std::atomic<std::int64_t> value{0};
  };

  static std::size_t _this_thread_slot() {
    static std::atomic<std::size_t> next_slot{0};
    thread_local const std::size_t slot = next_slot.fetch_add(1) % slot_count;
    return slot;
  }

  std::array<slot_t, slot_count> _slots;
};

}  // namespace nal::common_lib

#include "cfg/cfg_background_md5.h"

#include "cfg/cfg_md5.h"

namespace nal {

cfg_background_md5_t::cfg_background_md5_t(std::size_t slot_count, std::size_t slot_bytes)
    : _slot_bytes(slot_bytes),
      _slots(slot_count, std::vector<unsigned char>(slot_bytes)),
      _filled(slot_count, 0) {
  _worker = std::thread([this] { _hash_submitted(); });
}

cfg_background_md5_t::~cfg_background_md5_t() {
  finish_hex();
}

unsigned char* cfg_background_md5_t::acquire() {
  std::unique_lock<std::mutex> lock(_mutex);
  _changed.wait(lock, [this] { return _filled[_next_to_fill] == 0; });
  return _slots[_next_to_fill].data();
}

void cfg_background_md5_t::submit(std::size_t bytes) {
  if (bytes == 0) {
    return;
  }
  {
    std::lock_guard<std::mutex> lock(_mutex);
    _filled[_next_to_fill] = bytes;
    _next_to_fill = (_next_to_fill + 1) % _slots.size();
  }
  _changed.notify_all();
}

std::string cfg_background_md5_t::finish_hex() {
  {
    std::lock_guard<std::mutex> lock(_mutex);
    _closing = true;
  }
  _changed.notify_all();
  if (_worker.joinable()) {
    _worker.join();
  }
  return _digest;
}

void cfg_background_md5_t::_hash_submitted() {
  cfg_md5_t md5;
  std::size_t next_to_hash = 0;
  for (;;) {
    std::size_t bytes = 0;
    {
      std::unique_lock<std::mutex> lock(_mutex);
      _changed.wait(lock, [&] { return _filled[next_to_hash] != 0 || _closing; });
      bytes = _filled[next_to_hash];
      if (bytes == 0) {
        break;  // closing, and everything submitted is hashed
      }
    }
    // The slot is ours until it is marked free again, so it is read outside the lock.
    md5.update(_slots[next_to_hash].data(), bytes);
    {
      std::lock_guard<std::mutex> lock(_mutex);
      _filled[next_to_hash] = 0;
    }
    _changed.notify_all();
    next_to_hash = (next_to_hash + 1) % _slots.size();
  }
  _digest = md5.hex_digest();
}

}  // namespace nal

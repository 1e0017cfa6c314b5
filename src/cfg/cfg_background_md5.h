#pragma once
// MD5 of a byte stream computed on a thread of its own while the caller produces the bytes (and
// writes them elsewhere), so that hashing a waveform file overlaps encoding and writing it. The
// caller fills fixed-size slots in turn; the digest equals that of the bytes in submission order.

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace nal {

class cfg_background_md5_t {
 public:
  cfg_background_md5_t(std::size_t slot_count, std::size_t slot_bytes);
  ~cfg_background_md5_t();
  cfg_background_md5_t(const cfg_background_md5_t&) = delete;
  cfg_background_md5_t& operator=(const cfg_background_md5_t&) = delete;

  std::size_t slot_bytes() const { return _slot_bytes; }
  // The next slot to fill; waits while the hash thread still reads it.
  unsigned char* acquire();
  // Hands the first `bytes` of the acquired slot to the hash.
  void submit(std::size_t bytes);
  // Waits for every submitted byte and returns the lowercase hexadecimal digest (32 characters).
  std::string finish_hex();

 private:
  void _hash_submitted();

  const std::size_t _slot_bytes;
  std::vector<std::vector<unsigned char>> _slots;
  std::vector<std::size_t> _filled;  // bytes waiting in each slot; 0 when free
  std::size_t _next_to_fill = 0;
  std::mutex _mutex;
  std::condition_variable _changed;
  bool _closing = false;
  std::string _digest;
  std::thread _worker;
};

}  // namespace nal

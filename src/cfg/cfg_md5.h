#pragma once
// MD5 (RFC 1321) over a stream of bytes. The seal of a waveform file is one sequential digest over
// tens of megabytes, so its speed bounds how fast a file is written: the block function is chosen
// once for the processor (see cfg_md5_rounds.h).

#include <cstddef>
#include <cstdint>
#include <string>

namespace nal {

class cfg_md5_t {
 public:
  cfg_md5_t();

  void update(const void* data, std::size_t size);
  // Pads, finishes and returns the lowercase hexadecimal digest (32 characters); the object then
  // starts a new digest.
  std::string hex_digest();

  static std::string hex_digest_of(const void* data, std::size_t size);
  // True when the vector block function is in use on this processor.
  static bool uses_vector_lanes();

 private:
  void _reset();

  std::uint32_t _state[4];
  std::uint64_t _length = 0;
  unsigned char _pending[64];
  std::size_t _pending_bytes = 0;
};

}  // namespace nal

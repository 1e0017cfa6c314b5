#pragma once
// Inflation of a compressed MAT-file element (type 15, a zlib stream holding one whole element).
//
// The inner element's tag is inflated first, so that its declared size is known before anything
// large is allocated: a stream that declares or delivers more than the limit is refused, which
// keeps a small hostile file from claiming the machine's memory.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace nal {

class toolkit_mat_inflate_t {
 public:
  // The largest inflated element accepted: 1 GiB, and never more than a quarter of the
  // machine's physical memory.
  static std::size_t default_limit_bytes();

  // Inflates the `compressed_size` bytes at `compressed` into `inflated` (replaced). The inner tag
  // is read in the given byte order; when it is not a matrix, only its 8 bytes are returned, for
  // the caller to name the type. False with `problem` set when the stream is damaged, when the
  // element would exceed `limit_bytes`, or when the stream holds more than its tag declares;
  // `inflated` is then empty. Uses zlib's uncompress only.
  static bool inflate(const std::uint8_t* compressed, std::size_t compressed_size, bool big_endian,
                      std::size_t limit_bytes, std::vector<std::uint8_t>& inflated,
                      std::string& problem);
};

}  // namespace nal

#pragma once
// A read position in the bytes of one MAT-file element: tags by the reader's rule, numeric data
// converted to doubles, and the skip that moves past a sub-element's padding. Reads words in the
// file's byte order, little- or big-endian, as its header declared.
//
// Tag rule: if the upper 16 bits of the first word are 0, that word is the type and the next word
// the byte count (long form, 8 bytes). Otherwise the element is of the small form, and both the
// type and the byte count are taken from the upper 16 bits; the published small form keeps the
// type in the lower half, and the import keeps its historical reading on purpose (a 4-byte single
// in small form reads as two unsigned 16-bit values).
//
// The buffer does not own the bytes; they must outlive it. Every failure is reported under the
// name of the element being parsed and leaves the position where it was.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lib/lib_types.h"
#include "toolkit/toolkit_mat_tag.h"

namespace nal {

class toolkit_mat_buffer_t {
 public:
  toolkit_mat_buffer_t(const std::uint8_t* bytes, std::size_t size, bool big_endian);

  std::size_t remaining() const { return _size - _position; }
  bool is_big_endian() const { return _big_endian; }

  // Reads a tag; false when fewer bytes remain than the tag needs, or when a small-form tag
  // declares more than the 4 bytes it has room for.
  bool read_tag(toolkit_mat_tag_t& tag);
  // The tag's data without moving: false when it runs past the end of the buffer.
  bool peek_data(const toolkit_mat_tag_t& tag, const std::uint8_t*& data) const;
  // Moves past the tag's data: 4 bytes for the small form, the byte count rounded up to a
  // multiple of 8 for the long form. Padding cut off by the end of the buffer is forgiven; data
  // cut off is not. False, with nothing moved, on an empty buffer or cut-off data.
  bool skip(const toolkit_mat_tag_t& tag);

  // Converts the tag's data by its type: signed and unsigned integers of 8 to 64 bits, single,
  // double and UTF-8 bytes (as signed 8). `values` is replaced. An unknown type gives true with
  // `values` empty and `unknown_type` set, so the caller can name it; data running past the end
  // gives false. `value_limit` bounds the count of values converted; more is refused (false).
  bool read_numbers(const toolkit_mat_tag_t& tag, std::size_t value_limit,
                    lib_fp_data_arr_t& values, bool& unknown_type) const;
  // The tag's data as 32-bit words in the file's byte order; false when cut off.
  bool read_words(const toolkit_mat_tag_t& tag, std::vector<std::uint32_t>& words) const;

  std::uint32_t load_u32(const std::uint8_t* data) const;

 private:
  std::uint64_t _load(const std::uint8_t* data, std::size_t width) const;

  const std::uint8_t* _bytes;
  std::size_t _size;
  std::size_t _position = 0;
  bool _big_endian;
};

}  // namespace nal

#include "toolkit/toolkit_mat_buffer.h"

#include <cstring>

namespace nal {

namespace {

template <typename T>
T bit_cast_from(std::uint64_t bits) {
  T value;
  std::memcpy(&value, &bits, sizeof(T));
  return value;
}

// Converts one element of `width` bytes, already assembled into `bits`, by its MAT data type.
fp64 convert(uint32 type, std::uint64_t bits) {
  switch (type) {
    case 1:
    case 16:
      return static_cast<std::int8_t>(bits);
    case 2:
      return static_cast<std::uint8_t>(bits);
    case 3:
      return static_cast<std::int16_t>(bits);
    case 4:
      return static_cast<std::uint16_t>(bits);
    case 5:
      return static_cast<std::int32_t>(bits);
    case 6:
      return static_cast<std::uint32_t>(bits);
    case 7:
      return bit_cast_from<float>(bits);
    case 9:
      return bit_cast_from<double>(bits);
    case 12:
      return static_cast<fp64>(static_cast<std::int64_t>(bits));
    default:
      return static_cast<fp64>(bits);
  }
}

// Bytes per value of the numeric types; 0 for any other type.
std::size_t element_width(uint32 type) {
  switch (type) {
    case 1:
    case 2:
    case 16:
      return 1;
    case 3:
    case 4:
      return 2;
    case 5:
    case 6:
    case 7:
      return 4;
    case 9:
    case 12:
    case 13:
      return 8;
    default:
      return 0;
  }
}

}  // namespace

toolkit_mat_buffer_t::toolkit_mat_buffer_t(const std::uint8_t* bytes, std::size_t size,
                                           bool big_endian)
    : _bytes(bytes), _size(size), _big_endian(big_endian) {}

std::uint64_t toolkit_mat_buffer_t::_load(const std::uint8_t* data, std::size_t width) const {
  std::uint64_t value = 0;
  for (std::size_t k = 0; k < width; ++k) {
    const std::size_t shift = _big_endian ? width - 1 - k : k;
    value |= static_cast<std::uint64_t>(data[k]) << (8 * shift);
  }
  return value;
}

std::uint32_t toolkit_mat_buffer_t::load_u32(const std::uint8_t* data) const {
  return static_cast<std::uint32_t>(_load(data, 4));
}

bool toolkit_mat_buffer_t::read_tag(toolkit_mat_tag_t& tag) {
  if (remaining() < 4) {
    return false;
  }
  const std::uint32_t first = load_u32(_bytes + _position);
  if ((first >> 16) != 0) {
    tag.type = first >> 16;
    tag.byte_count = first >> 16;
    tag.small_form = true;
    if (tag.byte_count > 4 || remaining() < 8) {
      return false;
    }
    _position += 4;
    return true;
  }
  if (remaining() < 8) {
    return false;
  }
  tag.type = first;
  tag.byte_count = load_u32(_bytes + _position + 4);
  tag.small_form = false;
  _position += 8;
  return true;
}

bool toolkit_mat_buffer_t::peek_data(const toolkit_mat_tag_t& tag,
                                     const std::uint8_t*& data) const {
  if (tag.byte_count > remaining()) {
    return false;
  }
  data = _bytes + _position;
  return true;
}

bool toolkit_mat_buffer_t::skip(const toolkit_mat_tag_t& tag) {
  if (remaining() == 0 || tag.byte_count > remaining()) {
    return false;
  }
  const std::size_t step =
      tag.small_form ? 4 : (static_cast<std::size_t>(tag.byte_count) + 7) / 8 * 8;
  _position += step < remaining() ? step : remaining();
  return true;
}

bool toolkit_mat_buffer_t::read_numbers(const toolkit_mat_tag_t& tag, std::size_t value_limit,
                                        lib_fp_data_arr_t& values, bool& unknown_type) const {
  values.clear();
  unknown_type = false;
  const std::uint8_t* data = nullptr;
  if (!peek_data(tag, data)) {
    return false;
  }
  const std::size_t width = element_width(tag.type);
  if (width == 0) {
    unknown_type = true;
    return true;
  }
  const std::size_t count = tag.byte_count / width;
  if (count > value_limit) {
    return false;
  }
  values.resize(count);
  for (std::size_t k = 0; k < count; ++k) {
    values[k] = convert(tag.type, _load(data + k * width, width));
  }
  return true;
}

bool toolkit_mat_buffer_t::read_words(const toolkit_mat_tag_t& tag,
                                      std::vector<std::uint32_t>& words) const {
  words.clear();
  const std::uint8_t* data = nullptr;
  if (!peek_data(tag, data)) {
    return false;
  }
  words.resize(tag.byte_count / 4);
  for (std::size_t k = 0; k < words.size(); ++k) {
    words[k] = load_u32(data + 4 * k);
  }
  return true;
}

}  // namespace nal

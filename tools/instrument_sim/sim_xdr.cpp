#include "tools/instrument_sim/sim_xdr.h"

namespace wavelume_sim {

std::uint32_t sim_xdr_reader_t::u32() {
  if (!_ok || _size - _position < 4) {
    _ok = false;
    return 0;
  }
  const unsigned char* p = _data + _position;
  _position += 4;
  return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) |
         std::uint32_t{p[3]};
}

bool sim_xdr_reader_t::opaque(const unsigned char*& data, std::size_t& size, std::size_t limit) {
  data = nullptr;
  size = 0;
  const std::size_t length = u32();
  const std::size_t padded = (length + 3) & ~std::size_t{3};
  if (!_ok || length > limit || padded < length || _size - _position < padded) {
    _ok = false;
    return false;
  }
  data = _data + _position;
  size = length;
  _position += padded;
  return true;
}

std::string sim_xdr_reader_t::string(std::size_t limit) {
  const unsigned char* data = nullptr;
  std::size_t size = 0;
  if (!opaque(data, size, limit)) {
    return {};
  }
  return std::string(reinterpret_cast<const char*>(data), size);
}

void sim_xdr_writer_t::u32(std::uint32_t value) {
  const char word[4] = {static_cast<char>(value >> 24), static_cast<char>(value >> 16),
                        static_cast<char>(value >> 8), static_cast<char>(value)};
  _bytes.append(word, 4);
}

void sim_xdr_writer_t::opaque(const void* data, std::size_t size) {
  u32(static_cast<std::uint32_t>(size));
  _bytes.append(static_cast<const char*>(data), size);
  _bytes.append((4 - size % 4) % 4, '\0');
}

}  // namespace wavelume_sim

#pragma once
// Builds XDR (RFC 4506) data: big-endian 32-bit words, opaque data and strings padded to four
// bytes.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace nal {

class comm_xdr_writer_t {
 public:
  void put_uint(std::uint32_t value);
  // Length word, bytes and padding.
  void put_opaque(const void* data, std::size_t size);
  void put_string(const std::string& text) { put_opaque(text.data(), text.size()); }

  const std::vector<unsigned char>& bytes() const { return _bytes; }

  // Zero bytes that bring `size` to a multiple of four.
  static std::size_t padding(std::size_t size) { return (4 - size % 4) % 4; }

 private:
  std::vector<unsigned char> _bytes;
};

}  // namespace nal

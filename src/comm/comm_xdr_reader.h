#pragma once
// Reads XDR (RFC 4506) data from a byte range that it does not own. Every getter returns false
// once the data is exhausted, so a short or damaged reply is refused, never read past.

#include <cstddef>
#include <cstdint>

namespace nal {

class comm_xdr_reader_t {
 public:
  comm_xdr_reader_t(const unsigned char* data, std::size_t size) : _at(data), _end(data + size) {}

  bool get_uint(std::uint32_t& value);
  // Points `data` at the bytes of a variable-length opaque inside the range.
  bool get_opaque(const unsigned char*& data, std::uint32_t& size);
  // The bytes not read yet.
  const unsigned char* rest() const { return _at; }
  std::size_t rest_size() const { return static_cast<std::size_t>(_end - _at); }

 private:
  const unsigned char* _at;
  const unsigned char* _end;
};

}  // namespace nal

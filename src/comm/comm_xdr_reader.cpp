#include "comm/comm_xdr_reader.h"

#include "comm/comm_xdr_writer.h"

namespace nal {

bool comm_xdr_reader_t::get_uint(std::uint32_t& value) {
  if (_end - _at < 4) {
    return false;
  }
  value = static_cast<std::uint32_t>(_at[0]) << 24 | static_cast<std::uint32_t>(_at[1]) << 16 |
          static_cast<std::uint32_t>(_at[2]) << 8 | _at[3];
  _at += 4;
  return true;
}

bool comm_xdr_reader_t::get_opaque(const unsigned char*& data, std::uint32_t& size) {
  if (!get_uint(size)) {
    return false;
  }
  const std::size_t padded = size + comm_xdr_writer_t::padding(size);
  if (static_cast<std::size_t>(_end - _at) < padded) {
    return false;
  }
  data = _at;
  _at += padded;
  return true;
}

}  // namespace nal

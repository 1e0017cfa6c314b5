#include "comm/comm_xdr_writer.h"

namespace nal {

void comm_xdr_writer_t::put_uint(std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    _bytes.push_back(static_cast<unsigned char>(value >> shift));
  }
}

void comm_xdr_writer_t::put_opaque(const void* data, std::size_t size) {
  put_uint(static_cast<std::uint32_t>(size));
  const auto* bytes = static_cast<const unsigned char*>(data);
  _bytes.insert(_bytes.end(), bytes, bytes + size);
  _bytes.insert(_bytes.end(), padding(size), 0);
}

}  // namespace nal

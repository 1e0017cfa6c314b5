#pragma once
// XDR (RFC 4506) as the simulator's RPC servers need it: big-endian 32-bit words and
// variable-length opaque data padded to four bytes. The reader never reads past its buffer;
// after a short read `ok` is false and every further value is 0 or empty.

#include <cstddef>
#include <cstdint>
#include <string>

namespace wavelume_sim {

class sim_xdr_reader_t {
 public:
  sim_xdr_reader_t(const unsigned char* data, std::size_t size) : _data(data), _size(size) {}

  std::uint32_t u32();
  std::int32_t i32() { return static_cast<std::int32_t>(u32()); }
  // Variable-length opaque data or string of at most `limit` bytes, without copying: `data`
  // points into the buffer.
  bool opaque(const unsigned char*& data, std::size_t& size,
              std::size_t limit = static_cast<std::size_t>(-1));
  std::string string(std::size_t limit);
  bool ok() const { return _ok; }

 private:
  const unsigned char* _data;
  std::size_t _size;
  std::size_t _position = 0;
  bool _ok = true;
};

class sim_xdr_writer_t {
 public:
  void u32(std::uint32_t value);
  void i32(std::int32_t value) { u32(static_cast<std::uint32_t>(value)); }
  void opaque(const void* data, std::size_t size);
  const std::string& bytes() const { return _bytes; }

 private:
  std::string _bytes;
};

}  // namespace wavelume_sim

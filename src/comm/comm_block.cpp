#include "comm/comm_block.h"

#include <algorithm>

namespace nal {

namespace {

// One VISA write counts its bytes in 32 bits; kept parts above this go in several pieces.
constexpr std::uint64_t max_kept_piece = 1u << 30;

}  // namespace

void comm_block_t::add_bytes(const void* data, std::size_t size) {
  if (size == 0) {
    return;
  }
  part_t part;
  part.bytes = static_cast<const unsigned char*>(data);
  part.size = size;
  part.piece_bytes = static_cast<std::size_t>(std::min<std::uint64_t>(size, max_kept_piece));
  _parts.push_back(std::move(part));
  _size += size;
}

void comm_block_t::add_generated(std::uint64_t size, std::size_t piece_bytes, fill_t fill) {
  if (size == 0) {
    return;
  }
  part_t part;
  part.size = size;
  part.piece_bytes = std::max<std::size_t>(piece_bytes, 1);
  part.fill = std::move(fill);
  _parts.push_back(std::move(part));
  _size += size;
}

void comm_block_t::add_block(const comm_block_t& other) {
  _parts.insert(_parts.end(), other._parts.begin(), other._parts.end());
  _size += other._size;
}

std::uint64_t comm_block_t::piece_count() const {
  std::uint64_t count = 0;
  for (const part_t& part : _parts) {
    count += (part.size + part.piece_bytes - 1) / part.piece_bytes;
  }
  return count;
}

bool comm_block_t::for_each_piece(const piece_visitor_t& visit) const {
  std::vector<unsigned char> buffer;
  for (const part_t& part : _parts) {
    for (std::uint64_t first = 0; first < part.size; first += part.piece_bytes) {
      const auto count =
          static_cast<std::size_t>(std::min<std::uint64_t>(part.piece_bytes, part.size - first));
      if (part.bytes == nullptr) {
        buffer.resize(std::max(buffer.size(), part.piece_bytes));
        part.fill(first, count, buffer.data());
      }
      if (!visit(part.bytes != nullptr ? part.bytes + first : buffer.data(), count)) {
        return false;
      }
    }
  }
  return true;
}

std::vector<unsigned char> comm_block_t::joined() const {
  std::vector<unsigned char> bytes;
  bytes.reserve(static_cast<std::size_t>(_size));
  for_each_piece([&bytes](const unsigned char* data, std::size_t size) {
    bytes.insert(bytes.end(), data, data + size);
    return true;
  });
  return bytes;
}

}  // namespace nal

#pragma once
// A block for an instrument described as consecutive parts instead of one buffer, so that a
// waveform of hundreds of megabytes goes out without first being copied into one array. A part
// is either bytes the caller keeps alive until the block is written, or bytes produced on
// demand, piece by piece, into a buffer of the writer's (encoded samples). The pieces, in order,
// are the block's bytes exactly; the writer sends each piece as one VISA write. The description
// is read-only while written; one thread at a time.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace nal {

class comm_block_t {
 public:
  // Writes the `count` bytes of the part that start `first` bytes into it to `out`.
  using fill_t = std::function<void(std::uint64_t first, std::size_t count, unsigned char* out)>;
  // Takes a piece; false stops the walk.
  using piece_visitor_t = std::function<bool(const unsigned char* data, std::size_t size)>;

  // Bytes kept by the caller, sent as they are. An empty part adds nothing.
  void add_bytes(const void* data, std::size_t size);
  // `size` bytes that `fill` produces in pieces of `piece_bytes` (at least 1), the last one
  // shorter where `size` is no multiple of it.
  void add_generated(std::uint64_t size, std::size_t piece_bytes, fill_t fill);
  // The parts of `other`, whose kept bytes and producers must outlive this block's writing.
  void add_block(const comm_block_t& other);

  std::uint64_t size() const { return _size; }
  // How many pieces for_each_piece hands over.
  std::uint64_t piece_count() const;
  // Hands every piece in order to `visit`; a generated piece is valid only during its call.
  // True when every piece was taken.
  bool for_each_piece(const piece_visitor_t& visit) const;
  // All bytes in one array, for a writer that cannot send a block in several writes.
  std::vector<unsigned char> joined() const;

 private:
  struct part_t {
    const unsigned char* bytes = nullptr;  // null for a generated part
    std::uint64_t size = 0;
    std::size_t piece_bytes = 0;
    fill_t fill;
  };

  std::vector<part_t> _parts;
  std::uint64_t _size = 0;
};

}  // namespace nal

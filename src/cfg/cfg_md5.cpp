#include "cfg/cfg_md5.h"

#include <algorithm>
#include <cstring>

#include "cfg/cfg_cpu_features.h"
#include "cfg/cfg_md5_rounds.h"

namespace nal {

namespace {

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "message words are read in place");

struct general_lanes_t {
  using value_t = md5_word_t;

  static value_t from_word(md5_word_t word) { return word; }
  static md5_word_t to_word(value_t value) { return value; }
  static value_t add(value_t x, value_t y) { return x + y; }
  template <std::size_t step>
  static value_t add_message(value_t x, const md5_word_t* words) {
    return settled(x + words[md5_message_order[step]] + md5_round_constants[step]);
  }
  // The parts that do not wait for b are added first; F and I still need two operations after b.
  template <int round>
  static value_t add_round_function(value_t a, value_t b, value_t c, value_t d) {
    if constexpr (round == 0) {
      return a + (d ^ (b & (c ^ d)));
    } else if constexpr (round == 1) {
      return settled(a + (c & ~d)) + (b & d);
    } else if constexpr (round == 2) {
      return a + (b ^ settled(c ^ d));
    } else {
      return a + (c ^ (b | settled(~d)));
    }
  }
  template <int shift>
  static value_t rotate_left(value_t x) {
    return (x << shift) | (x >> (32 - shift));
  }
  // The block's words as they are; the steps pick theirs and add the constant as an immediate.
  static constexpr std::size_t prepared_words = 16;
  static void prepare(const unsigned char* block, md5_word_t* words) {
    std::memcpy(words, block, 64);
  }

 private:
  // The empty statement keeps the compiler from reassociating a sum behind a later operand.
  static value_t settled(value_t x) {
    asm("" : "+r"(x));
    return x;
  }
};

using block_function_t = void (*)(md5_word_t*, const unsigned char*, std::size_t);

block_function_t choose_block_function() {
#if defined(__x86_64__)
  if (cfg_cpu_has_avx512()) {
    return md5_blocks_avx512;
  }
#endif
  return md5_blocks_general;
}

const block_function_t hash_blocks = choose_block_function();

}  // namespace

void md5_blocks_general(md5_word_t state[4], const unsigned char* blocks, std::size_t count) {
  md5_blocks<general_lanes_t>(state, blocks, count);
}

cfg_md5_t::cfg_md5_t() {
  _reset();
}

void cfg_md5_t::_reset() {
  _state[0] = 0x67452301;
  _state[1] = 0xefcdab89;
  _state[2] = 0x98badcfe;
  _state[3] = 0x10325476;
  _length = 0;
  _pending_bytes = 0;
}

void cfg_md5_t::update(const void* data, std::size_t size) {
  const auto* bytes = static_cast<const unsigned char*>(data);
  _length += size;
  if (_pending_bytes > 0) {
    const std::size_t taken = std::min(size, sizeof _pending - _pending_bytes);
    std::memcpy(_pending + _pending_bytes, bytes, taken);
    _pending_bytes += taken;
    bytes += taken;
    size -= taken;
    if (_pending_bytes < sizeof _pending) {
      return;
    }
    hash_blocks(_state, _pending, 1);
    _pending_bytes = 0;
  }
  const std::size_t whole = size / 64;
  hash_blocks(_state, bytes, whole);
  _pending_bytes = size - 64 * whole;
  std::memcpy(_pending, bytes + 64 * whole, _pending_bytes);
}

std::string cfg_md5_t::hex_digest() {
  // 0x80, zeros up to 56 bytes modulo 64, then the length in bits, little endian.
  const std::uint64_t bits = _length * 8;
  unsigned char padding[72] = {0x80};
  const std::size_t zeros_end = (_pending_bytes < 56 ? 56 : 120) - _pending_bytes;
  for (std::size_t i = 0; i < 8; ++i) {
    padding[zeros_end + i] = static_cast<unsigned char>(bits >> (8 * i));
  }
  update(padding, zeros_end + 8);

  static constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (const md5_word_t word : _state) {
    for (int byte = 0; byte < 4; ++byte) {
      const unsigned value = (word >> (8 * byte)) & 0xFF;
      text += digits[value >> 4];
      text += digits[value & 0x0F];
    }
  }
  _reset();
  return text;
}

std::string cfg_md5_t::hex_digest_of(const void* data, std::size_t size) {
  cfg_md5_t md5;
  md5.update(data, size);
  return md5.hex_digest();
}

bool cfg_md5_t::uses_vector_lanes() {
#if defined(__x86_64__)
  return hash_blocks == md5_blocks_avx512;
#else
  return false;
#endif
}

}  // namespace nal

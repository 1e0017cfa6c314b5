#pragma once
// The 64 steps of an MD5 block (RFC 1321, section 3.4), written once over a "lanes" type that
// supplies the word operations, so that the general-register and the vector block functions run
// the same schedule. Everything here has internal linkage: the vector instantiation is compiled
// with other instruction-set flags and must never be merged with the general one.

#include <cstddef>
#include <cstdint>
#include <utility>

namespace nal {
namespace {

using md5_word_t = std::uint32_t;

// floor(abs(sin(i + 1)) * 2^32)
constexpr md5_word_t md5_round_constants[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

// The message word each step adds.
constexpr std::uint32_t md5_message_order[64] = {
    0,  1,  2,  3,  4, 5, 6,  7, 8,  9,  10, 11, 12, 13, 14, 15, 1, 6,  11, 0, 5, 10,
    15, 4,  9,  14, 3, 8, 13, 2, 7,  12, 5,  8,  11, 14, 1,  4,  7, 10, 13, 0, 3, 6,
    9,  12, 15, 2,  0, 7, 14, 5, 12, 3,  10, 1,  8,  15, 6,  13, 4, 11, 2,  9};

constexpr int md5_shifts[64] = {7, 12, 17, 22, 7, 12, 17, 22, 7, 12, 17, 22, 7, 12, 17, 22,
                                5, 9,  14, 20, 5, 9,  14, 20, 5, 9,  14, 20, 5, 9,  14, 20,
                                4, 11, 16, 23, 4, 11, 16, 23, 4, 11, 16, 23, 4, 11, 16, 23,
                                6, 10, 15, 21, 6, 10, 15, 21, 6, 10, 15, 21, 6, 10, 15, 21};

// The round functions F, G, H and I on single bits, for lanes that evaluate a truth table.
constexpr unsigned md5_round_function(int round, unsigned b, unsigned c, unsigned d) {
  switch (round) {
    case 0:
      return (b & c) | (~b & d);
    case 1:
      return (b & d) | (c & ~d);
    case 2:
      return b ^ c ^ d;
    default:
      return c ^ (b | ~d);
  }
}

// Step `step` rotates the roles of the four state words: a, b, c, d; then d, a, b, c; and so on.
// The lanes add the message word and constant to `a` first, while `b` is still being computed, so
// that what waits for `b` is only the round function, one addition, the rotation and the last
// addition.
template <class lanes_t, std::size_t step>
inline void md5_step(typename lanes_t::value_t (&s)[4], const md5_word_t* prepared) {
  constexpr std::size_t a = (4 - step % 4) % 4;
  constexpr std::size_t b = (a + 1) % 4;
  constexpr std::size_t c = (a + 2) % 4;
  constexpr std::size_t d = (a + 3) % 4;
  s[a] = lanes_t::template add_message<step>(s[a], prepared);
  s[a] = lanes_t::template add_round_function<step / 16>(s[a], s[b], s[c], s[d]);
  s[a] = lanes_t::add(lanes_t::template rotate_left<md5_shifts[step]>(s[a]), s[b]);
}

template <class lanes_t, std::size_t... step>
inline void md5_steps(typename lanes_t::value_t (&s)[4], const md5_word_t* prepared,
                      std::index_sequence<step...>) {
  (md5_step<lanes_t, step>(s, prepared), ...);
}

// Hashes `count` 64-byte blocks into `state`. The lanes prepare the next block's words (in the
// form their steps load) while the current one runs, so that they are in memory long before the
// steps need them.
template <class lanes_t>
void md5_blocks(md5_word_t state[4], const unsigned char* blocks, std::size_t count) {
  using value_t = typename lanes_t::value_t;
  value_t s[4] = {lanes_t::from_word(state[0]), lanes_t::from_word(state[1]),
                  lanes_t::from_word(state[2]), lanes_t::from_word(state[3])};
  alignas(64) md5_word_t prepared[2][lanes_t::prepared_words];
  if (count > 0) {
    lanes_t::prepare(blocks, prepared[0]);
  }
  for (std::size_t block = 0; block < count; ++block) {
    if (block + 1 < count) {
      lanes_t::prepare(blocks + 64 * (block + 1), prepared[(block + 1) % 2]);
    }
    const value_t start[4] = {s[0], s[1], s[2], s[3]};
    md5_steps<lanes_t>(s, prepared[block % 2], std::make_index_sequence<64>());
    for (std::size_t i = 0; i < 4; ++i) {
      s[i] = lanes_t::add(s[i], start[i]);
    }
  }
  for (std::size_t i = 0; i < 4; ++i) {
    state[i] = lanes_t::to_word(s[i]);
  }
}

}  // namespace

// `count` blocks in general registers, on any processor.
void md5_blocks_general(md5_word_t state[4], const unsigned char* blocks, std::size_t count);
#if defined(__x86_64__)
// `count` blocks with AVX-512 (F and VL); only to be called where the processor has them.
void md5_blocks_avx512(md5_word_t state[4], const unsigned char* blocks, std::size_t count);
#endif

}  // namespace nal

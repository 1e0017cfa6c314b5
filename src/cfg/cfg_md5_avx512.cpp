// MD5 blocks with the state in lane 0 of vector registers. AVX-512 evaluates each round function
// as one ternary-logic instruction and rotates in one, so every step waits for four dependent
// single-cycle operations (five or six in general registers). Compiled with AVX-512 enabled for
// this file alone; cfg_md5.cpp calls it only after asking the processor.

#include <immintrin.h>

#include "cfg/cfg_md5_rounds.h"

namespace nal {

namespace {

// The 8-bit truth table of a round function for vpternlogd with operands (d, c, b).
constexpr int ternary_table(int round) {
  int table = 0;
  for (unsigned index = 0; index < 8; ++index) {
    const unsigned d = (index >> 2) & 1;
    const unsigned c = (index >> 1) & 1;
    const unsigned b = index & 1;
    table |= static_cast<int>(md5_round_function(round, b, c, d) & 1) << index;
  }
  return table;
}

struct avx512_lanes_t {
  using value_t = __m128i;

  static value_t from_word(md5_word_t word) { return _mm_cvtsi32_si128(static_cast<int>(word)); }
  static md5_word_t to_word(value_t value) {
    return static_cast<md5_word_t>(_mm_cvtsi128_si32(value));
  }
  static value_t add(value_t x, value_t y) { return _mm_add_epi32(x, y); }
  // The empty statement keeps the compiler from reordering this sum behind the round function.
  template <std::size_t step>
  static value_t add_message(value_t x, const md5_word_t* prepared) {
    value_t sum = _mm_add_epi32(x, _mm_loadu_si32(prepared + step));
    asm("" : "+v"(sum));
    return sum;
  }
  template <int round>
  static value_t add_round_function(value_t a, value_t b, value_t c, value_t d) {
    return _mm_add_epi32(a, _mm_ternarylogic_epi32(d, c, b, ternary_table(round)));
  }
  template <int shift>
  static value_t rotate_left(value_t x) {
    return _mm_rol_epi32(x, shift);
  }
  // Each step's message word plus constant, in step order: two-source permutes, eight at a time.
  static constexpr std::size_t prepared_words = 64;
  static void prepare(const unsigned char* block, md5_word_t* schedule) {
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(block));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(block + 32));
    for (std::size_t i = 0; i < 64; i += 8) {
      const __m256i order =
          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(md5_message_order + i));
      const __m256i constants =
          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(md5_round_constants + i));
      _mm256_store_si256(reinterpret_cast<__m256i*>(schedule + i),
                         _mm256_add_epi32(_mm256_permutex2var_epi32(low, order, high), constants));
    }
  }
};

}  // namespace

void md5_blocks_avx512(md5_word_t state[4], const unsigned char* blocks, std::size_t count) {
  md5_blocks<avx512_lanes_t>(state, blocks, count);
}

}  // namespace nal

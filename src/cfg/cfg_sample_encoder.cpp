#include "cfg/cfg_sample_encoder.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <cmath>
#include <cstring>

#include "cfg/cfg_cpu_features.h"

namespace nal {

namespace {

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the file is little endian");

constexpr fp64 full_scale = 32767.0;

// The general rule for one sample.
inline void encode_sample(const lib_iq_sample_t& sample, unsigned char* out) {
  const std::uint16_t words[2] = {cfg_sample_encoder_t::encode_component(sample.real()),
                                  cfg_sample_encoder_t::encode_component(sample.imag())};
  std::memcpy(out, words, sizeof words);
}

#if defined(__SSE2__)
// Normalised samples (|I|, |Q| <= 1, where nothing wraps) two lanes at once, with the same
// truncation, exact remainder and half-away-from-zero step; others (and NaN) by the general rule.
inline void encode_fast(const lib_iq_sample_t& sample, unsigned char* out) {
  const __m128d value = _mm_loadu_pd(reinterpret_cast<const fp64*>(&sample));
  const __m128d magnitude = _mm_andnot_pd(_mm_set1_pd(-0.0), value);
  if (_mm_movemask_pd(_mm_cmple_pd(magnitude, _mm_set1_pd(1.0))) != 3) {
    encode_sample(sample, out);
    return;
  }
  const __m128d scaled = _mm_mul_pd(value, _mm_set1_pd(full_scale));
  const __m128i whole = _mm_cvttpd_epi32(scaled);
  const __m128d remainder = _mm_sub_pd(scaled, _mm_cvtepi32_pd(whole));
  // The comparison masks are 64-bit; their low halves line up with the two 32-bit lanes.
  const __m128i up = _mm_shuffle_epi32(_mm_castpd_si128(_mm_cmpge_pd(remainder, _mm_set1_pd(0.5))),
                                       _MM_SHUFFLE(3, 3, 2, 0));
  const __m128i down = _mm_shuffle_epi32(
      _mm_castpd_si128(_mm_cmple_pd(remainder, _mm_set1_pd(-0.5))), _MM_SHUFFLE(3, 3, 2, 0));
  const __m128i rounded = _mm_add_epi32(_mm_sub_epi32(whole, up), down);
  const int words = _mm_cvtsi128_si32(_mm_packs_epi32(rounded, rounded));
  std::memcpy(out, &words, sizeof words);
}
#else
inline void encode_fast(const lib_iq_sample_t& sample, unsigned char* out) {
  encode_sample(sample, out);
}
#endif

using encode_loop_t = void (*)(const lib_iq_sample_t*, std::size_t, unsigned char*);

encode_loop_t choose_encode_loop() {
#if defined(__x86_64__)
  if (cfg_cpu_has_avx512()) {
    return encode_samples_avx512;
  }
#endif
  return encode_samples_general;
}

const encode_loop_t encode_loop = choose_encode_loop();

}  // namespace

// round(value * 32767), half away from zero, on the integer part and the exact remainder: equal
// to the C library's round without a call per sample; 0 for what cannot be rounded to a 64-bit
// integer.
std::uint16_t cfg_sample_encoder_t::encode_component(fp64 value) {
  const fp64 scaled = value * full_scale;
  if (!(std::abs(scaled) < 9.0e18)) {
    return 0;
  }
  auto whole = static_cast<std::int64_t>(scaled);  // toward zero
  const fp64 remainder = scaled - static_cast<fp64>(whole);
  if (remainder >= 0.5) {
    ++whole;
  } else if (remainder <= -0.5) {
    --whole;
  }
  return static_cast<std::uint16_t>(static_cast<std::uint64_t>(whole));
}

void cfg_sample_encoder_t::encode(const lib_iq_sample_t* samples, std::size_t count,
                                  unsigned char* out) {
  encode_loop(samples, count, out);
}

bool cfg_sample_encoder_t::uses_vector_lanes() {
#if defined(__x86_64__)
  return encode_loop == encode_samples_avx512;
#else
  return false;
#endif
}

void encode_samples_general(const lib_iq_sample_t* samples, std::size_t count, unsigned char* out) {
  for (std::size_t i = 0; i < count; ++i) {
    encode_fast(samples[i], out + 4 * i);
  }
}

}  // namespace nal

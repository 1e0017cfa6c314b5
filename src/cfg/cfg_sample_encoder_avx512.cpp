// The sample encoding four samples (eight components) at a time: AVX-512 truncates, compares the
// exact remainders into masks and narrows to 16 bits in a few instructions. Compiled with AVX-512
// enabled for this file alone; cfg_sample_encoder.cpp calls it only after asking the processor.

#include <immintrin.h>

#include <cstring>

#include "cfg/cfg_sample_encoder.h"

namespace nal {

namespace {

// The general rule for `count` components.
void encode_components(const fp64* values, std::size_t count, unsigned char* out) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint16_t word = cfg_sample_encoder_t::encode_component(values[i]);
    std::memcpy(out + 2 * i, &word, sizeof word);
  }
}

}  // namespace

void encode_samples_avx512(const lib_iq_sample_t* samples, std::size_t count, unsigned char* out) {
  const auto* values = reinterpret_cast<const fp64*>(samples);
  const std::size_t components = 2 * count;
  const __m512i magnitude_bits = _mm512_set1_epi64(0x7FFFFFFFFFFFFFFF);
  std::size_t i = 0;
  for (; i + 8 <= components; i += 8) {
    const __m512d value = _mm512_loadu_pd(values + i);
    // Normalised components only, where nothing wraps; the rest (and NaN) by the general rule.
    const __m512d magnitude =
        _mm512_castsi512_pd(_mm512_and_si512(_mm512_castpd_si512(value), magnitude_bits));
    if (_mm512_cmp_pd_mask(magnitude, _mm512_set1_pd(1.0), _CMP_LE_OQ) != 0xFF) {
      encode_components(values + i, 8, out + 2 * i);
      continue;
    }
    const __m512d scaled = _mm512_mul_pd(value, _mm512_set1_pd(32767.0));
    // The zero-masked forms of the conversions: GCC 12 warns about the undefined vectors that the
    // plain forms pass through.
    __m256i whole = _mm512_maskz_cvttpd_epi32(0xFF, scaled);
    const __m512d remainder = _mm512_sub_pd(scaled, _mm512_maskz_cvtepi32_pd(0xFF, whole));
    const __mmask8 up = _mm512_cmp_pd_mask(remainder, _mm512_set1_pd(0.5), _CMP_GE_OQ);
    const __mmask8 down = _mm512_cmp_pd_mask(remainder, _mm512_set1_pd(-0.5), _CMP_LE_OQ);
    whole = _mm256_mask_add_epi32(whole, up, whole, _mm256_set1_epi32(1));
    whole = _mm256_mask_sub_epi32(whole, down, whole, _mm256_set1_epi32(1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 2 * i), _mm256_cvtepi32_epi16(whole));
  }
  encode_components(values + i, components - i, out + 2 * i);
}

}  // namespace nal

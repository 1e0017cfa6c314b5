#pragma once
// The samples of a waveform file: I and Q times 32767, rounded half away from zero, kept modulo
// 2^16 as signed 16-bit values (a magnitude above 1.0 wraps), low byte first; a value that is not
// finite, or too large to round, encodes as 0. The bulk loop is chosen once for the processor;
// every loop gives the same bytes.

#include <cstddef>
#include <cstdint>

#include "lib/lib_types.h"

namespace nal {

class cfg_sample_encoder_t {
 public:
  // Encodes `count` samples into the 4 count bytes at `out`.
  static void encode(const lib_iq_sample_t* samples, std::size_t count, unsigned char* out);
  // The rule for one component, as the low 16 bits of a two's complement integer.
  static std::uint16_t encode_component(fp64 value);
  // True when the AVX-512 loop is in use on this processor.
  static bool uses_vector_lanes();
};

// The loops behind encode(), for tests that compare them.
void encode_samples_general(const lib_iq_sample_t* samples, std::size_t count, unsigned char* out);
#if defined(__x86_64__)
// Only to be called where the processor has AVX-512 (F and VL).
void encode_samples_avx512(const lib_iq_sample_t* samples, std::size_t count, unsigned char* out);
#endif

}  // namespace nal

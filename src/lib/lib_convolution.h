#pragma once
// Linear convolution of sample arrays: block FFT overlap-add over OpenMP threads for long inputs,
// and the direct double sum for short ones. Stateless; safe on any thread.

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_convolution_t {
 public:
  // Overlap-add with FFT length F = max(32, next power of 2 of 2 * taps) and hop F / 2. `out`
  // gets samples + taps - 1 samples. With `multi_thread` the blocks are shared among
  // plib_t::get_work_thread_number() threads (at most one per block); the result is
  // bit-identical for any thread count. Fewer than 2 taps are reported and copy the input.
  static bool deal_fft_convolution(const lib_iq_data_arr_t& samples, const lib_iq_data_arr_t& taps,
                                   lib_iq_data_arr_t& out, bool multi_thread);
  // The same with an explicit worker count (clamped to 1..blocks), for benchmarks and tests.
  static bool deal_fft_convolution(const lib_iq_data_arr_t& samples, const lib_iq_data_arr_t& taps,
                                   lib_iq_data_arr_t& out, uint32 thread_count);
  // Direct form: the plain double sum with full complex products. An empty `samples` copies
  // `taps` to `out`.
  static void deal_convolution(const lib_iq_data_arr_t& samples, const lib_iq_data_arr_t& taps,
                               lib_iq_data_arr_t& out);
};

}  // namespace nal::common_lib

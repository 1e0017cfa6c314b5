#pragma once
// Cyclic pulse shaping of constellation points at the output rate. The result is that of impulse
// oversampling by `ratio` (each point followed by ratio - 1 zeros) and cyclic filtering with
// lib_filter_t::deal_filter, but only the non-zero inputs enter the sums: each output sample is a
// dot product of one polyphase branch of the taps with consecutive points.

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_polyphase_interpolator_t {
 public:
  // out[i] = sum_k taps[k] up[(i + taps.size() / 2 - k) mod (n ratio)], i in [0, n ratio), where
  // up is the zero-stuffed point stream. `thread_count` workers share the output; every sample is
  // computed the same way whatever their number. `largest_component` receives the largest |I| or
  // |Q| of the output, found on the way for the normalisation that follows. False (and `out`
  // emptied) for no points, a ratio of 0 or fewer than 2 taps, which the caller filters the
  // literal way instead.
  static bool deal_cyclic_interpolation(const lib_iq_data_arr_t& points, uint32 ratio,
                                        const lib_iq_data_arr_t& taps, lib_iq_data_arr_t& out,
                                        uint32 thread_count, fp64& largest_component);
  // The same with the delay removed given explicitly: taps.size() / 2 above. A pulse made of a
  // hold over one symbol and a filter keeps the filter's centre.
  static bool deal_cyclic_interpolation(const lib_iq_data_arr_t& points, uint32 ratio,
                                        const lib_iq_data_arr_t& taps, std::size_t centre,
                                        lib_iq_data_arr_t& out, uint32 thread_count,
                                        fp64& largest_component);
};

}  // namespace nal::common_lib

#pragma once
// Cyclic filtering at a rational rate change, computed only where it is kept. The result is that
// of stuffing `up` - 1 zeros after each input sample, filtering the periodic stream cyclically,
// and keeping every `down`-th sample, but only the non-zero inputs enter the sums and only the
// kept outputs are computed: each output is a dot product of one polyphase branch of the taps
// with consecutive inputs. Pulse shaping of constellation points is the case down = 1.
// Stateless; safe on any thread.

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_polyphase_resampler_t {
 public:
  // out[m] = sum_k taps[k] stuffed[(m down + centre - k) mod (n up)] for m in [0, count), where
  // stuffed is the input with up - 1 zeros after each sample and n the input size. `centre`
  // removes the filter's delay (taps.size() / 2 for a cyclic filter of those taps).
  // `thread_count` workers share the outputs; every sample is computed the same way whatever
  // their number. `largest_component` receives the largest |I| or |Q| of the output. False (and
  // `out` emptied) for no input, a factor of 0 or fewer than 2 taps: a single tap is left to the
  // literal filter, which reports it.
  static bool deal_cyclic_resampling(const lib_iq_data_arr_t& input, uint32 up, uint32 down,
                                     const lib_iq_data_arr_t& taps, std::size_t centre,
                                     std::size_t count, lib_iq_data_arr_t& out, uint32 thread_count,
                                     fp64& largest_component);
  // Pulse shaping: up = ratio, down = 1, count = n ratio.
  static bool deal_cyclic_interpolation(const lib_iq_data_arr_t& points, uint32 ratio,
                                        const lib_iq_data_arr_t& taps, std::size_t centre,
                                        lib_iq_data_arr_t& out, uint32 thread_count,
                                        fp64& largest_component);
};

}  // namespace nal::common_lib

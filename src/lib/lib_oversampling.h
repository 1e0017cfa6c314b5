#pragma once
// Raising a stream of constellation points to the sample rate before pulse shaping. Stateless.

#include "lib/lib_types.h"

namespace nal::common_lib {

// How points are brought to the sample rate; chosen by the constellation and its pulse filter.
enum oversampling_kind_t : uint32 {
  OVERSAMPLING_INSERT_ZERO = 0,  // impulses, for Nyquist pulses
  OVERSAMPLING_HOLDER = 1,       // each point held for a symbol, for Gaussian pulses
  OVERSAMPLING_OFFSET = 2,       // OQPSK: Q impulses half a symbol behind I
};

class lib_oversampling_t {
 public:
  // Dispatches on `kind`; an unknown kind leaves `out` as it was.
  static void deal_oversampling(const lib_iq_data_arr_t& samples, uint32 ratio,
                                lib_iq_data_arr_t& out, uint32 kind);
  // n * ratio samples: each input followed by ratio - 1 zeros. Ratio 0 is reported.
  static void _deal_insert_zero_oversampling(const lib_iq_data_arr_t& samples, uint32 ratio,
                                             lib_iq_data_arr_t& out);
  // Each input repeated ratio times. Ratio 0 is reported.
  static void _deal_holder_oversampling(const lib_iq_data_arr_t& samples, uint32 ratio,
                                        lib_iq_data_arr_t& out);
  // n * ratio zeros with (I, 0) at i * ratio and (0, Q) at i * ratio + ratio / 2. The ratio must
  // be even and positive.
  static void deal_offset_oversampling(const lib_iq_data_arr_t& samples, uint32 ratio,
                                       lib_iq_data_arr_t& out);
};

}  // namespace nal::common_lib

#pragma once
// Every setting of a multitone generator, applied in one call by
// lib_multitone_t::set_multitone_config. The generator bounds the values as it stores them.

#include "lib/lib_types.h"

namespace nal::common_lib {

struct lib_multitone_config_t {
  fp64 sample_rate = 2000000.0;     // Hz, 1000 to 1e10
  fp64 start_frequency = 0.0;       // Hz, first tone of an equally spaced bank
  fp64 stop_frequency = 1000000.0;  // Hz, last tone of an equally spaced bank
  uint32 tone_number = 2;           // 1 to 10000; 1 puts one tone midway
  bool single_side = false;         // false: each tone also at its mirror bin
  bool custom_frequency_enable = false;
  lib_fp_data_arr_t custom_frequencies;  // Hz, used instead of the bank when enabled
};

}  // namespace nal::common_lib

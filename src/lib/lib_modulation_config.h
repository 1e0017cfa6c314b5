#pragma once
// Every setting of a symbol modulator, applied in one call by
// lib_modulation_base_t::set_modulation_config.

#include <cstdint>
#include <vector>

#include "lib/lib_enum_types.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

struct lib_modulation_config_t {
  // 0 APSK and QAM, 1 FSK, 2 custom; must match the modulator it is given to.
  uint32 modulator_type = MODULATOR_APSK_QAM;
  uint32 symbol_rate = 5000;  // symbols per second
  uint32 oversampling_ratio = 2;
  // Data source code of lib_symbol_data_t: 0..5 a PRBS type, 6 the custom bits.
  uint32 data_source_code = 1;
  uint32 symbol_length = 512;             // symbols per waveform
  std::vector<std::uint8_t> custom_bits;  // one bit per byte, used with code 6
  modulation_type_t constellation_type = MOD_2ASK;
  bool gray_code = false;                     // APSK and QAM family only
  fp64 frequency_deviation = 100.0;           // Hz, FSK family only
  lib_constellation_map_t constellation_map;  // custom constellation (Multitone2) only
  filter_type_t filter_type = FILTER_ROOT_COSINE;
  fp64 filter_parameter = 0.5;  // roll-off, or bandwidth-time product for Gaussian
  uint32 filter_length = 32;    // symbols
};

}  // namespace nal::common_lib

#pragma once
// The whole input of one symbol-modulated waveform: modulator settings, carrier and resampling.

#include <cstdint>
#include <vector>

#include "lib/lib_enum_types.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

struct lib_iq_waveform_config_t {
  uint32 modulator_type = MODULATOR_APSK_QAM;  // 0 APSK/QAM, 1 FSK, 2 custom
  uint32 symbol_rate = 5000;                   // symbols per second
  uint32 oversampling = 2;                     // samples per symbol
  uint32 data_source_type = 1;  // data source code: 0..5 a PRBS type, 6 the user bits
  uint32 symbol_length = 512;
  std::vector<std::uint8_t> user_bits;           // one bit per byte, read with source 6 only
  uint32 constellation_type = MOD_2ASK;          // modulation_type_t; 31 is the custom map
  bool gray_code_enable = false;                 // APSK/QAM only
  uint32 fsk_deviation = 100;                    // Hz, FSK only
  lib_constellation_map_t custom_constellation;  // constellation type 31 only
  uint32 filter_type = FILTER_ROOT_COSINE;       // filter_type_t
  fp64 filter_parameter = 0.5;                   // roll-off or bandwidth-time product
  uint32 filter_length = 32;                     // symbols
  fp64 carrier_frequency = 20000000.0;           // Hz
  uint32 waveform_sample_rate = 400000000;       // Hz, of the carrier-modulated output
  bool resample_enable = false;
  uint32 iq_sample_rate = 2000000;  // Hz, resampling target
};

}  // namespace nal::common_lib

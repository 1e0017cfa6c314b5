#pragma once
// Conversions between the modulation enumerations and their sizes, and between array kinds.

#include "lib/lib_enum_types.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_common_type_cast_t {
 public:
  // Points of a constellation; 0 and a report for Multitone2 and unknown values.
  static uint32 get_constellation_point(modulation_type_t type);
  // Bits per symbol, log2 of the point count cut toward zero. `custom_points` is used for
  // Multitone2 only.
  static uint32 get_symbol_bit_number(modulation_type_t type, uint32 custom_points);
  // 0..25 are APSK/QAM, 26..30 MFSK, everything else Multitone.
  static modulator_type_t get_modulator_type(modulation_type_t type);
  static void real_to_complex_arr(const lib_fp_data_arr_t& values, lib_iq_data_arr_t& out);
};

}  // namespace nal::common_lib

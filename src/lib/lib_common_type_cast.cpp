#include "lib/lib_common_type_cast.h"

#include <array>
#include <cmath>

#include "lib/lib_report.h"

namespace nal::common_lib {

uint32 lib_common_type_cast_t::get_constellation_point(modulation_type_t type) {
  // Indexed by modulation_type_t value; Multitone2 (31) has no fixed size.
  static constexpr std::array<uint32, 31> points = {
      2, 2,  2,  4,  4,   8,   16,  2,    4,    4,    8, 8, 16, 16, 32, 4,
      8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 2, 2, 4,  8,  16};
  if (type >= points.size()) {
    lib_report("lib_common_type_cast_t::get_constellation_point Report: Error Constellation Type!");
    return 0;
  }
  return points[type];
}

uint32 lib_common_type_cast_t::get_symbol_bit_number(modulation_type_t type, uint32 custom_points) {
  const uint32 points = type == MOD_MULTITONE2 ? custom_points : get_constellation_point(type);
  if (points == 0) {
    return 0;
  }
  return static_cast<uint32>(std::log2(static_cast<fp64>(points)));
}

modulator_type_t lib_common_type_cast_t::get_modulator_type(modulation_type_t type) {
  if (type <= MOD_4096QAM) {
    return MODULATOR_APSK_QAM;
  }
  if (type <= MOD_16FSK) {
    return MODULATOR_MFSK;
  }
  return MODULATOR_MULTITONE;
}

void lib_common_type_cast_t::real_to_complex_arr(const lib_fp_data_arr_t& values,
                                                 lib_iq_data_arr_t& out) {
  out.clear();
  out.reserve(values.size());
  for (const fp64 v : values) {
    out.emplace_back(v, 0.0);
  }
}

}  // namespace nal::common_lib

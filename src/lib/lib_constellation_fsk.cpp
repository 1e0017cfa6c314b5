#include "lib/lib_constellation_fsk.h"

#include "lib/lib_oversampling.h"

namespace nal::common_lib {

lib_constellation_fsk_t::lib_constellation_fsk_t() : lib_constellation_fsk_t(MOD_2FSK) {}

lib_constellation_fsk_t::lib_constellation_fsk_t(modulation_type_t type)
    : lib_constellation_base_t(type) {
  _set_supported_types({MOD_2FSK, MOD_4FSK, MOD_8FSK, MOD_16FSK, MOD_MSK});
}

void lib_constellation_fsk_t::deal_oversampling(const lib_iq_data_arr_t& points, uint32 ratio,
                                                lib_iq_data_arr_t& out) {
  lib_constellation_base_t::deal_oversampling(points, ratio, out);
  // A refused ratio of 0 leaves `out` empty, so the scale is never applied with it.
  if (get_oversampling_type() != OVERSAMPLING_HOLDER || out.empty()) {
    return;
  }
  const fp64 scale = 1.0 / ratio;
  for (lib_iq_sample_t& sample : out) {
    sample *= scale;
  }
}

bool lib_constellation_fsk_t::generate_default_constellation() {
  return _generate_with(&generate_default_fsk_constellation);
}

uint32 lib_constellation_fsk_t::get_oversampling_type() const {
  return _filter_type == FILTER_GAUSSIAN || _filter_type == FILTER_NONE ? OVERSAMPLING_HOLDER
                                                                        : OVERSAMPLING_INSERT_ZERO;
}

bool lib_constellation_fsk_t::generate_default_fsk_constellation(uint32 points,
                                                                 lib_constellation_map_t& map,
                                                                 bool gray) {
  if (!_start_power_of_2_map(
          points, map,
          "lib_constellation_ask_t::generate_default_fsk_constellation Report: Illegal "
          "Constellation Point!")) {
    return false;
  }
  const fp64 half = (points - 1) / 2.0;
  const uint32 half_points = points / 2;
  for (uint32 j = 0; j < half_points; ++j) {
    map[gray ? gray_code(j) : j] = {j - half, 0.0};
  }
  for (uint32 u = 0; u < half_points; ++u) {
    const uint32 symbol = half_points + u;
    map[gray ? gray_code(symbol) : symbol] = {half - u, 0.0};
  }
  return max_normalize(map);
}

}  // namespace nal::common_lib

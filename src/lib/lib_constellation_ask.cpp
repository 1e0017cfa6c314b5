#include "lib/lib_constellation_ask.h"

namespace nal::common_lib {

lib_constellation_ask_t::lib_constellation_ask_t() : lib_constellation_ask_t(MOD_2ASK) {}

lib_constellation_ask_t::lib_constellation_ask_t(modulation_type_t type)
    : lib_constellation_base_t(type) {
  _set_supported_types({MOD_2ASK});
}

bool lib_constellation_ask_t::generate_default_constellation() {
  return _generate_with(&generate_default_ask_constellation);
}

bool lib_constellation_ask_t::generate_default_ask_constellation(uint32 points,
                                                                 lib_constellation_map_t& map,
                                                                 bool gray) {
  if (!_start_power_of_2_map(
          points, map,
          "lib_constellation_ask_t::generate_default_ask_constellation Report: Illegal "
          "Constellation Point!")) {
    return false;
  }
  for (uint32 i = 0; i < points; ++i) {
    map[gray ? gray_code(i) : i] = {i + 1.0, 0.0};
  }
  return normalize(map);
}

}  // namespace nal::common_lib

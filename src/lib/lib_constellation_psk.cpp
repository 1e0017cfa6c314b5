#include "lib/lib_constellation_psk.h"

#include <cmath>
#include <stdexcept>
#include <string>

#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

lib_constellation_psk_t::lib_constellation_psk_t() : lib_constellation_psk_t(MOD_BPSK) {}

lib_constellation_psk_t::lib_constellation_psk_t(modulation_type_t type)
    : lib_constellation_base_t(type) {
  _set_supported_types({MOD_BPSK, MOD_QPSK, MOD_8PSK, MOD_16PSK});
}

bool lib_constellation_psk_t::generate_default_constellation() {
  return _generate_with(&generate_default_psk_constellation);
}

bool lib_constellation_psk_t::generate_default_psk_constellation(uint32 points,
                                                                 lib_constellation_map_t& map,
                                                                 bool gray) {
  if (!_start_power_of_2_map(
          points, map,
          "lib_constellation_psk_t::generate_default_psk_constellation Report: Illegal "
          "Constellation Point!")) {
    return false;
  }
  if (points == 2) {
    map = {{0, {-1.0, 0.0}}, {1, {1.0, 0.0}}};
  } else if (points == 4) {
    map = {{0, {-1.0, 1.0}}, {1, {1.0, 1.0}}, {2, {-1.0, -1.0}}, {3, {1.0, -1.0}}};
  } else {
    for (uint32 i = 0; i < points; ++i) {
      const fp64 angle = i * 2.0 * lib_pi / points;
      map[gray ? gray_code(i) : i] = {std::cos(angle), std::sin(angle)};
    }
  }
  return normalize(map);
}

void lib_constellation_psk_t::_get_differential_iq_data(const lib_symbol_arr_t& symbols,
                                                        phase_increment_t increment,
                                                        lib_iq_data_arr_t& out) const {
  out.clear();
  if (symbols.empty()) {
    lib_report("lib_constellation_dpsk_t::get_symbol_iq_data Report: Symbol array is empty!");
    return;
  }
  try {
    fp64 phase = plib_t::get_complex_phase(_constellation_map.at(symbols.front()));
    out.reserve(symbols.size());
    out.emplace_back(std::cos(phase), std::sin(phase));
    for (std::size_t i = 1; i < symbols.size(); ++i) {
      phase += increment(symbols[i], _constellation_point);
      out.emplace_back(std::cos(phase), std::sin(phase));
    }
  } catch (const std::out_of_range& error) {
    lib_report(std::string("\033[0;31mget_symbol_iq_data") + error.what() + "\033[0m");
  }
}

}  // namespace nal::common_lib

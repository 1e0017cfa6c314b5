#include "lib/lib_constellation_custom.h"

#include "lib/lib_report.h"

namespace nal::common_lib {

lib_constellation_custom_t::lib_constellation_custom_t()
    : lib_constellation_custom_t(MOD_MULTITONE2) {}

lib_constellation_custom_t::lib_constellation_custom_t(modulation_type_t type)
    : lib_constellation_base_t(type) {
  _supported_types = {MOD_MULTITONE2};
}

void lib_constellation_custom_t::get_symbol_iq_data(const lib_symbol_arr_t& symbols,
                                                    lib_iq_data_arr_t& out) {
  out.clear();
  if (check_constellation_map_validity(_constellation_map) != 0) {
    lib_report(
        "lib_constellation_custom_t::get_symbol_iq_data Report: Try to generate IQ signal with "
        "illegal custom constellation!");
    return;
  }
  lib_constellation_base_t::get_symbol_iq_data(symbols, out);
}

void lib_constellation_custom_t::update_point_by_type() {}

bool lib_constellation_custom_t::generate_default_constellation() {
  return false;
}

}  // namespace nal::common_lib

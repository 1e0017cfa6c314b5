#include "lib/lib_constellation_pr_ask.h"

#include "lib/lib_report.h"

namespace nal::common_lib {

lib_constellation_pr_ask_t::lib_constellation_pr_ask_t() : lib_constellation_pr_ask_t(MOD_PR_ASK) {}

lib_constellation_pr_ask_t::lib_constellation_pr_ask_t(modulation_type_t type)
    : lib_constellation_base_t(type) {
  _set_supported_types({MOD_PR_ASK});
}

void lib_constellation_pr_ask_t::get_symbol_iq_data(const lib_symbol_arr_t& symbols,
                                                    lib_iq_data_arr_t& out) {
  lib_constellation_base_t::get_symbol_iq_data(symbols, out);
  for (std::size_t i = 1; i < out.size(); i += 2) {
    out[i] = -out[i];
  }
}

bool lib_constellation_pr_ask_t::generate_default_constellation() {
  clear_constellation();
  return generate_default_pr_ask_constellation(_constellation_point, _constellation_map,
                                               _gray_code_enable, default_modulation_depth);
}

bool lib_constellation_pr_ask_t::generate_default_pr_ask_constellation(uint32 points,
                                                                       lib_constellation_map_t& map,
                                                                       bool gray, fp64 depth) {
  map.clear();
  if (points != 2) {
    lib_report(
        "lib_constellation_pr_ask_t::generate_default_pr_ask_constellation Report: Illegal "
        "Constellation Point!");
    return false;
  }
  if (gray) {
    lib_report(
        "lib_constellation_pr_ask_t::generate_default_pr_ask_constellation Report: PR-ASK with "
        "Gray Code is NOT supported!");
  }
  if (depth < -lib_tolerance || depth > 1.0 + lib_tolerance) {
    lib_report(
        "lib_constellation_pr_ask_t::generate_default_pr_ask_constellation Report: Illegal "
        "modulation depth!");
  }
  map[0] = {1.0 - depth, 0.0};
  map[1] = {1.0, 0.0};
  return normalize(map);
}

}  // namespace nal::common_lib

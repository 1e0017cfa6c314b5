#include "lib/lib_ofdm_cyclic_config.h"

#include <algorithm>
#include <cmath>

namespace nal::common_lib {

lib_ofdm_cyclic_config_t::lib_ofdm_cyclic_config_t(fp64 fraction)
    : default_ratio(clamp_ratio(fraction, ratio_min, ratio_max)) {}

void lib_ofdm_cyclic_config_t::set_default_ratio(fp64 ratio) {
  default_ratio = clamp_ratio(ratio, ratio_min, ratio_max);
  entry_list.clear();
}

fp64 lib_ofdm_cyclic_config_t::get_symbol_ratio(uint32 symbol_index) const {
  for (const lib_ofdm_cyclic_entry_t& entry : entry_list) {
    const lib_symbol_arr_t& indices = entry.symbol_index_list;
    if (std::find(indices.begin(), indices.end(), symbol_index) != indices.end()) {
      return entry.ratio;
    }
  }
  return default_ratio;
}

void lib_ofdm_cyclic_config_t::drop_symbols_from(uint32 symbol_number) {
  for (lib_ofdm_cyclic_entry_t& entry : entry_list) {
    lib_symbol_arr_t& indices = entry.symbol_index_list;
    indices.erase(std::remove_if(indices.begin(), indices.end(),
                                 [symbol_number](uint32 index) { return index >= symbol_number; }),
                  indices.end());
  }
  entry_list.erase(
      std::remove_if(entry_list.begin(), entry_list.end(),
                     [](const lib_ofdm_cyclic_entry_t& e) { return e.symbol_index_list.empty(); }),
      entry_list.end());
}

fp64 lib_ofdm_cyclic_config_t::clamp_ratio(fp64 value, fp64 minimum, fp64 maximum) {
  if (std::isnan(value)) {
    return minimum;
  }
  return std::min(std::max(value, minimum), maximum);
}

uint32 lib_ofdm_cyclic_config_t::get_ratio_length(fp64 ratio, uint32 length) {
  return static_cast<uint32>(std::llround(ratio * static_cast<fp64>(length)));
}

}  // namespace nal::common_lib

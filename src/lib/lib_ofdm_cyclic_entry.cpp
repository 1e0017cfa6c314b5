#include "lib/lib_ofdm_cyclic_entry.h"

#include <utility>

#include "lib/lib_ofdm_cyclic_config.h"

namespace nal::common_lib {

lib_ofdm_cyclic_entry_t::lib_ofdm_cyclic_entry_t(lib_symbol_arr_t symbol_indices, fp64 fraction)
    : symbol_index_list(std::move(symbol_indices)),
      ratio(lib_ofdm_cyclic_config_t::clamp_ratio(fraction, ratio_min, ratio_max)) {}

}  // namespace nal::common_lib

#pragma once
// A per-symbol exception to the cyclic length of an OFDM frame: the symbols listed use `ratio`
// instead of the frame's default. Plain value; copyable; no locks.

#include "lib/lib_types.h"

namespace nal::common_lib {

struct lib_ofdm_cyclic_entry_t {
  lib_ofdm_cyclic_entry_t() = default;
  // `fraction` is clamped to [ratio_min, ratio_max]; a negative or NaN fraction becomes 0.0.
  lib_ofdm_cyclic_entry_t(lib_symbol_arr_t symbol_indices, fp64 fraction);

  // Symbol indices, from 0. The list order carries no meaning.
  lib_symbol_arr_t symbol_index_list;
  fp64 ratio_min = 0.0;
  fp64 ratio_max = 1.0;
  // Cyclic length as a fraction of the symbol's useful length.
  fp64 ratio = 0.0;
};

}  // namespace nal::common_lib

#pragma once
// The cyclic length (prefix or suffix) of every symbol of an OFDM frame: a default ratio of the
// useful length plus per-symbol exceptions. Plain value; copyable; no locks.

#include <vector>

#include "lib/lib_ofdm_cyclic_entry.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

struct lib_ofdm_cyclic_config_t {
  lib_ofdm_cyclic_config_t() = default;
  // Range [0, 1], `fraction` clamped into it, an empty entry list.
  explicit lib_ofdm_cyclic_config_t(fp64 fraction);

  // Clamps and drops every exception, so that the new default applies to all symbols.
  void set_default_ratio(fp64 ratio);
  // The ratio of the first entry that lists `symbol_index`, else the default.
  fp64 get_symbol_ratio(uint32 symbol_index) const;
  // Drops every index not below `symbol_number`, then every entry left without indices.
  void drop_symbols_from(uint32 symbol_number);

  // `value` limited to [minimum, maximum]; NaN gives `minimum`.
  static fp64 clamp_ratio(fp64 value, fp64 minimum, fp64 maximum);
  // round(ratio * length), halves away from zero, for the non-negative ratios used here.
  static uint32 get_ratio_length(fp64 ratio, uint32 length);

  fp64 ratio_min = 0.0;
  fp64 ratio_max = 1.0;
  fp64 default_ratio = 0.0;
  std::vector<lib_ofdm_cyclic_entry_t> entry_list;
};

}  // namespace nal::common_lib

#pragma once
// Phase-reversal ASK: two amplitude levels whose sign alternates from one output point to the
// next, so the carrier reverses phase every symbol.

#include "lib/lib_constellation_base.h"

namespace nal::common_lib {

class lib_constellation_pr_ask_t : public lib_constellation_base_t {
 public:
  // Modulation depth the default map uses.
  static constexpr fp64 default_modulation_depth = 0.9;

  // PR-ASK.
  lib_constellation_pr_ask_t();
  // Supported types: PR-ASK.
  explicit lib_constellation_pr_ask_t(modulation_type_t type);

  // The base lookup, then output point i (counting from 0) is multiplied by (-1)^i. On a missing
  // symbol the points found before it stay, alternated in the same way.
  void get_symbol_iq_data(const lib_symbol_arr_t& symbols, lib_iq_data_arr_t& out) override;
  // See base class. Uses default_modulation_depth.
  bool generate_default_constellation() override;

  // Clears `map`, then symbol 0 at (1 - depth, 0) and symbol 1 at (1, 0), scaled to unit mean
  // power. `points` must be 2 (else reported, false). `gray` is reported as unsupported and
  // ignored; a depth outside 0..1 is reported and used all the same (above 1 the lower level
  // turns negative).
  static bool generate_default_pr_ask_constellation(uint32 points, lib_constellation_map_t& map,
                                                    bool gray, fp64 depth);
};

}  // namespace nal::common_lib

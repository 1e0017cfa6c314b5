#pragma once
// Amplitude shift keying: N real levels 1..N, the lowest level being 1, not 0.

#include "lib/lib_constellation_base.h"

namespace nal::common_lib {

class lib_constellation_ask_t : public lib_constellation_base_t {
 public:
  // 2ASK.
  lib_constellation_ask_t();
  // Supported types: 2ASK.
  explicit lib_constellation_ask_t(modulation_type_t type);

  // See base class.
  bool generate_default_constellation() override;

  // Clears `map`, then for i in 0..points-1 puts (i + 1, 0) at key i, or gray(i) with `gray`,
  // and scales to unit mean power. `points` must be a power of 2 (else reported, false).
  static bool generate_default_ask_constellation(uint32 points, lib_constellation_map_t& map,
                                                 bool gray);
};

}  // namespace nal::common_lib

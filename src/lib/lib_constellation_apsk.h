#pragma once
// Amplitude and phase shift keying on concentric rings: 16APSK (4 + 12 points) and 32APSK
// (4 + 12 + 16 points).

#include "lib/lib_constellation_base.h"

namespace nal::common_lib {

class lib_constellation_apsk_t : public lib_constellation_base_t {
 public:
  // 16APSK.
  lib_constellation_apsk_t();
  // Supported types: 16APSK, 32APSK.
  explicit lib_constellation_apsk_t(modulation_type_t type);

  // See base class.
  bool generate_default_constellation() override;

  // Clears `map` and fills the rings from fixed tables, scaled to unit mean power. Position j of
  // a ring of n positions lies at radius * (cos, sin)(j * 2 pi / n + offset):
  //   ring 1: 4 positions, radius 1, offset pi/4;
  //   ring 2: 12 positions, radius 2.84, offset pi/4;
  //   ring 3 (32 points only): 16 positions, radius 5.27, offset pi/8.
  // Natural numbering counts the outermost ring first; `gray` selects the Gray tables.
  // `points` must be 16 or 32 (else reported, false).
  static bool generate_default_apsk_constellation(uint32 points, lib_constellation_map_t& map,
                                                  bool gray);
};

}  // namespace nal::common_lib

#pragma once
// Phase shift keying, and the differential walk its differential subclasses share.

#include "lib/lib_constellation_base.h"

namespace nal::common_lib {

class lib_constellation_psk_t : public lib_constellation_base_t {
 public:
  // BPSK.
  lib_constellation_psk_t();
  // Supported types: BPSK, QPSK, 8PSK, 16PSK.
  explicit lib_constellation_psk_t(modulation_type_t type);

  // See base class.
  bool generate_default_constellation() override;

  // Clears `map` and fills it, scaled to unit mean power. `points` must be a power of 2 (else
  // reported, false).
  //  2: symbol 0 at (-1, 0), 1 at (1, 0).
  //  4: symbols 0..3 at (-1, 1), (1, 1), (-1, -1), (1, -1).
  //  other: key i, or gray(i) with `gray`, at the angle i * 2 pi / points.
  // `gray` has no effect on 2 and 4 points.
  static bool generate_default_psk_constellation(uint32 points, lib_constellation_map_t& map,
                                                 bool gray);

 protected:
  // Phase advance of one differential symbol, in radians, for a constellation of `points`.
  using phase_increment_t = fp64 (*)(uint32 symbol, uint32 points);

  // The differential walk: clears `out`; the first output is the unit point at the phase of the
  // first symbol's map point; each further symbol s advances the running phase by
  // increment(s, point number), the map no longer entering. An empty array or a first symbol
  // missing from the map is reported (with the differential class's texts) and leaves `out`
  // empty.
  void _get_differential_iq_data(const lib_symbol_arr_t& symbols, phase_increment_t increment,
                                 lib_iq_data_arr_t& out) const;
};

}  // namespace nal::common_lib

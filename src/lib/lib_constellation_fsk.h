#pragma once
// Frequency shift keying: each point's real part is a frequency deviation in units of the
// largest deviation (so it lies in -1..1), the imaginary part is 0.

#include "lib/lib_constellation_base.h"

namespace nal::common_lib {

class lib_constellation_fsk_t : public lib_constellation_base_t {
 public:
  // 2FSK.
  lib_constellation_fsk_t();
  // Supported types: 2FSK, 4FSK, 8FSK, 16FSK, MSK, in that order.
  explicit lib_constellation_fsk_t(modulation_type_t type);

  // The base oversampling; when the kind is holder, every output sample is then multiplied by
  // 1 / ratio, so that a later integration of the deviation over one symbol gives the same
  // phase at any ratio.
  void deal_oversampling(const lib_iq_data_arr_t& points, uint32 ratio,
                         lib_iq_data_arr_t& out) override;
  // See base class.
  bool generate_default_constellation() override;
  // Holder after a Gaussian filter or no filter, insert zero otherwise.
  uint32 get_oversampling_type() const override;

  // Clears `map`; with half = (points - 1) / 2, key j (gray(j) with `gray`) gets (j - half, 0)
  // for j below points/2, and key points/2 + u (its Gray code with `gray`) gets (half - u, 0):
  // the upper half of the levels runs downward, so natural 4FSK is -1.5, -0.5, 1.5, 0.5. Then
  // the largest deviation is scaled to 1. `points` must be a power of 2 (else reported, false);
  // 1 point gives an empty map, reported by the scaling, and false.
  static bool generate_default_fsk_constellation(uint32 points, lib_constellation_map_t& map,
                                                 bool gray);
};

}  // namespace nal::common_lib

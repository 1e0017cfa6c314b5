#pragma once
// Quadrature amplitude modulation from 4 to 4096 points: square grids for even powers of 2, a
// 4 x 2 rectangle for 8 points, and cross shapes (a square with its corners removed) for 32, 128,
// 512 and 2048 points.

#include "lib/lib_constellation_base.h"

namespace nal::common_lib {

class lib_constellation_qam_t : public lib_constellation_base_t {
 public:
  // 4QAM.
  lib_constellation_qam_t();
  // Supported types: 4QAM to 4096QAM, in ascending order.
  explicit lib_constellation_qam_t(modulation_type_t type);

  // See base class.
  bool generate_default_constellation() override;

  // Clears `map` and fills a grid of unit spacing centred on the origin, scaled to unit mean
  // power. `points` must be a power of 2 not below 4 (else reported, false).
  //  8: column c = i mod 4, row r = i div 4 at (c - 1.5, 0.5 - r); key i, or
  //     gray(c) + 4 gray(r) with `gray`.
  //  square N = K^2: (c - half, half - r) with half = (K - 1) / 2, row-major from the top left;
  //     Gray key gray(c) + gray(r) * K.
  //  cross N (N/2 = K^2): K columns of K + 2w rows between two wings of w columns and K rows,
  //     w = N/8 div K. Natural keys run left wing, centre, right wing, column by column, each
  //     from the bottom up. Gray keys fill the left half, key k + N/2 being the mirror image
  //     (I negated) of key k. Row and column neighbours then differ in one bit, except the
  //     2K vertical pairs across the edges between the K central rows and the rows above and
  //     below them, which differ in two: a cross cannot be Gray everywhere.
  static bool generate_default_qam_constellation(uint32 points, lib_constellation_map_t& map,
                                                 bool gray);
};

}  // namespace nal::common_lib

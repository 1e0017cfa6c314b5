#pragma once
// Differential PSK with an extra half step: PI/4-DQPSK moves by odd multiples of pi/4 and
// PI/8-D8PSK by odd multiples of pi/8, so consecutive points never repeat a phase. The map
// holds the 2M-point PSK constellation the points visit, for a type of M points.

#include "lib/lib_constellation_psk.h"

namespace nal::common_lib {

class lib_constellation_hdpsk_t : public lib_constellation_psk_t {
 public:
  // PI/4-DQPSK.
  lib_constellation_hdpsk_t();
  // Supported types: PI/4-DQPSK, PI/8-D8PSK. get_constellation_point() is M (4 or 8) while the
  // map has 2M entries.
  explicit lib_constellation_hdpsk_t(modulation_type_t type);

  // As the DPSK form, with the step (2 s + 1) pi / M.
  void get_symbol_iq_data(const lib_symbol_arr_t& symbols, lib_iq_data_arr_t& out) override;
  // Point number = half the map size, bit number = round(log2) of that half.
  void update_point_by_map() override;
  // The PSK map of twice the point number.
  bool generate_default_constellation() override;
};

}  // namespace nal::common_lib

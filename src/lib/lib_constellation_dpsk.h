#pragma once
// Differential PSK: the symbol sets the phase step from one point to the next.

#include "lib/lib_constellation_psk.h"

namespace nal::common_lib {

class lib_constellation_dpsk_t : public lib_constellation_psk_t {
 public:
  // DBPSK.
  lib_constellation_dpsk_t();
  // Supported types: DBPSK, DQPSK, D8PSK, D16PSK. The default map is the PSK one for the point
  // number M; only the first symbol of an array is looked up in it.
  explicit lib_constellation_dpsk_t(modulation_type_t type);

  // The first point takes the phase of the first symbol's map point; every further symbol s
  // advances the phase by 2 s pi / M. The map's Gray numbering does not enter after the first
  // symbol. An empty array or an unknown first symbol is reported and gives an empty output.
  void get_symbol_iq_data(const lib_symbol_arr_t& symbols, lib_iq_data_arr_t& out) override;
};

}  // namespace nal::common_lib

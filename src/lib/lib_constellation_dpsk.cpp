#include "lib/lib_constellation_dpsk.h"

namespace nal::common_lib {

namespace {

fp64 dpsk_phase_increment(uint32 symbol, uint32 points) {
  return (static_cast<fp64>(symbol) + symbol) * lib_pi / points;
}

}  // namespace

lib_constellation_dpsk_t::lib_constellation_dpsk_t() : lib_constellation_dpsk_t(MOD_DBPSK) {}

lib_constellation_dpsk_t::lib_constellation_dpsk_t(modulation_type_t type)
    : lib_constellation_psk_t(type) {
  _set_supported_types({MOD_DBPSK, MOD_DQPSK, MOD_D8PSK, MOD_D16PSK});
}

void lib_constellation_dpsk_t::get_symbol_iq_data(const lib_symbol_arr_t& symbols,
                                                  lib_iq_data_arr_t& out) {
  _get_differential_iq_data(symbols, &dpsk_phase_increment, out);
}

}  // namespace nal::common_lib

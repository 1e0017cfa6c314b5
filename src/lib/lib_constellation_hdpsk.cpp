#include "lib/lib_constellation_hdpsk.h"

namespace nal::common_lib {

namespace {

fp64 hdpsk_phase_increment(uint32 symbol, uint32 points) {
  return (2.0 * symbol + 1.0) * (lib_pi / points);
}

}  // namespace

lib_constellation_hdpsk_t::lib_constellation_hdpsk_t() : lib_constellation_hdpsk_t(MOD_PI4_DQPSK) {}

lib_constellation_hdpsk_t::lib_constellation_hdpsk_t(modulation_type_t type)
    : lib_constellation_psk_t(type) {
  _set_supported_types({MOD_PI4_DQPSK, MOD_PI8_D8PSK});
}

void lib_constellation_hdpsk_t::get_symbol_iq_data(const lib_symbol_arr_t& symbols,
                                                   lib_iq_data_arr_t& out) {
  _get_differential_iq_data(symbols, &hdpsk_phase_increment, out);
}

void lib_constellation_hdpsk_t::update_point_by_map() {
  _constellation_point = static_cast<uint32>(_constellation_map.size() / 2);
  _bit_number = bit_number_of(_constellation_point);
}

bool lib_constellation_hdpsk_t::generate_default_constellation() {
  clear_constellation();
  return generate_default_psk_constellation(2 * _constellation_point, _constellation_map,
                                            _gray_code_enable);
}

}  // namespace nal::common_lib

#include "lib/lib_modulation_custom.h"

#include "lib/lib_report.h"

namespace nal::common_lib {

lib_modulation_custom_t::lib_modulation_custom_t() : lib_modulation_base_t(MODULATOR_MULTITONE) {
  _symbol_data.set_bits_per_symbol(_custom.get_bit_number());
  _custom.set_filter_type(get_filter_type());
}

bool lib_modulation_custom_t::set_constellation_type(modulation_type_t type) {
  return _custom.set_constellation_type(type);
}

bool lib_modulation_custom_t::set_filter_type(filter_type_t type) {
  if (type == FILTER_HALF_SINE) {
    lib_report(
        "lib_modulation_custom_t::set_filter_type Report: Custom Modulation DON'T support "
        "half-sine filter!");
    return false;
  }
  return lib_modulation_base_t::set_filter_type(type);
}

}  // namespace nal::common_lib

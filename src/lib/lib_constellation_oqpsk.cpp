#include "lib/lib_constellation_oqpsk.h"

#include "lib/lib_oversampling.h"

namespace nal::common_lib {

lib_constellation_oqpsk_t::lib_constellation_oqpsk_t() : lib_constellation_oqpsk_t(MOD_OQPSK) {}

lib_constellation_oqpsk_t::lib_constellation_oqpsk_t(modulation_type_t type)
    : lib_constellation_psk_t(type) {
  _set_supported_types({MOD_OQPSK});
}

uint32 lib_constellation_oqpsk_t::get_oversampling_type() const {
  return OVERSAMPLING_OFFSET;
}

}  // namespace nal::common_lib

#pragma once
// Offset QPSK: the QPSK map, brought to the sample rate with Q half a symbol behind I.

#include "lib/lib_constellation_psk.h"

namespace nal::common_lib {

class lib_constellation_oqpsk_t : public lib_constellation_psk_t {
 public:
  // OQPSK.
  lib_constellation_oqpsk_t();
  // Supported types: OQPSK only. The default map is the PSK one for the point number.
  explicit lib_constellation_oqpsk_t(modulation_type_t type);

  // Always OVERSAMPLING_OFFSET, whatever the filter.
  uint32 get_oversampling_type() const override;
};

}  // namespace nal::common_lib

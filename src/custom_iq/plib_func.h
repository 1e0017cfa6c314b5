#pragma once
// Translation of the Custom IQ tab's codes into the codes of the symbol modulator driver
// (lib_iq_waveform_t). The tab numbers its custom constellation 32 and its custom modulator 3;
// the driver knows them as 31 and 2. Stateless; safe from any thread.

#include "lib/lib_types.h"

namespace nal {

class plib_func_t {
 public:
  // Tab modulator 0 (APSK/QAM), 1 (MFSK), 3 (custom) to driver 0, 1, 2. Any other value is
  // reported and gives 0.
  static uint32 transfer_modulator_type(uint32 type);
  // Constellations 0 to 30 pass through, 32 (custom map) becomes 31. Any other value is
  // reported and gives 0.
  static uint32 transfer_constellation_type(uint32 type);
};

}  // namespace nal

#pragma once
// One segment of a chirp: a linear frequency sweep over a duration.

#include "lib/lib_types.h"

namespace nal::common_lib {

struct plib_lfm_custom_sweep_config_t {
  fp64 start_frequency = 0.0;  // Hz at the segment's start; negative sweeps below the carrier
  fp64 stop_frequency = 0.0;   // Hz at the segment's end
  fp64 duration = 0.0;         // seconds; 0 or less makes an empty segment
};

}  // namespace nal::common_lib

#pragma once
// One computed waveform of a page, as its views need it: the samples, the duration in seconds and
// the sample count that scale the spectrum's frequency axis, and a short message when the
// computation failed (the samples are then empty).

#include <string>

#include "lib/lib_types.h"

namespace nal {

struct ui_page_waveform_t {
  lib_iq_data_arr_t samples;
  fp64 waveform_length = 0.0;
  uint32 sample_points = 0;
  std::string error;
};

}  // namespace nal

#pragma once
// A chirp: a phase-continuous chain of linear frequency sweeps. Each segment sweeps from its
// start to its stop frequency over its duration; the phase runs on unbroken across segment
// joints whatever frequencies meet there. Samples are unit phasors (cos phase, sin phase) at
// the sample rate. Frequency limits are the caller's; the generator bounds the segment count
// and the total size only. A plain value; one thread uses an object at a time.

#include <cstddef>
#include <vector>

#include "lib/lib_types.h"
#include "lib/plib_lfm_custom_sweep_config.h"

namespace nal::common_lib {

class lib_lfm_t {
 public:
  static constexpr std::size_t max_segment_count = 100;
  // Most samples one generation makes (1 GiB of samples), twice what a page may ask for; a
  // larger request (the sum of duration * rate over the segments) is refused with a report.
  static constexpr fp64 max_sample_count = 67108864.0;  // 2^26

  // Replaces the sample rate (Hz) and the segments; always true.
  bool set_config(fp64 sample_rate, const std::vector<plib_lfm_custom_sweep_config_t>& segments);
  fp64 get_sample_rate() const { return _sample_rate; }
  const std::vector<plib_lfm_custom_sweep_config_t>& get_segments() const { return _segments; }

  // Replaces `out` by the chirp. Per segment, with d = 1 / rate and slope = (stop - start) /
  // duration, a sample is taken at t = 0, d, 2d, ... while t is below the duration (about
  // duration * rate samples, rounded up); the frequency of step k is start + (k + 0.5) d slope,
  // so the phase advances 2 pi f d per sample. No segments or more than 100 leave `out`
  // untouched and give false without a report. A rate that is not a positive finite number, or
  // more than max_sample_count samples, is reported and leaves `out` empty.
  bool generate(lib_iq_data_arr_t& out) const;

 private:
  fp64 _sample_rate = 2000000.0;
  std::vector<plib_lfm_custom_sweep_config_t> _segments;
};

}  // namespace nal::common_lib

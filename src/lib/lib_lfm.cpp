#include "lib/lib_lfm.h"

#include <cmath>

#include "lib/lib_report.h"

namespace nal::common_lib {

bool lib_lfm_t::set_config(fp64 sample_rate,
                           const std::vector<plib_lfm_custom_sweep_config_t>& segments) {
  _sample_rate = sample_rate;
  _segments = segments;
  return true;
}

bool lib_lfm_t::generate(lib_iq_data_arr_t& out) const {
  if (_segments.empty() || _segments.size() > max_segment_count) {
    return false;
  }
  out.clear();
  if (!(_sample_rate > 0.0 && std::isfinite(_sample_rate))) {
    lib_report("lib_lfm_t::generate Report: Sample rate should be positive! ", _sample_rate);
    return false;
  }
  fp64 sample_count = 0.0;
  for (const auto& segment : _segments) {
    if (segment.duration > 0.0) {
      sample_count += segment.duration * _sample_rate;
    }
  }
  if (!(sample_count <= max_sample_count)) {
    lib_report("lib_lfm_t::generate Report: The waveform is too large, samples: ", sample_count);
    return false;
  }

  out.reserve(static_cast<std::size_t>(sample_count) + _segments.size());
  const fp64 step = 1.0 / _sample_rate;
  fp64 phase = 0.0;
  for (const auto& segment : _segments) {
    const fp64 slope = (segment.stop_frequency - segment.start_frequency) / segment.duration;
    fp64 frequency = segment.start_frequency + 0.5 * step * slope;
    for (fp64 t = 0.0; t < segment.duration; t += step) {
      out.emplace_back(std::cos(phase), std::sin(phase));
      phase += 2.0 * lib_pi * frequency * step;
      frequency += step * slope;
    }
  }
  return true;
}

}  // namespace nal::common_lib

#include "lib/lib_resample.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "lib/lib_filter.h"
#include "lib/lib_fir_filter_design.h"
#include "lib/lib_polyphase_resampler.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

constexpr fp64 max_resampled_length = 1e7;
constexpr uint32 max_decimation = 1000;
constexpr fp64 lowest_useful_rate_factor = 0.8;
constexpr fp64 max_drift_samples = 0.2;

// Candidates m of one l that can pass the drift test. A stored M never exceeds 1000, so the drift
// is at least (a div 1000) |1 - r / T|; only m with r = b div m within T (1 -+ w) can reach 0.2.
// The margin in w covers the rounding of the drift's own arithmetic (below 1e-8 for a <= 1e7).
struct decimation_window_t {
  uint32 first = 1;
  uint32 last = max_decimation;

  decimation_window_t(uint32 a, uint32 b, fp64 target) {
    const uint32 least_scale = a / max_decimation;
    if (least_scale == 0) {
      return;
    }
    const fp64 w = (max_drift_samples + 1e-6) / least_scale;
    const fp64 below = std::floor(b / (target * (1.0 + w) + 1.0)) - 1.0;
    first = static_cast<uint32>(std::clamp(below, 1.0, max_decimation + 1.0));
    if (w < 1.0) {
      const fp64 above = std::ceil(b / (target * (1.0 - w))) + 1.0;
      last = static_cast<uint32>(std::clamp(above, 0.0, static_cast<fp64>(max_decimation)));
    }
  }
};

// Both reports carry deal_resampling's name, also when its filtering step is called alone.
bool check_resample_arguments(const lib_iq_data_arr_t& samples, uint32 interpolation,
                              uint32 decimation) {
  if (samples.empty()) {
    lib_report("lib_resample_t::deal_resampling Report: Empty input data array!");
    return false;
  }
  if (interpolation == 0 || decimation == 0) {
    lib_report("lib_resample_t::deal_resampling Report: Error resample parameters!");
    return false;
  }
  return true;
}

}  // namespace

bool lib_resample_t::_calc_resample_coef(uint32 waveform_length, uint32 sample_rate,
                                         uint32 target_rate, uint32& interpolation,
                                         uint32& decimation) {
  interpolation = 1;
  decimation = 1;
  const fp64 length = waveform_length;
  // A target of 0 gives an infinite or undefined drift for every pair, so nothing can be kept;
  // an empty waveform has nothing to resample.
  const bool searchable = waveform_length > 0 && length <= max_resampled_length &&
                          max_resampled_length / length > 1.0 && target_rate > 0;
  if (searchable) {
    const fp64 max_interpolation = max_resampled_length / length;
    const fp64 lowest_rate = lowest_useful_rate_factor * target_rate;
    const fp64 q = 1.0 / target_rate;
    fp64 best = 1.0;
    for (uint32 l = 1;; ++l) {
      const uint32 a = l * waveform_length;
      const uint32 b = l * sample_rate;
      if (b >= lowest_rate) {
        const decimation_window_t window(a, b, target_rate);
        for (uint32 m = window.first; m <= window.last; ++m) {
          const uint32 r = b / m;
          if (r < lowest_rate) {
            break;
          }
          const fp64 p = 1.0 / r;
          const fp64 error = static_cast<fp64>(a / decimation) * std::abs(p - q) / p;
          if (error <= max_drift_samples && error < best) {
            interpolation = l;
            decimation = m;
            if (error < lib_tolerance) {
              return true;
            }
            best = error;
          }
        }
      }
      if (l + 1.0 >= max_interpolation || (l + 1.0) * waveform_length > max_resampled_length) {
        break;
      }
    }
  }
  lib_report("lib_resample_t::_calc_resample_coef Report: Cannot find a proper sample rate!");
  return false;
}

void lib_resample_t::_calc_resample_filter(lib_iq_data_arr_t& taps, uint32 interpolation,
                                           uint32 decimation, uint32 half_length) {
  const uint32 u = std::max(interpolation, decimation);
  const std::uint64_t length = 2 * std::uint64_t{half_length} * u + 1;
  lib_fir_filter_design_t design;
  design.set_filter_type(FIR_LOW_PASS);
  design.set_filter_length(
      static_cast<uint32>(std::min<std::uint64_t>(length, std::numeric_limits<uint32>::max())));
  design.set_window_type(WINDOW_BLACKMAN);
  // With u = 0 the cut-off would be infinite; the design clamps it to 1 either way.
  design.set_cutoff(u == 0 ? 1.0 : (1.0 / u) * 1.05);
  design.generate();
  taps = design.get_filter_data();
}

bool lib_resample_t::deal_resampling(const lib_iq_data_arr_t& samples, lib_iq_data_arr_t& out,
                                     uint32 interpolation, uint32 decimation) {
  out.clear();
  if (!check_resample_arguments(samples, interpolation, decimation)) {
    return false;
  }
  const std::size_t n = samples.size();
  const uint32 half_length = n < 21 ? static_cast<uint32>((n - 1) / 2) : 10;
  if (half_length == 0) {
    // One tap: the cyclic filter reports it as too short and passes the samples by, so the
    // steps reduce to zero stuffing, gain and decimation; they run literally for the report.
    out = samples;
    _deal_insert_zero(out, interpolation);
    _deal_interpolate_filter(out, interpolation, decimation, half_length);
    for (auto& sample : out) {
      sample *= static_cast<fp64>(interpolation);
    }
    return _deal_decimation(out, decimation);
  }

  const uint32 edge_length = 2 * half_length;
  lib_iq_data_arr_t extended;
  _extend_array_edge(samples, extended, edge_length);
  lib_iq_data_arr_t taps;
  _calc_resample_filter(taps, interpolation, decimation, half_length);
  // Only the kept samples of the steps are computed: with the trimmed edge E L and the cyclic
  // filter's alignment taps / 2 as the delay, output m is the filtered zero-stuffed stream at
  // m M + E L + taps / 2, taken cyclically over the edge-extended array, as deal_filter's cyclic
  // mode wraps it (its repetition of short arrays repeats whole periods). The gain L is folded
  // into the taps.
  for (auto& tap : taps) {
    tap *= static_cast<fp64>(interpolation);
  }
  const std::size_t centre = std::size_t{edge_length} * interpolation + taps.size() / 2;
  const std::uint64_t kept = n * std::uint64_t{interpolation};
  const std::size_t count = static_cast<std::size_t>((kept + decimation - 1) / decimation);
  fp64 largest = 0.0;
  lib_polyphase_resampler_t::deal_cyclic_resampling(extended, interpolation, decimation, taps,
                                                    centre, count, out,
                                                    plib_t::get_work_thread_number(), largest);
  return true;
}

bool lib_resample_t::_deal_interpolate_filter(lib_iq_data_arr_t& samples, uint32 interpolation,
                                              uint32 decimation, uint32 half_length) {
  if (!check_resample_arguments(samples, interpolation, decimation)) {
    return false;
  }
  lib_iq_data_arr_t taps;
  _calc_resample_filter(taps, interpolation, decimation, half_length);
  lib_iq_data_arr_t filtered;
  const bool done = lib_filter_t::deal_filter(samples, taps, filtered, true);
  samples = std::move(filtered);
  return done;
}

bool lib_resample_t::_deal_decimation(lib_iq_data_arr_t& samples, uint32 decimation) {
  if (samples.empty()) {
    lib_report("lib_resample_t::_deal_decimation Report: Empty input data array!");
    return false;
  }
  if (decimation == 0) {
    lib_report("lib_resample_t::_deal_decimation Report: Error decimation paramter!");
    samples.clear();
    return false;
  }
  std::size_t kept = 0;
  for (std::size_t i = 0; i < samples.size(); i += decimation) {
    samples[kept++] = samples[i];
  }
  samples.resize(kept);
  return true;
}

void lib_resample_t::_deal_insert_zero(lib_iq_data_arr_t& samples, uint32 interpolation) {
  if (interpolation <= 1) {
    return;
  }
  const std::size_t n = samples.size();
  samples.resize(n * interpolation, lib_iq_sample_t(0.0, 0.0));
  // Backwards, so that no sample is overwritten before it has moved.
  for (std::size_t i = n; i-- > 0;) {
    samples[i * interpolation] = samples[i];
    std::fill_n(samples.begin() + static_cast<std::ptrdiff_t>(i * interpolation + 1),
                interpolation - 1, lib_iq_sample_t(0.0, 0.0));
  }
}

bool lib_resample_t::_extend_array_edge(const lib_iq_data_arr_t& samples, lib_iq_data_arr_t& out,
                                        uint32 edge_length) {
  out.clear();
  if (samples.empty()) {
    lib_report("lib_resample_t::_extend_array_edge Report: Empty input data array!");
    return false;
  }
  const std::size_t n = samples.size();
  if (edge_length >= n) {
    lib_report("lib_resample_t::_extend_array_edge Report: Edge longer than the data array: ",
               static_cast<long long>(edge_length));
    return false;
  }
  const lib_iq_sample_t head = samples.front() * 2.0;
  const lib_iq_sample_t tail = samples.back() * 2.0;
  out.reserve(n + 2 * std::size_t{edge_length});
  for (std::size_t k = edge_length; k >= 1; --k) {
    out.push_back(head - samples[k]);
  }
  out.insert(out.end(), samples.begin(), samples.end());
  for (std::size_t k = 1; k <= edge_length; ++k) {
    out.push_back(tail - samples[n - 1 - k]);
  }
  return true;
}

}  // namespace nal::common_lib

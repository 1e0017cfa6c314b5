#include "lib/lib_resample.h"

#include <omp.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "lib/lib_filter.h"
#include "lib/lib_fir_filter_design.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

constexpr fp64 max_resampled_length = 1e7;
constexpr uint32 max_decimation = 1000;
constexpr fp64 lowest_useful_rate_factor = 0.8;
constexpr fp64 max_drift_samples = 0.2;
// Below this many outputs the parallel region costs more than it saves.
constexpr std::size_t min_parallel_outputs = 1 << 16;

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

// Kept samples of the literal steps, computed directly. With the centre offset E L + taps / 2
// (the trimmed edge plus the cyclic filter's alignment) and s = m M + that offset, output m is
// L sum_q taps[s mod L + q L] x[(s div L - q) mod N] over the edge-extended array x of N samples:
// only every L-th tap meets a non-zero sample of the zero-stuffed array, and the cyclic filter's
// wrap is the index taken modulo N (its repetition of short arrays changes nothing, as it repeats
// whole periods). Branch p holds L taps[p + q L] in reverse order, zero-padded to a common
// length, so that an output is a forward dot product over consecutive x.
class polyphase_resampler_t {
 public:
  polyphase_resampler_t(const lib_iq_data_arr_t& taps, uint32 interpolation, uint32 decimation,
                        std::uint64_t centre_offset)
      : _interpolation(interpolation),
        _decimation(decimation),
        _offset(centre_offset),
        _branch_length((taps.size() + interpolation - 1) / interpolation),
        _branches(static_cast<std::size_t>(interpolation) * _branch_length, 0.0) {
    for (std::size_t k = 0; k < taps.size(); ++k) {
      const std::size_t phase = k % interpolation;
      const std::size_t reversed = _branch_length - 1 - k / interpolation;
      _branches[phase * _branch_length + reversed] =
          taps[k].real() * static_cast<fp64>(interpolation);
    }
  }

  // Outputs [first, last) of `extended`; each is computed alone, so any partition gives the
  // same values.
  void run(const lib_iq_data_arr_t& extended, std::size_t first, std::size_t last,
           lib_iq_sample_t* out) const {
    const std::uint64_t start = first * std::uint64_t{_decimation} + _offset;
    std::uint64_t base = start / _interpolation;
    std::uint64_t phase = start % _interpolation;
    const std::uint64_t base_step = _decimation / _interpolation;
    const std::uint64_t phase_step = _decimation % _interpolation;
    lib_iq_data_arr_t wrapped(_branch_length);
    const std::uint64_t n = extended.size();
    // A whole number of laps at least one branch long keeps the wrapped index non-negative.
    const std::uint64_t lap = (_branch_length / n + 1) * n;

    for (std::size_t m = first; m < last; ++m) {
      const fp64* branch = &_branches[phase * _branch_length];
      if (base + 1 >= _branch_length && base < n) {
        out[m] = _dot(branch, &extended[base + 1 - _branch_length]);
      } else {
        // Near the ends the taps reach around the cyclic array.
        for (std::size_t t = 0; t < _branch_length; ++t) {
          wrapped[t] = extended[(base + 1 + t + lap - _branch_length) % n];
        }
        out[m] = _dot(branch, wrapped.data());
      }
      base += base_step;
      phase += phase_step;
      if (phase >= _interpolation) {
        phase -= _interpolation;
        ++base;
      }
    }
  }

 private:
  // Four partial sums per component in a fixed order, so that the additions overlap without any
  // reordering left to the compiler.
  lib_iq_sample_t _dot(const fp64* branch, const lib_iq_sample_t* x) const {
    const fp64* values = reinterpret_cast<const fp64*>(x);
    fp64 re[4] = {0.0, 0.0, 0.0, 0.0};
    fp64 im[4] = {0.0, 0.0, 0.0, 0.0};
    std::size_t t = 0;
    for (; t + 4 <= _branch_length; t += 4) {
      for (std::size_t j = 0; j < 4; ++j) {
        re[j] += branch[t + j] * values[2 * (t + j)];
        im[j] += branch[t + j] * values[2 * (t + j) + 1];
      }
    }
    for (; t < _branch_length; ++t) {
      re[0] += branch[t] * values[2 * t];
      im[0] += branch[t] * values[2 * t + 1];
    }
    return {(re[0] + re[1]) + (re[2] + re[3]), (im[0] + im[1]) + (im[2] + im[3])};
  }

  const uint32 _interpolation;
  const uint32 _decimation;
  const std::uint64_t _offset;
  const std::size_t _branch_length;
  std::vector<fp64> _branches;
};

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
      if (l + 1.0 >= max_interpolation ||
          (l + 1.0) * waveform_length > max_resampled_length) {
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
  const std::uint64_t offset =
      std::uint64_t{edge_length} * interpolation + static_cast<std::uint64_t>(taps.size() / 2);
  const polyphase_resampler_t resampler(taps, interpolation, decimation, offset);

  const std::uint64_t kept = n * std::uint64_t{interpolation};
  const std::size_t count = static_cast<std::size_t>((kept + decimation - 1) / decimation);
  out.resize(count);
  const int threads =
      count < min_parallel_outputs ? 1 : static_cast<int>(plib_t::get_work_thread_number());
#pragma omp parallel num_threads(threads)
  {
    const std::size_t team = static_cast<std::size_t>(omp_get_num_threads());
    const std::size_t thread = static_cast<std::size_t>(omp_get_thread_num());
    resampler.run(extended, count * thread / team, count * (thread + 1) / team, out.data());
  }
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

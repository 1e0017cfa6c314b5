#include "lib/lib_filter.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "lib/lib_common_signal_process.h"
#include "lib/lib_convolution.h"
#include "lib/lib_fourier_transform.h"
#include "lib/lib_normalization.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

// Evaluates `pulse` at the tap times of a length * ratio span; false (with the shared report)
// when the span is odd.
bool sample_pulse(uint32 length, uint32 ratio, lib_iq_data_arr_t& taps,
                  const std::function<fp64(fp64)>& pulse) {
  taps.clear();
  const std::uint64_t span = static_cast<std::uint64_t>(length) * ratio;
  if (span % 2 != 0) {
    lib_report("lib_filter_t::_raised_consine_filter Report: Illegal filter length : ",
               static_cast<long long>(span));
    return false;
  }
  const fp64 centre = static_cast<fp64>(span) * 0.5;
  taps.reserve(span + 1);
  for (std::uint64_t n = 0; n <= span; ++n) {
    const fp64 t = (static_cast<fp64>(n) - centre) / ratio;
    taps.emplace_back(pulse(t), 0.0);
  }
  return true;
}

}  // namespace

bool lib_filter_t::set_filter_type(filter_type_t type) {
  _filter_type = type;
  if (type == FILTER_GAUSSIAN) {
    _filter_parameter_min = 0.1;
    _filter_parameter_max = 5.0;
  } else {
    _filter_parameter_min = 0.01;
    _filter_parameter_max = 1.0;
  }
  _filter_parameter = std::clamp(_filter_parameter, _filter_parameter_min, _filter_parameter_max);
  return true;
}

bool lib_filter_t::set_filter_length(uint32 length) {
  if (length <= 1) {
    lib_report("lib_filter_t::set_filter_length Report: Filter length is too small!");
    return false;
  }
  _filter_length = length;
  return true;
}

bool lib_filter_t::set_filter_parameter(fp64 parameter) {
  _filter_parameter = std::clamp(parameter, _filter_parameter_min, _filter_parameter_max);
  return true;
}

bool lib_filter_t::set_oversampling_ratio(uint32 ratio) {
  if (_oversampling_ratio == 0) {
    return false;
  }
  _oversampling_ratio = ratio;
  return true;
}

bool lib_filter_t::_generate_filter(lib_iq_data_arr_t& taps) const {
  if ((static_cast<std::uint64_t>(_oversampling_ratio) * _filter_length) % 2 != 0) {
    lib_report(
        "lib_filter_t::_generate_filter Report: Filter length * Oversampling Rate should be even!");
    taps.clear();
    return false;
  }
  switch (_filter_type) {
    case FILTER_RAISED_COSINE:
      _raised_consine_filter(_filter_parameter, _filter_length, _oversampling_ratio, taps, true);
      return true;
    case FILTER_ROOT_COSINE:
      _root_cosine_filter(_filter_parameter, _filter_length, _oversampling_ratio, taps, true);
      return true;
    case FILTER_GAUSSIAN:
      _gaussian_filter(_filter_parameter, _filter_length, _oversampling_ratio, taps, true);
      return true;
    case FILTER_HALF_SINE:
      _half_sine_filter(_oversampling_ratio, taps, true);
      return true;
    default:
      lib_report("lib_filter_t::_generate_filter Report : Error Filter Type!");
      return false;
  }
}

void lib_filter_t::_raised_consine_filter(fp64 roll_off, uint32 length, uint32 ratio,
                                          lib_iq_data_arr_t& taps, bool normalize) {
  const fp64 b = roll_off;
  const fp64 r = ratio;
  const bool made = sample_pulse(length, ratio, taps, [b, r](fp64 t) {
    const fp64 x = t * lib_pi;
    if (std::abs(x) < lib_tolerance) {
      return 1.0 / r;
    }
    const fp64 tb = t * b;
    const fp64 d = 1.0 - 4.0 * (tb * tb);
    if (std::abs(d) < lib_tolerance) {
      return (b / (2.0 * r)) * std::sin(lib_pi / (2.0 * b));
    }
    return std::sin(x) * std::cos(b * lib_pi * t) / (x * r * d);
  });
  if (made && normalize) {
    lib_normalization_t::filter_energy_normalize(taps);
  }
}

void lib_filter_t::_root_cosine_filter(fp64 roll_off, uint32 length, uint32 ratio,
                                       lib_iq_data_arr_t& taps, bool normalize) {
  const fp64 b = roll_off;
  const fp64 r = ratio;
  const bool made = sample_pulse(length, ratio, taps, [b, r](fp64 t) {
    const fp64 a = 4.0 * b;
    const fp64 x = a * t;
    const fp64 d = 1.0 - x * x;
    if (std::abs(d) < lib_tolerance) {
      const fp64 p = (b + 1.0) * lib_pi;
      const fp64 q = (b - 1.0) * lib_pi;
      return (p * std::sin(p / a) - a * std::sin(q / a) + q * std::cos(q / a)) *
             (1.0 / (2.0 * lib_pi * r));
    }
    if (std::abs(t) >= lib_tolerance) {
      return (std::cos((b + 1.0) * lib_pi * t) + std::sin(t * (1.0 - b) * lib_pi) / x) *
             (a / (d * r * lib_pi));
    }
    return ((1.0 - b) * lib_pi + a) / (r * lib_pi);
  });
  if (made && normalize) {
    lib_normalization_t::filter_energy_normalize(taps);
  }
}

void lib_filter_t::_gaussian_filter(fp64 bt, uint32 length, uint32 ratio, lib_iq_data_arr_t& taps,
                                    bool normalize) {
  // sqrt(ln 2) / (2 pi BT) is the standard deviation of the pulse, in symbols.
  const fp64 sigma = 0.8325546111576977 / (2.0 * lib_pi * bt);
  const bool made = sample_pulse(length, ratio, taps, [sigma](fp64 t) {
    const fp64 u = t / sigma;
    return std::exp(-0.5 * (u * u)) / (sigma * 2.5066282746310002);
  });
  if (made && normalize) {
    lib_normalization_t::sum_normalize(taps);
  }
}

void lib_filter_t::_half_sine_filter(uint32 ratio, lib_iq_data_arr_t& taps, bool normalize) {
  taps.clear();
  taps.reserve(ratio);
  for (uint32 n = 0; n < ratio; ++n) {
    taps.emplace_back(std::sin(n * lib_pi / ratio), 0.0);
  }
  if (!taps.empty() && normalize) {
    lib_normalization_t::filter_energy_normalize(taps);
  }
}

void lib_filter_t::_prepare_input_data(lib_iq_data_arr_t& samples, uint32 extension, bool cyclic) {
  if (samples.empty()) {
    lib_report("lib_filter_t::_prepare_input_data Report: Empty Data Array!");
    return;
  }
  lib_common_signal_process_t::pad_array_crc(samples, extension);
  if (!cyclic) {
    return;
  }
  const std::size_t length = samples.size();
  const std::size_t e = extension;
  lib_iq_data_arr_t extended;
  extended.reserve(length + 2 * e);
  extended.insert(extended.end(), samples.end() - static_cast<std::ptrdiff_t>(e), samples.end());
  extended.insert(extended.end(), samples.begin(), samples.end());
  extended.insert(extended.end(), samples.begin(),
                  samples.begin() + static_cast<std::ptrdiff_t>(e));
  samples = std::move(extended);
}

bool lib_filter_t::deal_filter(const lib_iq_data_arr_t& samples, const lib_iq_data_arr_t& taps,
                               lib_iq_data_arr_t& out, bool cyclic) {
  if (samples.empty() || taps.empty()) {
    lib_report("lib_filter_t::deal_filter Report: Empty Data Array!");
    out.clear();
    return false;
  }
  const std::size_t tap_count = taps.size();
  const uint32 extension = plib_t::next_power_of_2(static_cast<uint32>(tap_count), 4);
  lib_iq_data_arr_t prepared = samples;
  _prepare_input_data(prepared, extension, cyclic);

  lib_iq_data_arr_t filtered;
  lib_convolution_t::deal_fft_convolution(prepared, taps, filtered, true);
  const std::size_t offset = cyclic ? extension + tap_count / 2 : 0;
  const auto first = filtered.begin() + static_cast<std::ptrdiff_t>(offset);
  out.assign(first, first + static_cast<std::ptrdiff_t>(samples.size()));
  return true;
}

bool lib_filter_t::deal_filter(const lib_iq_data_arr_t& samples, lib_iq_data_arr_t& out,
                               bool cyclic) const {
  if (_filter_type == FILTER_NONE) {
    out = samples;
    return true;
  }
  lib_iq_data_arr_t taps;
  if (!_generate_filter(taps) || taps.empty()) {
    out.clear();
    return false;
  }
  return deal_filter(samples, taps, out, cyclic);
}

void lib_filter_t::normalize_dc_gain(lib_iq_data_arr_t& taps) {
  lib_iq_data_arr_t spectrum;
  if (taps.empty() || !lib_fourier_transform_t::deal_fft(taps, spectrum)) {
    return;
  }
  const fp64 gain = plib_t::get_complex_amplitude(spectrum[0]);
  if (gain < lib_tolerance) {
    return;
  }
  for (auto& tap : taps) {
    tap = {tap.real() / gain, tap.imag() / gain};
  }
}

}  // namespace nal::common_lib

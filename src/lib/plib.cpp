#include "lib/plib.h"

#include <omp.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "lib/lib_report.h"

namespace nal::common_lib {

namespace {

constexpr fp64 two_pi = 2.0 * lib_pi;

bool is_near_integer(fp64 x) {
  return std::abs(x - std::round(x)) < lib_tolerance;
}

// Brings `value` into [low, low + period) by whole periods. Far-away values are first reduced
// with fmod so that the stepping loop stays short; non-finite values are returned unchanged.
fp64 wrap_into(fp64 value, fp64 low, fp64 period) {
  if (!std::isfinite(value)) {
    return value;
  }
  if (std::abs(value) > 1e6 * period) {
    value = std::fmod(value, period);
  }
  const fp64 high = low + period;
  while (value < low) {
    value += period;
  }
  while (value >= high) {
    value -= period;
  }
  return value;
}

}  // namespace

bool plib_t::is_power_of_2(uint32 x) {
  return is_near_integer(std::log2(static_cast<fp64>(x)));
}

bool plib_t::is_square_number(uint32 x) {
  return is_near_integer(std::sqrt(static_cast<fp64>(x)));
}

uint32 plib_t::next_power_of_2(uint32 target, uint32 start) {
  uint32 value = (start == 0 && target > 0) ? 1 : start;
  while (value < target && value <= 0x7FFFFFFFu) {
    value *= 2;
  }
  return value;
}

uint32 plib_t::nearest_power_of_2(uint32 value, uint32 lower_bound) {
  if (value <= lower_bound) {
    return lower_bound;
  }
  std::int32_t power = 1;
  while (power < static_cast<std::int64_t>(value) && power < (1 << 20)) {
    power *= 2;
  }
  const std::int32_t target = static_cast<std::int32_t>(value);
  const std::int32_t half = power / 2;
  return std::abs(power - target) >= std::abs(target - half) ? half : power;
}

fp64 plib_t::wrap_phase(fp64 radians) {
  return wrap_into(radians, -lib_pi, two_pi);
}

fp64 plib_t::wrap_phase_degree(fp64 degrees) {
  return wrap_into(degrees, -180.0, 360.0);
}

fp64 plib_t::degree_to_radian(fp64 degrees) {
  return wrap_phase_degree(degrees) * two_pi / 360.0;
}

fp64 plib_t::amplitude_to_db(fp64 value, fp64 floor) {
  return 20.0 * std::log10(std::max(value, floor));
}

fp64 plib_t::db_to_amplitude(fp64 decibels) {
  return std::pow(10.0, decibels / 20.0);
}

fp64 plib_t::get_complex_amplitude(const lib_iq_sample_t& sample) {
  return std::sqrt(sample.real() * sample.real() + sample.imag() * sample.imag());
}

lib_iq_sample_t plib_t::get_complex_conjugate(const lib_iq_sample_t& sample) {
  return {sample.real(), -sample.imag()};
}

fp64 plib_t::get_complex_phase(const lib_iq_sample_t& sample) {
  if (std::abs(sample.real()) < lib_tolerance) {
    if (std::abs(sample.imag()) < lib_tolerance) {
      return 0.0;
    }
    return sample.imag() > 0.0 ? lib_pi / 2.0 : -lib_pi / 2.0;
  }
  return std::atan2(sample.imag(), sample.real());
}

void plib_t::rotate_complex(fp64 angle, lib_iq_sample_t& sample) {
  sample = complex_multiply(sample, {std::cos(angle), std::sin(angle)});
}

fp64 plib_t::get_complex_array_rms(const lib_iq_data_arr_t& samples) {
  if (samples.empty()) {
    lib_report("plib_t::get_complex_array_rms Report: Empty data array to rms calculation!");
    return 0.0;
  }
  fp64 sum = 0.0;
  for (const auto& s : samples) {
    sum += s.real() * s.real() + s.imag() * s.imag();
  }
  return std::sqrt(sum / static_cast<std::int32_t>(samples.size()));
}

fp64 plib_t::get_data_max_amplitude(const lib_iq_data_arr_t& samples) {
  if (samples.empty()) {
    lib_report("plib_t::get_data_max_amplitude Report: Empty data array to max amplitude search!");
    return 0.0;
  }
  fp64 peak = 0.0;
  for (const auto& s : samples) {
    peak = std::max(peak, get_complex_amplitude(s));
  }
  return peak;
}

fp64 plib_t::get_peak_to_rms_ratio(const lib_iq_data_arr_t& samples) {
  if (samples.empty()) {
    lib_report("plib_t::get_peak_to_rms_ratio Report: Empty data array!");
    return 0.0;
  }
  const fp64 rms = get_complex_array_rms(samples);
  if (rms < lib_tolerance) {
    return 0.0;
  }
  return 20.0 * std::log10(std::max(get_data_max_amplitude(samples) / rms, lib_tolerance));
}

void plib_t::get_phase_arr(const lib_iq_data_arr_t& samples, lib_fp_data_arr_t& phases) {
  phases.clear();
  phases.reserve(samples.size());
  for (const auto& s : samples) {
    phases.push_back(get_complex_phase(s));
  }
}

void plib_t::get_amplitude_arr(const lib_iq_data_arr_t& samples, lib_fp_data_arr_t& amplitudes) {
  amplitudes.clear();
  amplitudes.reserve(samples.size());
  for (const auto& s : samples) {
    amplitudes.push_back(get_complex_amplitude(s));
  }
}

void plib_t::get_relative_level_arr(const lib_iq_data_arr_t& samples, lib_fp_data_arr_t& levels) {
  levels.clear();
  const fp64 peak = get_data_max_amplitude(samples);
  if (peak < lib_tolerance) {
    levels.assign(samples.size(), lib_level_floor_db);
    return;
  }
  levels.reserve(samples.size());
  for (const auto& s : samples) {
    const fp64 v = get_complex_amplitude(s) / peak;
    levels.push_back(v > lib_tolerance ? 20.0 * std::log10(v) : lib_level_floor_db);
  }
}

uint32 plib_t::get_work_thread_number() {
  return get_work_thread_number(static_cast<uint32>(std::max(1, omp_get_max_threads())));
}

uint32 plib_t::get_work_thread_number(uint32 available_threads) {
  if (available_threads < 3) {
    return 1;
  }
  if (available_threads <= 10) {
    return available_threads - 2;
  }
  return 8;
}

void plib_t::apply_phase_ramp(lib_iq_data_arr_t& samples, fp64 frequency, fp64 phase) {
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const fp64 angle = static_cast<fp64>(i) * frequency * two_pi + phase;
    samples[i] = complex_multiply(samples[i], {std::cos(angle), std::sin(angle)});
  }
}

}  // namespace nal::common_lib

#include "lib/lib_common_signal_process.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

bool is_idle(fp64 value) {
  return std::abs(value) <= lib_tolerance;
}
bool is_idle(const lib_iq_sample_t& sample) {
  return plib_t::get_complex_amplitude(sample) <= lib_tolerance;
}

template <typename array_t>
void remove_idle(const array_t& in, array_t& out) {
  out.clear();
  const std::size_t n = in.size();
  std::size_t i = 0;
  while (i < n) {
    if (i + 2 < n && is_idle(in[i]) && is_idle(in[i + 1]) && is_idle(in[i + 2])) {
      i += 3;
      while (i < n && is_idle(in[i])) {
        ++i;
      }
      continue;
    }
    out.push_back(in[i]);
    ++i;
  }
}

}  // namespace

bool lib_common_signal_process_t::is_zero_block(const lib_fp_data_arr_t& values, uint32 start,
                                                uint32 length) {
  const std::int64_t last = static_cast<std::int64_t>(start) + length - 1;
  if (last >= static_cast<std::int64_t>(values.size())) {
    return false;
  }
  for (std::int64_t i = start; i <= last; ++i) {
    if (!is_idle(values[static_cast<std::size_t>(i)])) {
      return false;
    }
  }
  return true;
}

bool lib_common_signal_process_t::is_zero_block(const lib_iq_data_arr_t& samples, uint32 start,
                                                uint32 length) {
  const std::int64_t last = static_cast<std::int64_t>(start) + length - 1;
  if (last >= static_cast<std::int64_t>(samples.size())) {
    return false;
  }
  lib_fp_data_arr_t magnitudes;
  magnitudes.reserve(length);
  for (std::int64_t i = start; i <= last; ++i) {
    magnitudes.push_back(plib_t::get_complex_amplitude(samples[static_cast<std::size_t>(i)]));
  }
  return is_zero_block(magnitudes, 0, length);
}

void lib_common_signal_process_t::remove_idle_samples(const lib_iq_data_arr_t& samples,
                                                      lib_iq_data_arr_t& out) {
  remove_idle(samples, out);
}

void lib_common_signal_process_t::remove_idle_samples(const lib_fp_data_arr_t& values,
                                                      lib_fp_data_arr_t& out) {
  remove_idle(values, out);
}

void lib_common_signal_process_t::pad_array_zero(lib_iq_data_arr_t& samples, uint32 length) {
  if (samples.size() < length) {
    samples.resize(length, lib_iq_sample_t(0.0, 0.0));
  }
}

uint32 lib_common_signal_process_t::pad_array_crc(lib_iq_data_arr_t& samples, uint32 length) {
  if (samples.empty()) {
    lib_report("lib_common_signal_process_t::pad_array_crc Report: Empty Data Array!");
    samples.assign(length, lib_iq_sample_t(0.0, 0.0));
    return length;
  }
  const std::size_t n = samples.size();
  if (length <= n) {
    return static_cast<uint32>(n);
  }
  const std::size_t copies = (length + n - 1) / n;
  samples.resize(copies * n);
  for (std::size_t k = 1; k < copies; ++k) {
    std::copy_n(samples.begin(), n, samples.begin() + static_cast<std::ptrdiff_t>(k * n));
  }
  return static_cast<uint32>(samples.size());
}

fp64 lib_common_signal_process_t::get_burst_peak_to_rms_ratio(const lib_iq_data_arr_t& samples) {
  lib_iq_data_arr_t burst;
  remove_idle_samples(samples, burst);
  return burst.empty() ? 0.0 : plib_t::get_peak_to_rms_ratio(burst);
}

fp64 lib_common_signal_process_t::get_burst_rms_scale(const lib_iq_data_arr_t& samples,
                                                      fp64 decibels) {
  lib_iq_data_arr_t burst;
  remove_idle_samples(samples, burst);
  return burst.empty() ? 1.0
                       : plib_t::get_complex_array_rms(burst) * plib_t::db_to_amplitude(decibels);
}

}  // namespace nal::common_lib

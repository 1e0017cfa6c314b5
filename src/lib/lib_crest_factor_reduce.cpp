#include "lib/lib_crest_factor_reduce.h"

#include <algorithm>
#include <cmath>

#include "lib/lib_common_signal_process.h"
#include "lib/lib_filter.h"
#include "lib/lib_fir_filter_design.h"
#include "lib/lib_fourier_transform.h"
#include "lib/lib_report.h"
#include "lib/lib_window_function.h"
#include "lib/plib.h"

namespace nal::common_lib {

bool lib_crest_factor_reduce_t::set_setting(const lib_crest_factor_reduce_setting_t& setting,
                                            fp64 sample_rate) {
  _setting = setting;
  return _setting.deal_filter_mask_normalize(sample_rate);
}

bool lib_crest_factor_reduce_t::_generate_cancellation_pulse(const lib_iq_data_arr_t& mask,
                                                             lib_iq_data_arr_t& taps) {
  taps.clear();
  if (mask.empty()) {
    return false;
  }
  const uint32 length = plib_t::next_power_of_2(static_cast<uint32>(4 * mask.size()), 4);
  lib_iq_data_arr_t spectrum;
  lib_fir_filter_design_t::_generate_mask_data(length, mask, spectrum);
  for (lib_iq_sample_t& level : spectrum) {
    level = plib_t::db_to_amplitude(level.real());
  }
  lib_fourier_transform_t::deal_fft_shift(spectrum);
  lib_iq_data_arr_t impulse;
  if (!lib_fourier_transform_t::deal_ifft(spectrum, impulse, length)) {
    return false;
  }
  // An odd window puts its peak on a tap: the zero-phase impulse is laid out around tap
  // length / 2, which is also where the cyclic filter takes zero delay.
  lib_iq_data_arr_t window;
  lib_window_function_t::_generate_win_data_arr(window, WINDOW_BLACKMAN, length + 1, false);
  const uint32 centre = length / 2;
  const fp64 peak = plib_t::get_complex_amplitude(impulse[0]);
  if (window.size() != length + 1 || !(peak >= lib_tolerance)) {
    return false;
  }
  // Dividing by the centre tap makes it exactly 1.
  const lib_iq_sample_t inverse = plib_t::get_complex_conjugate(impulse[0]) / (peak * peak);
  taps.resize(length + 1);
  for (uint32 n = 0; n <= length; ++n) {
    const lib_iq_sample_t tap =
        plib_t::complex_multiply(impulse[(n + length - centre) % length], inverse);
    taps[n] = {tap.real() * window[n].real(), tap.imag() * window[n].real()};
  }
  return true;
}

bool lib_crest_factor_reduce_t::deal_crest_factor_reduce(lib_iq_data_arr_t& samples) {
  if (!_setting.get_enable()) {
    return true;
  }
  _filter_ready = _generate_cancellation_pulse(_setting.get_filter_mask(), _filter_data);
  if (!_filter_ready) {
    lib_report(
        "lib_crest_factor_reduce_t::deal_crest_factor_reduce Report : Filter Generation Failed!");
    return false;
  }
  for (uint32 pass = 0; pass < _setting.get_iteration_number(); ++pass) {
    if (_setting.get_target_ratio() >
        lib_common_signal_process_t::get_burst_peak_to_rms_ratio(samples)) {
      break;
    }
    _deal_one_pass(samples);
  }
  return true;
}

void lib_crest_factor_reduce_t::_deal_one_pass(lib_iq_data_arr_t& samples) const {
  const std::size_t count = samples.size();
  const std::size_t block_size = _setting.get_block_size();
  const fp64 share = _setting.get_cancel_percent() / 100.0;
  lib_iq_data_arr_t cancellation(count, 0.0);
  lib_iq_data_arr_t block;
  for (std::size_t offset = 0; offset < count; offset += block_size) {
    const auto first = samples.begin() + static_cast<std::ptrdiff_t>(offset);
    block.assign(first, first + static_cast<std::ptrdiff_t>(std::min(block_size, count - offset)));
    const fp64 threshold =
        lib_common_signal_process_t::get_burst_rms_scale(block, _setting.get_target_ratio());
    std::size_t peak_index = 0;
    fp64 peak = 0.0;
    for (std::size_t i = 0; i < block.size(); ++i) {
      const fp64 amplitude = plib_t::get_complex_amplitude(block[i]);
      if (amplitude > peak) {
        peak = amplitude;
        peak_index = i;
      }
    }
    if (threshold < peak) {
      const fp64 phase = plib_t::get_complex_phase(block[peak_index]);
      const fp64 excess = (peak - threshold) * share;
      cancellation[offset + peak_index] = {std::cos(phase) * excess, std::sin(phase) * excess};
    }
  }
  lib_iq_data_arr_t shaped;
  if (!lib_filter_t::deal_filter(cancellation, _filter_data, shaped, true)) {
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    samples[i] = {samples[i].real() - shaped[i].real(), samples[i].imag() - shaped[i].imag()};
  }
}

}  // namespace nal::common_lib

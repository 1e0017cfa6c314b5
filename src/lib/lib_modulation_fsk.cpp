#include "lib/lib_modulation_fsk.h"

#include <cmath>

#include "lib/lib_convolution.h"
#include "lib/lib_oversampling.h"
#include "lib/lib_polyphase_resampler.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

lib_modulation_fsk_t::lib_modulation_fsk_t() : lib_modulation_base_t(MODULATOR_MFSK) {
  _symbol_data.set_bits_per_symbol(_fsk.get_bit_number());
  _fsk.set_filter_type(get_filter_type());
}

bool lib_modulation_fsk_t::set_gray_code_enable(bool enable) {
  return !enable && lib_modulation_base_t::set_gray_code_enable(false);
}

bool lib_modulation_fsk_t::set_filter_type(filter_type_t type) {
  if (type == FILTER_HALF_SINE) {
    lib_report(
        "lib_modulation_fsk_t::set_filter_type Report: FSK and MSK DON'T support half-sine "
        "filter!");
    return false;
  }
  return lib_modulation_base_t::set_filter_type(type);
}

bool lib_modulation_fsk_t::deal_pulse_shaping(const lib_iq_data_arr_t& in, lib_iq_data_arr_t& out) {
  if (get_filter_type() == FILTER_NONE) {
    out = in;
    return true;
  }
  lib_iq_data_arr_t taps;
  if (!_filter._generate_filter(taps)) {
    out.clear();
    return false;
  }
  lib_filter_t::normalize_dc_gain(taps);
  return lib_filter_t::deal_filter(in, taps, out, true);
}

fp64 lib_modulation_fsk_t::_phase_step() const {
  const fp64 rate = _symbol_rate;
  if (get_constellation_type() == MOD_MSK) {
    return (rate * 0.25) * 2.0 * lib_pi / rate;
  }
  return _frequency_deviation * 2.0 * lib_pi / rate;
}

void lib_modulation_fsk_t::integrate_phase(const lib_iq_data_arr_t& deviations, fp64 step,
                                           lib_iq_data_arr_t& out) {
  out.clear();
  if (deviations.size() < 2) {
    return;
  }
  fp64 total = 0.0;
  for (const auto& d : deviations) {
    total += d.real() * step;
  }
  const fp64 closure = plib_t::wrap_phase(total) / static_cast<uint32>(deviations.size() - 1);
  out.reserve(deviations.size());
  fp64 phase = 0.0;
  for (const auto& d : deviations) {
    phase = plib_t::wrap_phase(d.real() * step - closure + phase);
    out.emplace_back(std::cos(phase), std::sin(phase));
  }
}

bool lib_modulation_fsk_t::_shape_at_output_rate(const lib_iq_data_arr_t& points,
                                                 lib_iq_data_arr_t& shaped) {
  if (get_filter_type() == FILTER_NONE) {
    return false;
  }
  lib_iq_data_arr_t taps;
  if (!_filter._generate_filter(taps)) {
    return false;
  }
  lib_filter_t::normalize_dc_gain(taps);
  const std::size_t centre = taps.size() / 2;
  if (_fsk.get_oversampling_type() == OVERSAMPLING_HOLDER) {
    // Holding each point for a symbol, scaled by 1 / ratio, is a pulse of its own: fold it into
    // the taps, keeping the filter's centre.
    const lib_iq_data_arr_t hold(_oversampling_ratio,
                                 lib_iq_sample_t(1.0 / _oversampling_ratio, 0.0));
    lib_iq_data_arr_t held_taps;
    lib_convolution_t::deal_convolution(taps, hold, held_taps);
    taps = std::move(held_taps);
  }
  fp64 largest = 0.0;
  return lib_polyphase_resampler_t::deal_cyclic_interpolation(
      points, _oversampling_ratio, taps, centre, shaped, plib_t::get_work_thread_number(), largest);
}

void lib_modulation_fsk_t::deal_modulation() {
  _modulated_iq_data.clear();
  lib_iq_data_arr_t points;
  if (!_generate_points(points)) {
    return;
  }
  // Shaped deviations straight from the points, as oversampling and cyclic filtering give them;
  // filter None, or a filter that cannot be made, takes the literal road.
  lib_iq_data_arr_t shaped;
  if (!_shape_at_output_rate(points, shaped)) {
    lib_iq_data_arr_t oversampled;
    _fsk.deal_oversampling(points, _oversampling_ratio, oversampled);
    if (get_filter_type() == FILTER_NONE) {
      shaped = std::move(oversampled);  // what the shaping's copy would give
    } else {
      deal_pulse_shaping(oversampled, shaped);
    }
  }
  integrate_phase(shaped, _phase_step(), _modulated_iq_data);
  _normalize_modulated_data();
}

}  // namespace nal::common_lib

#include "lib/lib_fir_filter_design.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "lib/lib_fourier_transform.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

// (length - 1) div 2: the modulations are centred on this integer, which for an even length lies
// half a sample before the envelope's centre. Kept so, as the system defines it.
fp64 integer_centre(uint32 length) {
  return length == 0 ? 0.0 : static_cast<fp64>((length - 1) / 2);
}

// Tap n times 2 cos((n - c) frequency pi): a real shift of the spectrum by +-frequency.
void modulate_by_cosine(fp64 frequency, lib_iq_data_arr_t& taps) {
  const fp64 centre = integer_centre(static_cast<uint32>(taps.size()));
  for (std::size_t n = 0; n < taps.size(); ++n) {
    taps[n] *= 2.0 * std::cos((static_cast<fp64>(n) - centre) * frequency * lib_pi);
  }
}

void add_taps(const lib_iq_data_arr_t& a, const lib_iq_data_arr_t& b, lib_iq_data_arr_t& out) {
  out.resize(a.size());
  for (std::size_t n = 0; n < a.size(); ++n) {
    out[n] = a[n] + b[n];
  }
}

bool frequency_then_level_below(const lib_iq_sample_t& a, const lib_iq_sample_t& b) {
  return a.real() < b.real() || (a.real() == b.real() && a.imag() < b.imag());
}

bool frequency_below(const lib_iq_sample_t& entry, fp64 frequency) {
  return entry.real() < frequency;
}

// The level at g of a mask sorted by frequency, then level.
fp64 mask_level_at(const lib_iq_data_arr_t& sorted, fp64 g) {
  if (g <= sorted.front().real()) {
    return sorted.front().imag();
  }
  if (g >= sorted.back().real()) {
    return sorted.back().imag();
  }
  const auto at_or_above = std::lower_bound(sorted.begin(), sorted.end(), g, frequency_below);
  if (at_or_above->real() - g >= lib_tolerance) {
    return (at_or_above->imag() + std::prev(at_or_above)->imag()) * 0.5;
  }
  const auto past_same =
      std::lower_bound(at_or_above, sorted.end(), g + lib_tolerance, frequency_below);
  return (at_or_above->imag() + std::prev(past_same)->imag()) * 0.5;
}

}  // namespace

bool lib_fir_filter_design_t::set_filter_type(fir_filter_type_t type) {
  _filter_type = type;
  return true;
}

bool lib_fir_filter_design_t::set_filter_order(uint32 order) {
  // In 64 bits, so that the largest order does not wrap to length 0.
  const auto length =
      std::clamp<std::uint64_t>(std::uint64_t{order} + 1, _min_filter_length, _max_filter_length);
  _filter_length = static_cast<uint32>(length);
  return true;
}

bool lib_fir_filter_design_t::set_filter_length(uint32 length) {
  _filter_length = std::clamp(length, _min_filter_length, _max_filter_length);
  return true;
}

bool lib_fir_filter_design_t::set_real_filter(bool real) {
  _real_filter = real;
  return true;
}

bool lib_fir_filter_design_t::set_cutoff(fp64 cutoff) {
  _cutoff = std::clamp(cutoff, _cutoff_min, _cutoff_max);
  return true;
}

bool lib_fir_filter_design_t::set_lower_edge(fp64 edge) {
  _lower_edge = std::clamp(edge, _lower_edge_min, _lower_edge_max);
  if (_lower_edge > _upper_edge) {
    _upper_edge = std::clamp(_lower_edge, _upper_edge_min, _upper_edge_max);
  }
  return true;
}

bool lib_fir_filter_design_t::set_upper_edge(fp64 edge) {
  _upper_edge = std::clamp(edge, _upper_edge_min, _upper_edge_max);
  if (_lower_edge > _upper_edge) {
    _lower_edge = std::clamp(_upper_edge, _lower_edge_min, _lower_edge_max);
  }
  return true;
}

bool lib_fir_filter_design_t::set_window_type(window_type_t type) {
  _window_type = type;
  return true;
}

bool lib_fir_filter_design_t::set_kaiser_beta(fp64 beta) {
  _kaiser_beta = beta > 0.0 ? beta : 0.0;
  return true;
}

bool lib_fir_filter_design_t::is_real_result() const {
  switch (_filter_type) {
    case FIR_LOW_PASS:
    case FIR_HIGH_PASS:
      return true;
    case FIR_BAND_PASS:
    case FIR_BAND_STOP:
      return _real_filter && _lower_edge > 0.0 && _upper_edge > 0.0;
    default:
      return false;
  }
}

void lib_fir_filter_design_t::clear_data() {
  _ideal_filter_data.clear();
  _window_data.clear();
  _filter_data.clear();
  _finished = false;
  _real_result = true;
}

bool lib_fir_filter_design_t::generate() {
  clear_data();
  if (!_generate_ideal_filter_data() || !_generate_window_data()) {
    clear_data();
    return false;
  }
  _generate_filter_data();
  _finished = true;
  return true;
}

bool lib_fir_filter_design_t::_generate_ideal_filter_data() {
  const bool real = is_real_result();
  switch (_filter_type) {
    case FIR_LOW_PASS:
      _ideal_low_pass(_filter_length, _cutoff, _ideal_filter_data);
      break;
    case FIR_HIGH_PASS:
      _ideal_high_pass(_filter_length, _cutoff, _ideal_filter_data);
      break;
    case FIR_BAND_PASS:
      if (real) {
        _ideal_real_band_pass(_filter_length, _lower_edge, _upper_edge, _ideal_filter_data);
      } else {
        _ideal_complex_band_pass(_filter_length, _lower_edge, _upper_edge, _ideal_filter_data);
      }
      break;
    case FIR_BAND_STOP:
      if (real) {
        _ideal_real_band_stop(_filter_length, _lower_edge, _upper_edge, _ideal_filter_data);
      } else {
        _ideal_complex_band_stop(_filter_length, _lower_edge, _upper_edge, _ideal_filter_data);
      }
      break;
    default:
      lib_report(
          "lib_fir_fitler_design_t::_generate_ideal_filter_data Report : Error FIR Filter Type!");
      return false;
  }
  _real_result = real;
  return true;
}

bool lib_fir_filter_design_t::_generate_window_data() {
  if (_window_type == WINDOW_KAISER) {
    lib_window_function_t::generate_kaiser_window(_window_data, _filter_length, false,
                                                  _kaiser_beta);
  } else {
    lib_window_function_t::_generate_win_data_arr(_window_data, _window_type, _filter_length,
                                                  false);
  }
  return _window_data.size() == _filter_length;
}

void lib_fir_filter_design_t::_generate_filter_data() {
  _filter_data.resize(_ideal_filter_data.size());
  for (std::size_t n = 0; n < _filter_data.size(); ++n) {
    _filter_data[n] = plib_t::complex_multiply(_ideal_filter_data[n], _window_data[n]);
  }
}

void lib_fir_filter_design_t::_ideal_low_pass(uint32 length, fp64 cutoff, lib_iq_data_arr_t& out) {
  out.assign(length, {0.0, 0.0});
  if (std::abs(cutoff) < lib_tolerance) {
    return;
  }
  const fp64 centre = (static_cast<fp64>(length) - 1.0) * 0.5;
  for (uint32 n = 0; n < length; ++n) {
    const fp64 m = static_cast<fp64>(n) - centre;
    out[n] = {std::abs(m) < lib_tolerance ? cutoff : std::sin(cutoff * lib_pi * m) / (lib_pi * m),
              0.0};
  }
}

void lib_fir_filter_design_t::_ideal_high_pass(uint32 length, fp64 cutoff, lib_iq_data_arr_t& out) {
  const fp64 half_width = (1.0 - cutoff) * 0.5;
  _ideal_low_pass(length, half_width, out);
  modulate_by_cosine(half_width + cutoff, out);
}

void lib_fir_filter_design_t::_ideal_real_band_pass(uint32 length, fp64 lower, fp64 upper,
                                                    lib_iq_data_arr_t& out) {
  const fp64 half_width = (upper - lower) * 0.5;
  _ideal_low_pass(length, half_width, out);
  modulate_by_cosine(half_width + upper, out);
}

void lib_fir_filter_design_t::_ideal_real_band_stop(uint32 length, fp64 lower, fp64 upper,
                                                    lib_iq_data_arr_t& out) {
  lib_iq_data_arr_t low_part;
  lib_iq_data_arr_t high_part;
  _ideal_low_pass(length, lower, low_part);
  _ideal_high_pass(length, upper, high_part);
  add_taps(low_part, high_part, out);
}

void lib_fir_filter_design_t::_ideal_complex_band_pass(uint32 length, fp64 lower, fp64 upper,
                                                       lib_iq_data_arr_t& out) {
  const fp64 half_width = (upper - lower) * 0.5;
  _ideal_low_pass(length, half_width, out);
  // Shift by 2 g = l + h, the band centre, with the phase referred to tap (N - 1) div 2.
  const fp64 g = (lower + half_width) * 0.5;
  const fp64 centre = integer_centre(length);
  for (uint32 n = 0; n < length; ++n) {
    const fp64 angle = static_cast<fp64>(n) * g * 2.0 * lib_pi + g * (-2.0 * lib_pi) * centre;
    out[n] = plib_t::complex_multiply(out[n], {std::cos(angle), std::sin(angle)});
  }
}

void lib_fir_filter_design_t::_ideal_complex_band_stop(uint32 length, fp64 lower, fp64 upper,
                                                       lib_iq_data_arr_t& out) {
  lib_iq_data_arr_t below_band;
  lib_iq_data_arr_t above_band;
  _ideal_complex_band_pass(length, -1.0, lower, below_band);
  _ideal_complex_band_pass(length, upper, 1.0, above_band);
  add_taps(below_band, above_band, out);
}

bool lib_fir_filter_design_t::generate_windowed_filter_data(uint32 length, window_type_t type,
                                                            const lib_iq_data_arr_t& mask,
                                                            lib_iq_data_arr_t& taps) {
  taps.clear();
  if (mask.empty()) {
    lib_report(
        "lib_fir_filter_design_t::generate_windowed_filter_data Report : Filter Mask Data Array "
        "is Too Short!");
    return false;
  }
  if (!plib_t::is_power_of_2(length) || mask.size() > length) {
    lib_report(
        "lib_fir_filter_design_t::generate_windowed_filter_data Report : Illegal Filter Data "
        "Length!");
    return false;
  }
  lib_iq_data_arr_t spectrum;
  _generate_mask_data(length, mask, spectrum);
  lib_fourier_transform_t::deal_fft_shift(spectrum);
  if (!lib_fourier_transform_t::deal_ifft(spectrum, taps, length)) {
    return false;
  }
  lib_window_function_t::apply_window_functon(taps, type);
  return true;
}

bool lib_fir_filter_design_t::generate_windowed_filter_data(const lib_iq_data_arr_t& mask,
                                                            lib_iq_data_arr_t& taps,
                                                            window_type_t type) {
  const uint32 length = plib_t::next_power_of_2(static_cast<uint32>(4 * mask.size()), 4);
  return generate_windowed_filter_data(length, type, mask, taps);
}

void lib_fir_filter_design_t::_generate_mask_data(uint32 length, const lib_iq_data_arr_t& mask,
                                                  lib_iq_data_arr_t& out) {
  if (mask.empty()) {
    out.clear();
    return;
  }
  lib_iq_data_arr_t sorted = mask;
  std::sort(sorted.begin(), sorted.end(), frequency_then_level_below);
  out.resize(length);
  const fp64 step = 2.0 / static_cast<fp64>(length);
  for (uint32 k = 0; k < length; ++k) {
    out[k] = {mask_level_at(sorted, static_cast<fp64>(k) * step - 1.0), 0.0};
  }
}

}  // namespace nal::common_lib

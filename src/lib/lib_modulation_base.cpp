#include "lib/lib_modulation_base.h"

#include <algorithm>
#include <cmath>

#include "lib/lib_normalization.h"
#include "lib/lib_oversampling.h"
#include "lib/lib_polyphase_resampler.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

lib_modulation_base_t::lib_modulation_base_t(uint32 modulator_type)
    : _modulator_type(modulator_type) {
  _filter.set_oversampling_ratio(_oversampling_ratio);
}

bool lib_modulation_base_t::_check_constellation_inst() const {
  if (_current_constellation() == nullptr) {
    lib_report(
        "lib_modulation_base_t::_check_constellation_inst Report: Null pointer Dereference "
        "Stopped!");
    return false;
  }
  return true;
}

const lib_constellation_base_t* lib_modulation_base_t::constellation() const {
  return _current_constellation();
}

bool lib_modulation_base_t::set_constellation_type(modulation_type_t type) {
  if (!_check_constellation_inst() || !_current_constellation()->set_constellation_type(type)) {
    return false;
  }
  return _symbol_data.set_bits_per_symbol(_current_constellation()->get_bit_number());
}

bool lib_modulation_base_t::set_gray_code_enable(bool enable) {
  return _check_constellation_inst() && _current_constellation()->set_gray_code_enable(enable);
}

bool lib_modulation_base_t::set_filter_type(filter_type_t type) {
  _filter.set_filter_type(type);
  if (!_check_constellation_inst()) {
    return false;
  }
  _current_constellation()->set_filter_type(type);
  return true;
}

bool lib_modulation_base_t::set_oversampling_ratio(uint32 ratio) {
  if (ratio < 2) {
    lib_report(
        "lib_modulation_base_t::set_oversampling_ratio Report: Oversampling Ratio must be NOT "
        "samller than 2.");
    return false;
  }
  _oversampling_ratio = ratio;
  return _filter.set_oversampling_ratio(ratio);
}

bool lib_modulation_base_t::set_symbol_rate(uint32 rate) {
  _symbol_rate = rate;
  return true;
}

bool lib_modulation_base_t::set_frequency_deviation(fp64 deviation) {
  if (deviation <= 0.0 || std::abs(deviation) <= lib_tolerance) {
    return false;
  }
  _frequency_deviation = deviation;
  return true;
}

bool lib_modulation_base_t::set_filter_parameter(fp64 parameter) {
  return _filter.set_filter_parameter(parameter);
}

bool lib_modulation_base_t::set_filter_length(uint32 length) {
  return _filter.set_filter_length(length);
}

bool lib_modulation_base_t::set_constellation(const lib_iq_data_arr_t& points, bool normalize) {
  return _check_constellation_inst() &&
         _current_constellation()->set_constellation(points, normalize);
}

bool lib_modulation_base_t::set_constellation(uint32 symbol, const lib_iq_sample_t& point,
                                              bool normalize) {
  return _check_constellation_inst() &&
         _current_constellation()->set_constellation(symbol, point, normalize);
}

bool lib_modulation_base_t::set_constellation(const lib_constellation_map_t& map, bool normalize) {
  if (!_check_constellation_inst() ||
      !_current_constellation()->set_constellation(map, normalize)) {
    return false;
  }
  _current_constellation()->update_point_by_map();
  return _symbol_data.set_bits_per_symbol(_current_constellation()->get_bit_number());
}

bool lib_modulation_base_t::set_modulation_config(const lib_modulation_config_t& config) {
  if (config.modulator_type != _modulator_type) {
    lib_report(
        "lib_modulation_base_t::set_modulation_config Report: Modulation Type Configuration "
        "Error!");
    return false;
  }
  _symbol_rate = config.symbol_rate;
  bool done = set_oversampling_ratio(config.oversampling_ratio);
  done &= _symbol_data.set_data_source_code(config.data_source_code);
  done &= _symbol_data.set_symbol_length(config.symbol_length);
  if (config.data_source_code == lib_symbol_data_t::custom_bits_code) {
    _symbol_data.set_bit_arr(config.custom_bits);
  }
  done &= set_constellation_type(config.constellation_type);
  if (_modulator_type == MODULATOR_APSK_QAM) {
    done &= set_gray_code_enable(config.gray_code);
  }
  if (_modulator_type == MODULATOR_MFSK) {
    done &= set_frequency_deviation(config.frequency_deviation);
  }
  if (config.constellation_type == MOD_MULTITONE2) {
    done &= set_constellation(config.constellation_map, false);
  }
  done &= set_filter_type(config.filter_type);
  done &= set_filter_parameter(config.filter_parameter);
  done &= set_filter_length(config.filter_length);
  return done;
}

modulation_type_t lib_modulation_base_t::get_constellation_type() const {
  return _check_constellation_inst() ? _current_constellation()->get_constellation_type()
                                     : MOD_2ASK;
}

bool lib_modulation_base_t::get_gray_code_enable() const {
  return _check_constellation_inst() && _current_constellation()->get_gray_code_enable();
}

uint32 lib_modulation_base_t::get_bit_number() const {
  return _check_constellation_inst() ? _current_constellation()->get_bit_number() : 0;
}

const lib_constellation_map_t& lib_modulation_base_t::get_constellation_map() const {
  static const lib_constellation_map_t empty;
  return _check_constellation_inst() ? _current_constellation()->get_constellation_map() : empty;
}

bool lib_modulation_base_t::_generate_points(lib_iq_data_arr_t& points) {
  points.clear();
  if (!_check_constellation_inst()) {
    return false;
  }
  _symbol_data.generate();
  _current_constellation()->generate_constellation();
  _current_constellation()->get_symbol_iq_data(_symbol_data.get_symbol_arr(), points);
  return !points.empty();
}

bool lib_modulation_base_t::deal_pulse_shaping(const lib_iq_data_arr_t& in,
                                               lib_iq_data_arr_t& out) {
  return _filter.deal_filter(in, out, true);
}

void lib_modulation_base_t::deal_modulation() {
  _modulated_iq_data.clear();
  lib_iq_data_arr_t points;
  if (!_generate_points(points)) {
    return;
  }
  lib_iq_data_arr_t oversampled;
  if (_current_constellation()->get_oversampling_type() == OVERSAMPLING_INSERT_ZERO &&
      get_filter_type() != FILTER_NONE) {
    // Impulses shaped by a filter are computed at the output rate from the points alone: the
    // same sums as oversampling and cyclic filtering, without the zeros.
    lib_iq_data_arr_t taps;
    if (!_filter._generate_filter(taps)) {
      return;
    }
    fp64 largest = 0.0;
    if (lib_polyphase_resampler_t::deal_cyclic_interpolation(
            points, _oversampling_ratio, taps, taps.size() / 2, _modulated_iq_data,
            plib_t::get_work_thread_number(), largest)) {
      _normalize_modulated_data(largest);
      return;
    }
    _current_constellation()->deal_oversampling(points, _oversampling_ratio, oversampled);
    lib_filter_t::deal_filter(oversampled, taps, _modulated_iq_data, true);
  } else {
    _current_constellation()->deal_oversampling(points, _oversampling_ratio, oversampled);
    deal_pulse_shaping(oversampled, _modulated_iq_data);
  }
  _normalize_modulated_data();
}

fp64 lib_modulation_base_t::_largest_component(const lib_iq_data_arr_t& samples) {
  fp64 largest = 0.0;
  for (const auto& sample : samples) {
    largest = std::max({largest, std::abs(sample.real()), std::abs(sample.imag())});
  }
  return largest;
}

void lib_modulation_base_t::_normalize_modulated_data() {
  _normalize_modulated_data(_largest_component(_modulated_iq_data));
}

void lib_modulation_base_t::_normalize_modulated_data(fp64 largest_component) {
  if (_modulated_iq_data.empty()) {
    return;
  }
  if (largest_component < lib_tolerance) {
    // Too small to scale: the normalisation reports it and leaves the samples.
    lib_normalization_t::max_normalize(_modulated_iq_data);
    largest_component = 1.0;
  }
  // One pass of the division by the largest component (as max_normalize divides) and the scaling.
  const std::size_t count = 2 * _modulated_iq_data.size();
  fp64* values = reinterpret_cast<fp64*>(_modulated_iq_data.data());
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = values[i] / largest_component * output_peak;
  }
}

}  // namespace nal::common_lib

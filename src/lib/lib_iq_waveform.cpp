#include "lib/lib_iq_waveform.h"

#include <cmath>

#include "lib/lib_fourier_transform.h"
#include "lib/lib_report.h"
#include "lib/lib_resample.h"

namespace nal::common_lib {

std::array<lib_modulation_base_t*, lib_iq_waveform_t::modulator_count>
lib_iq_waveform_t::_modulators() {
  return {&_apsk_qam, &_fsk, &_custom};
}

bool lib_iq_waveform_t::set_iq_sample_rate(uint32 rate) {
  if (rate == 0) {
    lib_report("lib_iq_waveform_t::set_iq_sample_rate Report: IQ Sample Rate should NOT be zero!");
    return false;
  }
  _iq_sample_rate = rate;
  return true;
}

bool lib_iq_waveform_t::set_waveform_sample_rate(uint32 rate) {
  if (_carrier_frequency > rate) {
    lib_report(
        "lib_iq_waveform_t::set_iq_sample_rate Report: Waveform sample rate is lower than signal "
        "frequency!");
    return false;
  }
  _waveform_sample_rate = rate;
  return true;
}

bool lib_iq_waveform_t::set_carrier_freq(fp64 frequency) {
  if (frequency < 0.0 || std::abs(frequency) < lib_tolerance) {
    lib_report(
        "lib_iq_waveform_t::set_carrier_freq Report: Carrier wave frequency should be positive!");
    return false;
  }
  if (get_iq_sample_rate() > _carrier_frequency) {
    lib_report(
        "lib_iq_waveform_t::set_carrier_freq Report: Carrier wave frequency is lower than IQ "
        "sample rate!");
  }
  _carrier_frequency = frequency;
  return true;
}

uint32 lib_iq_waveform_t::get_iq_sample_rate() const {
  return _resample_enable ? _iq_sample_rate : _iq_sample_rate * _oversampling;
}

void lib_iq_waveform_t::_refresh_modulation_fields() {
  _oversampling = active_modulator().get_oversampling_ratio();
  _symbol_rate = active_modulator().get_symbol_rate();
}

void lib_iq_waveform_t::_copy_modulation_config(lib_modulation_base_t& target) {
  _refresh_modulation_fields();
  const lib_modulation_base_t& source = active_modulator();
  target.symbol_data().set_symbol_length(source.symbol_data().get_symbol_length());
  target.set_symbol_rate(source.get_symbol_rate());
  if (source.symbol_data().get_data_source_code() == lib_symbol_data_t::custom_bits_code) {
    target.symbol_data().set_bit_arr(source.symbol_data().get_bit_arr());
  }
  target.set_constellation_type(source.get_constellation_type());
  target.set_filter_type(source.get_filter_type());
  target.set_filter_length(source.get_filter_length());
  target.set_filter_parameter(source.get_filter_parameter());
  target.set_oversampling_ratio(source.get_oversampling_ratio());
}

bool lib_iq_waveform_t::set_modulation_type(uint32 type) {
  if (active_modulator().get_modulator_type() == type) {
    return true;
  }
  const auto modulators = _modulators();
  for (std::size_t i = 0; i < modulators.size(); ++i) {
    if (modulators[i]->get_modulator_type() == type) {
      _copy_modulation_config(*modulators[i]);
      _active = i;
      return true;
    }
  }
  lib_report("lib_iq_waveform_t::set_modulation_type Report: Illegal Modulation Type!");
  return false;
}

bool lib_iq_waveform_t::set_modulation_config(const lib_iq_waveform_config_t& config) {
  if (!set_modulation_type(config.modulator_type)) {
    return false;
  }
  lib_modulation_config_t settings;
  settings.modulator_type = config.modulator_type;
  settings.symbol_rate = config.symbol_rate;
  settings.oversampling_ratio = config.oversampling;
  settings.data_source_code = config.data_source_type;
  settings.symbol_length = config.symbol_length;
  settings.custom_bits = config.user_bits;
  settings.constellation_type = static_cast<modulation_type_t>(config.constellation_type);
  settings.gray_code = config.gray_code_enable;
  settings.frequency_deviation = config.fsk_deviation;
  settings.constellation_map = config.custom_constellation;
  settings.filter_type = static_cast<filter_type_t>(config.filter_type);
  settings.filter_parameter = config.filter_parameter;
  settings.filter_length = config.filter_length;
  const bool done = active_modulator().set_modulation_config(settings);
  _refresh_modulation_fields();
  return done;
}

bool lib_iq_waveform_t::set_iq_waveform_config(const lib_iq_waveform_config_t& config) {
  bool done = set_modulation_config(config);
  set_resample_enable(config.resample_enable);
  done &= set_iq_sample_rate(config.iq_sample_rate);
  done &= set_carrier_freq(config.carrier_frequency);
  done &= set_waveform_sample_rate(config.waveform_sample_rate);
  return done;
}

void lib_iq_waveform_t::generate_iq_signal() {
  _refresh_modulation_fields();
  active_modulator().deal_modulation();
  _baseband_iq = active_modulator().get_modulated_iq_data();
  _spectrum_ready = false;
  if (!_resample_enable) {
    return;
  }
  uint32 up = 1;
  uint32 down = 1;
  lib_resample_t::_calc_resample_coef(static_cast<uint32>(_baseband_iq.size()),
                                      _symbol_rate * _oversampling, _iq_sample_rate, up, down);
  const lib_iq_data_arr_t modulated = _baseband_iq;
  lib_resample_t::deal_resampling(modulated, _baseband_iq, up, down);
}

void lib_iq_waveform_t::release_baseband_iq(lib_iq_data_arr_t& out) {
  out.clear();
  out.shrink_to_fit();
  out.swap(_baseband_iq);
  _spectrum.clear();
  _spectrum_ready = true;
}

const lib_iq_data_arr_t& lib_iq_waveform_t::get_spectrum() {
  if (!_spectrum_ready) {
    if (_baseband_iq.empty()) {
      _spectrum.clear();
    } else {
      lib_fourier_transform_t::deal_spectrum(_baseband_iq, _spectrum, true, WINDOW_RECTANGLE);
    }
    _spectrum_ready = true;
  }
  return _spectrum;
}

void lib_iq_waveform_t::generate_modulated_signal() {
  _refresh_modulation_fields();
  generate_iq_signal();
  _generate_modulated_signal();
}

void lib_iq_waveform_t::_generate_modulated_signal() {
  _modulated_signal.clear();
  const uint32 iq_rate = get_iq_sample_rate();
  const uint32 ratio = iq_rate == 0 ? 0 : _waveform_sample_rate / iq_rate;
  if (ratio == 0) {
    lib_report(
        "lib_iq_waveform_t::_generate_modulated_signal Report: Carrier Wave Sampling Freqency is "
        "too low!");
    return;
  }
  const uint32 count = static_cast<uint32>(_baseband_iq.size()) * ratio;
  const fp64 dt = 1.0 / _waveform_sample_rate;
  for (uint32 i = 0; i < count; ++i) {
    // No factor 2 pi: the carrier argument is this product as it stands.
    const fp64 x = i * dt * _carrier_frequency;
    const lib_iq_sample_t& sample = _baseband_iq[i / ratio];
    _modulated_signal.emplace_back(sample.real() * std::cos(x) - sample.imag() * std::sin(x), 0.0);
  }
}

}  // namespace nal::common_lib

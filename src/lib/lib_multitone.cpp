#include "lib/lib_multitone.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <string>
#include <utility>

#include "lib/lib_fourier_transform.h"
#include "lib/lib_normalization.h"
#include "lib/lib_report.h"

namespace nal::common_lib {

bool lib_multitone_t::set_sample_rate(fp64 rate) {
  return _store(_config.sample_rate, rate);
}

bool lib_multitone_t::set_start_frequency(fp64 frequency) {
  if (frequency > _config.stop_frequency) {
    _config.stop_frequency = frequency;
  }
  return _store(_config.start_frequency, frequency);
}

bool lib_multitone_t::set_stop_frequency(fp64 frequency) {
  if (frequency < _config.start_frequency) {
    _config.start_frequency = frequency;
  }
  return _store(_config.stop_frequency, frequency);
}

bool lib_multitone_t::set_tone_number(uint32 number) {
  return _store(_config.tone_number, number);
}

bool lib_multitone_t::set_single_side(bool enable) {
  return _store(_config.single_side, enable);
}

bool lib_multitone_t::set_custom_frequency_enable(bool enable) {
  return _store(_config.custom_frequency_enable, enable);
}

bool lib_multitone_t::set_custom_frequencies(const lib_fp_data_arr_t& frequencies) {
  if (!_config.custom_frequency_enable) {
    lib_report("lib_multitone_t::set_custom_frequencies Report: Custom Frequency Disabled!");
    return false;
  }
  if (!_check_custom_frequencies(frequencies)) {
    return false;
  }
  return _store(_config.custom_frequencies, frequencies);
}

bool lib_multitone_t::set_multitone_config(const lib_multitone_config_t& config) {
  lib_fp_data_arr_t kept_list = std::move(_config.custom_frequencies);
  _config = config;
  _config.custom_frequencies = std::move(kept_list);
  _apply_bounds();
  if (!config.custom_frequency_enable) {
    return true;
  }
  return set_custom_frequencies(config.custom_frequencies);
}

uint32 lib_multitone_t::get_transform_length() const {
  const fp64 limit = std::min(30000.0, 0.1 * _get_grid_spacing());
  for (uint32 length = min_transform_length; length < max_transform_length; length *= 2) {
    if (_config.sample_rate / length <= limit) {
      return length;
    }
  }
  return max_transform_length;
}

void lib_multitone_t::generate() {
  lib_fp_data_arr_t tones;
  _get_tone_list(tones);
  const uint32 length = get_transform_length();
  const fp64 bin_width = _config.sample_rate / length;

  lib_iq_data_arr_t bins(length);
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  long long skipped = 0;
  for (const fp64 frequency : tones) {
    const fp64 bin = std::round(frequency / bin_width);
    if (!(bin >= 0.0 && bin < length)) {
      ++skipped;
      continue;
    }
    const auto index = static_cast<std::size_t>(bin);
    // Whole radians 0..6: the phase set is deliberately coarse.
    const fp64 phase = (std::rand() % 6283) / 1000;
    bins[index] = {std::cos(phase), std::sin(phase)};
    if (!_config.single_side) {
      bins[length - 1 - index] = bins[index];
    }
  }
  if (skipped != 0) {
    lib_report("lib_multitone_t::generate Report: Tones outside the transform skipped: ", skipped);
  }
  lib_fourier_transform_t::deal_ifft(bins, _samples);
  lib_normalization_t::max_normalize(_samples);
}

bool lib_multitone_t::_check_custom_frequencies(const lib_fp_data_arr_t& frequencies) const {
  const std::string method = "lib_multitone_t::_check_custom_frequencies Report: ";
  if (frequencies.empty() || frequencies.size() > max_tone_number) {
    lib_report(method + "Tone count out of range: ", static_cast<long long>(frequencies.size()));
    return false;
  }
  const auto not_positive = [](fp64 f) { return !(f > 0.0); };
  if (std::any_of(frequencies.begin(), frequencies.end(), not_positive)) {
    lib_report(method + "Frequencies should be positive!");
    return false;
  }
  const fp64 largest = *std::max_element(frequencies.begin(), frequencies.end());
  if (1.2 * largest > _config.sample_rate) {
    lib_report(method + "1.2 times the largest frequency exceeds the sample rate: ", largest);
    return false;
  }
  return true;
}

void lib_multitone_t::_apply_bounds() {
  // fmax/fmin rather than clamp: they turn NaN into the bound.
  _config.sample_rate = std::fmin(std::fmax(_config.sample_rate, min_sample_rate), max_sample_rate);
  _config.stop_frequency = std::fmax(_config.stop_frequency, 0.0);
  if (2.4 * _config.stop_frequency > _config.sample_rate) {
    _config.stop_frequency = _config.sample_rate / 1.2;
  }
  _config.start_frequency =
      std::fmin(std::fmax(_config.start_frequency, 0.0), _config.stop_frequency);
  _config.tone_number = std::clamp<uint32>(_config.tone_number, 1, max_tone_number);
}

void lib_multitone_t::_get_tone_list(lib_fp_data_arr_t& tones) const {
  tones.clear();
  if (_config.custom_frequency_enable) {
    tones = _config.custom_frequencies;
    return;
  }
  const fp64 start = _config.start_frequency;
  const fp64 stop = _config.stop_frequency;
  if (_config.tone_number < 2) {
    tones.push_back((start + stop) / 2);
    return;
  }
  for (uint32 i = 0; i < _config.tone_number; ++i) {
    tones.push_back(start + i * (stop - start) / (_config.tone_number - 1));
  }
}

fp64 lib_multitone_t::_get_grid_spacing() const {
  const auto& custom = _config.custom_frequencies;
  if (_config.custom_frequency_enable && custom.size() >= 2) {
    const auto [smallest, largest] = std::minmax_element(custom.begin(), custom.end());
    return (*largest - *smallest) / (2.0 * static_cast<fp64>(custom.size()));
  }
  return (_config.stop_frequency - _config.start_frequency) / (2.0 * _config.tone_number);
}

}  // namespace nal::common_lib

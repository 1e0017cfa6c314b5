#include "lib/lib_ofdm_symbol_data_generator.h"

#include <algorithm>
#include <set>
#include <string>

#include "lib/lib_common_container.h"
#include "lib/lib_fourier_transform.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

bool lib_ofdm_symbol_data_generator_t::set_fft_length(uint32 fft_length) {
  if (!plib_t::is_power_of_2(fft_length)) {
    lib_report(
        "lib_ofdm_symbol_data_generator_t::set_fft_length Report : FFT Points must be power of 2!");
    return false;
  }
  _fft_length = fft_length;
  return true;
}

bool lib_ofdm_symbol_data_generator_t::set_symbol_number(uint32 symbol_number) {
  if (symbol_number == 0) {
    lib_report(
        "lib_ofdm_symbol_data_generator_t::set_symbol_number Report : Symbol Number must not be "
        "0!");
    return false;
  }
  _symbol_number = symbol_number;
  _cyclic_prefix.drop_symbols_from(symbol_number);
  _cyclic_suffix.drop_symbols_from(symbol_number);
  return true;
}

bool lib_ofdm_symbol_data_generator_t::set_oversampling_ratio(uint32 oversampling_ratio) {
  if (oversampling_ratio == 0) {
    lib_report(
        "lib_ofdm_symbol_data_generator_t::set_oversampling_ratio Report : Oversampling Ratio must "
        "not be 0!");
    return false;
  }
  _oversampling_ratio = oversampling_ratio;
  return true;
}

bool lib_ofdm_symbol_data_generator_t::set_cyclic_prefix(const lib_ofdm_cyclic_config_t& config) {
  return _accept_cyclic_config(config, _cyclic_prefix, "set_cyclic_prefix");
}

bool lib_ofdm_symbol_data_generator_t::set_cyclic_suffix(const lib_ofdm_cyclic_config_t& config) {
  return _accept_cyclic_config(config, _cyclic_suffix, "set_cyclic_suffix");
}

bool lib_ofdm_symbol_data_generator_t::_accept_cyclic_config(const lib_ofdm_cyclic_config_t& config,
                                                             lib_ofdm_cyclic_config_t& stored,
                                                             const char* method) const {
  const std::string prefix = std::string("lib_ofdm_symbol_data_generator_t::") + method;
  for (const lib_ofdm_cyclic_entry_t& entry : config.entry_list) {
    if (lib_common_container_t::get_max_element(entry.symbol_index_list) >= _symbol_number) {
      lib_report(prefix + " Report : Symbol Index out of range!");
      return false;
    }
  }
  std::set<uint32> seen;
  for (const lib_ofdm_cyclic_entry_t& entry : config.entry_list) {
    const std::set<uint32> own(entry.symbol_index_list.begin(), entry.symbol_index_list.end());
    for (const uint32 index : own) {
      if (!seen.insert(index).second) {
        lib_report(prefix + " Report : Symbol Index in two entries!");
        return false;
      }
    }
  }
  stored = config;
  stored.drop_symbols_from(_symbol_number);
  return true;
}

uint32 lib_ofdm_symbol_data_generator_t::get_prefix_length(uint32 symbol_index) const {
  return lib_ofdm_cyclic_config_t::get_ratio_length(_cyclic_prefix.get_symbol_ratio(symbol_index),
                                                    get_useful_length());
}

uint32 lib_ofdm_symbol_data_generator_t::get_suffix_length(uint32 symbol_index) const {
  return lib_ofdm_cyclic_config_t::get_ratio_length(_cyclic_suffix.get_symbol_ratio(symbol_index),
                                                    get_useful_length());
}

uint32 lib_ofdm_symbol_data_generator_t::get_symbol_length(uint32 symbol_index) const {
  return get_useful_length() + get_prefix_length(symbol_index) + get_suffix_length(symbol_index);
}

uint32 lib_ofdm_symbol_data_generator_t::get_useful_length() const {
  return _fft_length * _oversampling_ratio;
}

bool lib_ofdm_symbol_data_generator_t::deal_symbol_data(uint32 symbol_index,
                                                        const lib_iq_data_arr_t& row,
                                                        lib_iq_data_arr_t& samples) const {
  samples.clear();
  const std::size_t n = get_useful_length();
  if (row.size() > n) {
    lib_report(
        "lib_ofdm_symbol_data_generator_t::deal_symbol_data Report : Symbol Data Length Error!");
    return false;
  }
  lib_iq_data_arr_t spectrum(n);
  std::copy(row.begin(), row.end(), spectrum.begin() + static_cast<long>((n - row.size()) / 2));
  std::rotate(spectrum.begin(), spectrum.begin() + static_cast<long>((n + 1) / 2), spectrum.end());
  lib_fourier_transform_t::deal_ifft(spectrum, samples);
  const fp64 scale = static_cast<fp64>(_oversampling_ratio);
  for (lib_iq_sample_t& sample : samples) {
    sample = {sample.real() * scale, sample.imag() * scale};
  }
  return _deal_cyclic_extension(symbol_index, samples);
}

bool lib_ofdm_symbol_data_generator_t::_deal_cyclic_extension(uint32 symbol_index,
                                                              lib_iq_data_arr_t& samples) const {
  if (samples.size() != get_useful_length()) {
    lib_report(
        "lib_ofdm_symbol_data_generator_t::_deal_cyclic_extension Report : Symbol Sample Data "
        "Length Error!");
    return false;
  }
  const long cp = get_prefix_length(symbol_index);
  const long cs = get_suffix_length(symbol_index);
  const lib_iq_data_arr_t prefix(samples.end() - cp, samples.end());
  const lib_iq_data_arr_t suffix(samples.begin(), samples.begin() + cs);
  samples.insert(samples.begin(), prefix.begin(), prefix.end());
  samples.insert(samples.end(), suffix.begin(), suffix.end());
  return true;
}

}  // namespace nal::common_lib

#include "lib/lib_ofdm_modulator.h"

#include <utility>

#include "lib/lib_report.h"
#include "lib/lib_window_function.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

void multiply_by_window(lib_iq_data_arr_t::iterator first, const lib_iq_data_arr_t& window) {
  for (const lib_iq_sample_t& value : window) {
    *first = plib_t::complex_multiply(*first, value);
    ++first;
  }
}

}  // namespace

bool lib_ofdm_modulator_t::set_fft_length(uint32 fft_length) {
  return _symbol_generator.set_fft_length(fft_length);
}

bool lib_ofdm_modulator_t::set_symbol_number(uint32 symbol_number) {
  return _symbol_generator.set_symbol_number(symbol_number);
}

bool lib_ofdm_modulator_t::set_oversampling_ratio(uint32 oversampling_ratio) {
  return _symbol_generator.set_oversampling_ratio(oversampling_ratio);
}

bool lib_ofdm_modulator_t::set_cyclic_prefix(const lib_ofdm_cyclic_config_t& config) {
  return _symbol_generator.set_cyclic_prefix(config);
}

bool lib_ofdm_modulator_t::set_cyclic_suffix(const lib_ofdm_cyclic_config_t& config) {
  return _symbol_generator.set_cyclic_suffix(config);
}

bool lib_ofdm_modulator_t::set_idle_length(uint32 idle_length) {
  _idle_length = idle_length;
  return true;
}

bool lib_ofdm_modulator_t::set_window_ratio(fp64 window_ratio) {
  _window_ratio =
      lib_ofdm_cyclic_config_t::clamp_ratio(window_ratio, _window_ratio_min, _window_ratio_max);
  return true;
}

bool lib_ofdm_modulator_t::set_window_method(uint32 window_method) {
  _window_method = window_method;
  return true;
}

uint32 lib_ofdm_modulator_t::get_frame_length() const {
  uint32 length = _idle_length * _symbol_generator.get_oversampling_ratio();
  for (uint32 i = 0; i < _symbol_generator.get_symbol_number(); ++i) {
    length += _symbol_generator.get_symbol_length(i);
  }
  return length;
}

uint32 lib_ofdm_modulator_t::get_window_length() const {
  return lib_ofdm_cyclic_config_t::get_ratio_length(_window_ratio,
                                                    _symbol_generator.get_useful_length());
}

bool lib_ofdm_modulator_t::deal_ofdm_modulation(const std::vector<lib_iq_data_arr_t>& rows,
                                                lib_iq_data_arr_t& frame, lib_iq_data_arr_t& head,
                                                lib_iq_data_arr_t& tail) {
  frame.clear();
  head.clear();
  tail.clear();
  if (!_check_rows(rows)) {
    lib_report("lib_ofdm_modulator_t::deal_ofdm_modulation Report : Payload Mapping Size Error!");
    return false;
  }
  _build_windows();
  frame.assign(get_frame_length(), lib_iq_sample_t(0.0, 0.0));
  long start = 0;
  for (uint32 i = 0; i < rows.size(); ++i) {
    lib_iq_data_arr_t symbol;
    _symbol_generator.deal_symbol_data(i, rows[i], symbol);
    const long offset = _add_symbol_edges(i, symbol);
    _place_symbol(std::move(symbol), start + offset, frame, head, tail);
    start += _symbol_generator.get_symbol_length(i);
  }
  return true;
}

bool lib_ofdm_modulator_t::deal_ofdm_frame(const std::vector<lib_iq_data_arr_t>& rows,
                                           lib_iq_data_arr_t& frame) {
  lib_iq_data_arr_t head;
  lib_iq_data_arr_t tail;
  if (!deal_ofdm_modulation(rows, frame, head, tail)) {
    return false;
  }
  if (head.size() <= frame.size()) {
    const std::size_t first = frame.size() - head.size();
    for (std::size_t k = 0; k < head.size(); ++k) {
      frame[first + k] += head[k];
    }
  }
  if (tail.size() <= frame.size()) {
    for (std::size_t k = 0; k < tail.size(); ++k) {
      frame[k] += tail[k];
    }
  }
  return true;
}

bool lib_ofdm_modulator_t::_check_rows(const std::vector<lib_iq_data_arr_t>& rows) const {
  if (rows.empty() || rows.size() != _symbol_generator.get_symbol_number() || rows[0].empty() ||
      rows[0].size() > _symbol_generator.get_fft_length()) {
    return false;
  }
  for (const lib_iq_data_arr_t& row : rows) {
    if (row.size() != rows[0].size()) {
      return false;
    }
  }
  return true;
}

void lib_ofdm_modulator_t::_build_windows() {
  _rising_window.clear();
  _falling_window.clear();
  const long length = get_window_length();
  if (length == 0) {
    return;
  }
  // 2L + 3 points: the two zero ends and the peak between the edges belong to neither edge.
  lib_iq_data_arr_t hanning;
  lib_window_function_t::_generate_win_data_arr(hanning, WINDOW_HANNING,
                                                static_cast<uint32>(2 * length + 3), false);
  _rising_window.assign(hanning.begin() + 1, hanning.begin() + 1 + length);
  _falling_window.assign(hanning.begin() + length + 2, hanning.begin() + 2 * length + 2);
}

long lib_ofdm_modulator_t::_add_symbol_edges(uint32 symbol_index, lib_iq_data_arr_t& symbol) const {
  const long length = static_cast<long>(_rising_window.size());
  if (length == 0) {
    return 0;
  }
  const long cyclic = _symbol_generator.get_prefix_length(symbol_index) +
                      _symbol_generator.get_suffix_length(symbol_index);
  if (_window_method != 0) {
    const lib_iq_data_arr_t extension(symbol.begin() + cyclic, symbol.begin() + cyclic + length);
    symbol.insert(symbol.end(), extension.begin(), extension.end());
    multiply_by_window(symbol.end() - length, _falling_window);
    return 0;
  }
  const long half = (length + 1) / 2;
  const lib_iq_data_arr_t front(symbol.end() - cyclic - half, symbol.end() - cyclic);
  symbol.insert(symbol.begin(), front.begin(), front.end());
  // Taken from the array with the front already inserted, hence `half` samples short of the true
  // continuation; kept so that waveforms stay sample-identical.
  const lib_iq_data_arr_t back(symbol.begin() + cyclic, symbol.begin() + cyclic + length - half);
  symbol.insert(symbol.end(), back.begin(), back.end());
  multiply_by_window(symbol.begin(), _rising_window);
  multiply_by_window(symbol.end() - length, _falling_window);
  return -half;
}

void lib_ofdm_modulator_t::_place_symbol(lib_iq_data_arr_t symbol, long position,
                                         lib_iq_data_arr_t& frame, lib_iq_data_arr_t& head,
                                         lib_iq_data_arr_t& tail) {
  const long total = static_cast<long>(symbol.size());
  const long frame_length = static_cast<long>(frame.size());
  long start = position;
  if (position < 0) {
    const std::size_t before = static_cast<std::size_t>(-position);
    if (head.size() < before) {
      head.insert(head.begin(), before - head.size(), lib_iq_sample_t(0.0, 0.0));
    }
    const std::size_t first = head.size() - before;
    for (std::size_t k = 0; k < before; ++k) {
      head[first + k] += symbol[k];
    }
    symbol.erase(symbol.begin(), symbol.begin() + static_cast<long>(before));
    start = 0;
  }
  if (position + total > frame_length) {
    const long excess = position + total - frame_length;
    if (static_cast<long>(tail.size()) < excess) {
      tail.resize(static_cast<std::size_t>(excess));
    }
    // Indexed as in the uncut symbol: a symbol that also stuck out in front reads past its end.
    for (long k = 0; k < excess; ++k) {
      tail[static_cast<std::size_t>(k)] += symbol.at(static_cast<std::size_t>(total - excess + k));
    }
    symbol.resize(symbol.size() - static_cast<std::size_t>(excess));
  }
  for (std::size_t k = 0; k < symbol.size(); ++k) {
    frame[static_cast<std::size_t>(start) + k] += symbol[k];
  }
}

}  // namespace nal::common_lib

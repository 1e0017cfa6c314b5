#pragma once
// The OFDM symbol engine: turns a frame of frequency-domain rows, one per symbol, into one block
// of time samples. Symbols are laid out back to back from sample 0, each with Hanning-shaped edges
// that overlap its neighbours; what sticks out of the frame is folded back onto it, so that the
// block loops without a click. Idle time follows the last symbol. Plain value with setters;
// copyable; no locks, one caller at a time.
//
// Edge length L = round(oversampling_ratio * fft_length * window_ratio). Method 0 centres each
// edge on the symbol boundary (the symbol starts ceil(L / 2) samples early); any other method
// starts it at the boundary and lets it run L samples into the next symbol.

#include <vector>

#include "lib/lib_ofdm_symbol_data_generator.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_ofdm_modulator_t {
 public:
  // Forwarded to the symbol generator; a symbol number or oversampling ratio of 0 is refused.
  bool set_fft_length(uint32 fft_length);
  bool set_symbol_number(uint32 symbol_number);
  bool set_oversampling_ratio(uint32 oversampling_ratio);
  bool set_cyclic_prefix(const lib_ofdm_cyclic_config_t& config);
  bool set_cyclic_suffix(const lib_ofdm_cyclic_config_t& config);

  // Idle samples after the last symbol, counted before oversampling.
  bool set_idle_length(uint32 idle_length);
  // Edge length as a fraction of the oversampled FFT length, clamped to [0, 0.5]; NaN gives 0.
  bool set_window_ratio(fp64 window_ratio);
  bool set_window_method(uint32 window_method);

  uint32 get_idle_length() const { return _idle_length; }
  fp64 get_window_ratio() const { return _window_ratio; }
  uint32 get_window_method() const { return _window_method; }
  const lib_ofdm_symbol_data_generator_t& get_symbol_generator() const { return _symbol_generator; }
  // The edges of the last modulation, L samples each (empty for L = 0).
  const lib_iq_data_arr_t& get_rising_window() const { return _rising_window; }
  const lib_iq_data_arr_t& get_falling_window() const { return _falling_window; }

  // idle_length * oversampling_ratio plus the lengths of all symbols.
  uint32 get_frame_length() const;
  // L, in oversampled samples.
  uint32 get_window_length() const;

  // `rows` holds symbol_number rows of equal length, 1 to fft_length values each; anything else is
  // reported and leaves all three outputs empty. `frame` gets get_frame_length() samples; the
  // parts of the edge-extended symbols before sample 0 end up in `head` (its last sample just
  // before the frame) and those past the end in `tail` (its first sample just after the frame).
  // A frame of one symbol, no idle time, method 0 and L >= 2 sticks out on both sides, which
  // raises std::out_of_range.
  bool deal_ofdm_modulation(const std::vector<lib_iq_data_arr_t>& rows, lib_iq_data_arr_t& frame,
                            lib_iq_data_arr_t& head, lib_iq_data_arr_t& tail);
  // deal_ofdm_modulation, then head is added onto the end of the frame and tail onto its start,
  // each only when it fits.
  bool deal_ofdm_frame(const std::vector<lib_iq_data_arr_t>& rows, lib_iq_data_arr_t& frame);

 private:
  bool _check_rows(const std::vector<lib_iq_data_arr_t>& rows) const;
  void _build_windows();
  // Extends and windows the edges of one symbol; returns its placement offset (0 or -ceil(L/2)).
  long _add_symbol_edges(uint32 symbol_index, lib_iq_data_arr_t& symbol) const;
  static void _place_symbol(lib_iq_data_arr_t symbol, long position, lib_iq_data_arr_t& frame,
                            lib_iq_data_arr_t& head, lib_iq_data_arr_t& tail);

  uint32 _idle_length = 0;
  fp64 _window_ratio_min = 0.0;
  fp64 _window_ratio_max = 0.5;
  fp64 _window_ratio = 0.0;
  uint32 _window_method = 0;
  lib_iq_data_arr_t _rising_window;
  lib_iq_data_arr_t _falling_window;
  lib_ofdm_symbol_data_generator_t _symbol_generator;
};

}  // namespace nal::common_lib

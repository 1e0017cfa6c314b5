#pragma once
// A bank of tones made by one inverse FFT: each tone sets one bin (and, double-sided, the mirror
// bin L-1-b) to a unit phasor of a coarse random phase, and the transform gives one period of
// the bank, L samples long, peak-normalised so that the largest |I| or |Q| is 1.
//
// Tones are equally spaced from start to stop, or a custom list. Every setter ends with the
// bounds step, which keeps the settings consistent:
//   sample rate   clamped to 1000..1e10 Hz;
//   stop          not below 0; if 2.4 * stop exceeds the rate, stop := rate / 1.2 (so a stop
//                 value may stay above half the rate: 1000 Hz with stop 500 gives 833.33...);
//   start         not below 0 and not above stop;
//   tone number   clamped to 1..10000.
// The step also turns NaN into the lower bound. Custom frequencies are checked when set.
//
// Phases come from the C library's rand(), seeded with srand(time(0)) at each generation, as
// whole radians 0..6: two generations differ in phase, never in tone bins or magnitudes, and two
// generations running at once on different threads disturb each other's phases. A plain value
// otherwise; one thread uses an object at a time.

#include "lib/lib_multitone_config.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_multitone_t {
 public:
  static constexpr fp64 min_sample_rate = 1000.0;
  static constexpr fp64 max_sample_rate = 1e10;
  static constexpr uint32 max_tone_number = 10000;
  // Transform lengths tried, from the shortest (see get_transform_length).
  static constexpr uint32 min_transform_length = 8192;
  static constexpr uint32 max_transform_length = 65536;

  bool set_sample_rate(fp64 rate);
  fp64 get_sample_rate() const { return _config.sample_rate; }
  // A start above stop raises stop to it before the bounds step.
  bool set_start_frequency(fp64 frequency);
  fp64 get_start_frequency() const { return _config.start_frequency; }
  // A stop below start lowers start to it before the bounds step.
  bool set_stop_frequency(fp64 frequency);
  fp64 get_stop_frequency() const { return _config.stop_frequency; }
  bool set_tone_number(uint32 number);
  uint32 get_tone_number() const { return _config.tone_number; }
  bool set_single_side(bool enable);
  bool get_single_side() const { return _config.single_side; }
  bool set_custom_frequency_enable(bool enable);
  bool get_custom_frequency_enable() const { return _config.custom_frequency_enable; }
  // Stored only with custom frequency enable on and a list that passes
  // _check_custom_frequencies; otherwise reported, false, and the old list stays.
  bool set_custom_frequencies(const lib_fp_data_arr_t& frequencies);
  const lib_fp_data_arr_t& get_custom_frequencies() const { return _config.custom_frequencies; }

  // Stores every scalar field, then runs the bounds step. With custom frequency enable on, the
  // list is checked and stored as by set_custom_frequencies and the check is the result;
  // otherwise the list is not taken and the result is true.
  bool set_multitone_config(const lib_multitone_config_t& config);
  const lib_multitone_config_t& get_multitone_config() const { return _config; }

  // The transform length, which is the sample count of the output. With the grid spacing s =
  // (largest - smallest custom frequency) / (2 count) for two or more custom frequencies, else
  // (stop - start) / (2 tone number), and limit = min(30000, 0.1 s): the first of 8192, 16384,
  // 32768 whose bin width rate / L is not above limit, else 65536.
  uint32 get_transform_length() const;

  // Replaces the samples by one period of the current bank. The tone frequency f lands in bin
  // round(f / (rate / L)); tones in one bin overwrite each other. A tone whose bin falls outside
  // the transform (a custom list set before the rate was lowered) is skipped with a report.
  void generate();
  const lib_iq_data_arr_t& get_samples() const { return _samples; }

  // False, with a report, for an empty list, more than 10000 entries, a value not above 0, or a
  // largest value whose 1.2 times exceeds the current sample rate.
  bool _check_custom_frequencies(const lib_fp_data_arr_t& frequencies) const;

 private:
  // Stores one setting and runs the bounds step; true.
  template <typename value_t>
  bool _store(value_t& field, const value_t& value) {
    field = value;
    _apply_bounds();
    return true;
  }
  void _apply_bounds();
  // The custom list when enabled; one tone midway for a tone number below 2; else the bank.
  void _get_tone_list(lib_fp_data_arr_t& tones) const;
  fp64 _get_grid_spacing() const;

  lib_multitone_config_t _config;
  lib_iq_data_arr_t _samples;
};

}  // namespace nal::common_lib

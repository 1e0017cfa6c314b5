#pragma once
// Crest factor reduction by peak cancellation. Each pass cuts the samples into blocks, places one
// impulse at the largest peak of each block that exceeds the block's threshold (its rms without
// idle runs, raised by the target ratio), the impulse carrying the peak's phase and the cancel
// percent of the excess, shapes the impulses with the cancellation pulse (cyclically, since the
// waveform repeats in the instrument) and subtracts them. Passes stop at the iteration number or
// once the peak-to-rms ratio (idle runs left out) is below the target.
//
// The cancellation pulse is the mask's band-limited pulse: the mask levels, in dB, sampled on
// next_power_of_2(4 * points) frequencies and turned into amplitudes, inverse transformed, with
// the impulse centred under a Blackman window one tap longer, then scaled to a peak of 1 so that
// an impulse removes exactly its own amount at the peak. A plain value; one thread at a time.

#include "lib/lib_crest_factor_reduce_setting.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_crest_factor_reduce_t {
 public:
  // Copies the setting and normalises its mask with `sample_rate`; the result of that.
  bool set_setting(const lib_crest_factor_reduce_setting_t& setting, fp64 sample_rate);
  const lib_crest_factor_reduce_setting_t& get_setting() const { return _setting; }

  // In place. True and nothing done when disabled; false, reported, when no pulse can be made
  // from the mask.
  bool deal_crest_factor_reduce(lib_iq_data_arr_t& samples);

  bool is_filter_ready() const { return _filter_ready; }
  // The cancellation pulse of the last run, centre tap 1.
  const lib_iq_data_arr_t& get_filter_data() const { return _filter_data; }

  // The pulse of `mask` (normalised frequencies, levels in dB); false for an empty mask.
  static bool _generate_cancellation_pulse(const lib_iq_data_arr_t& mask, lib_iq_data_arr_t& taps);

 private:
  void _deal_one_pass(lib_iq_data_arr_t& samples) const;

  lib_crest_factor_reduce_setting_t _setting;
  bool _filter_ready = false;
  lib_iq_data_arr_t _filter_data;
};

}  // namespace nal::common_lib

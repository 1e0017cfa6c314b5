#pragma once
// Settings of the crest factor reduction: the wanted peak-to-rms ratio, the number of passes,
// the share of each excess removed, the block length, and the filter mask that shapes the
// cancellation pulses. Mask points are (frequency, level in dB) as complex values; the frequency
// is in Hz until deal_filter_mask_normalize turns it into a fraction of the Nyquist frequency.
// Setters clamp into the bounds below (a NaN keeps the old value). A plain copyable value.

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_crest_factor_reduce_setting_t {
 public:
  static constexpr fp64 target_min_db = 3.0;
  static constexpr fp64 target_max_db = 100.0;
  static constexpr fp64 default_target_db = 8.0;
  static constexpr uint32 iteration_min = 1;
  static constexpr uint32 iteration_max = 20;
  static constexpr uint32 default_iteration_number = 10;
  static constexpr fp64 cancel_percent_min = 0.0;
  static constexpr fp64 cancel_percent_max = 100.0;
  static constexpr fp64 default_cancel_percent = 100.0;
  static constexpr uint32 block_size_min = 20;
  static constexpr uint32 block_size_max = 2147483647;
  static constexpr uint32 default_block_size = 1000;

  // The mask of init_filter_mask_data(8e7, 2e7).
  lib_crest_factor_reduce_setting_t();

  // Four points: (-v, -100), (-b/2, 0), (b/2, 0), (v, -100) with v = max(stop, 0.625 bandwidth),
  // in Hz. False, reported, and the mask unchanged for a bandwidth below 1e-12 or a stop
  // frequency inside the pass band (more than 1e-12 below half the bandwidth).
  bool init_filter_mask_data(fp64 stop_frequency, fp64 bandwidth);
  // init_filter_mask_data; on success also disables the reduction and puts target, iteration
  // number, cancel percent and block size back to their defaults.
  bool update_filter_mask(fp64 stop_frequency, fp64 bandwidth);
  // Divides the mask frequencies by the Nyquist frequency, trunc(0.5 rate). False, reported, and
  // the mask unchanged when any result would lie outside [-1, 1].
  bool deal_filter_mask_normalize(fp64 sample_rate);

  void set_enable(bool enable) { _enable = enable; }
  bool get_enable() const { return _enable; }
  void set_target_ratio(fp64 decibels);
  fp64 get_target_ratio() const { return _target_ratio; }
  // Passes at most.
  void set_iteration_number(uint32 number);
  uint32 get_iteration_number() const { return _iteration_number; }
  // Share of each block's excess over the threshold removed per pass.
  void set_cancel_percent(fp64 percent);
  fp64 get_cancel_percent() const { return _cancel_percent; }
  // Samples per block; each block gets one cancellation pulse per pass at most.
  void set_block_size(uint32 size);
  uint32 get_block_size() const { return _block_size; }
  const lib_iq_data_arr_t& get_filter_mask() const { return _filter_mask; }

 private:
  bool _enable = false;
  fp64 _target_ratio = default_target_db;
  uint32 _iteration_number = default_iteration_number;
  fp64 _cancel_percent = default_cancel_percent;
  uint32 _block_size = default_block_size;
  lib_iq_data_arr_t _filter_mask;
};

}  // namespace nal::common_lib

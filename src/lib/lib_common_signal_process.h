#pragma once
// Stateless helpers on sample arrays: silence detection, idle removal, padding and the burst
// statistics that ignore idle gaps. Safe on any thread.

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_common_signal_process_t {
 public:
  // False when the block [start, start + length) does not fit the array. True for an empty
  // block or when every value of the block has magnitude not above the tolerance.
  static bool is_zero_block(const lib_fp_data_arr_t& values, uint32 start, uint32 length);
  static bool is_zero_block(const lib_iq_data_arr_t& samples, uint32 start, uint32 length);

  // Copies `samples` to `out` without idle runs: a run of three or more samples of magnitude not
  // above the tolerance is dropped whole, shorter runs stay.
  static void remove_idle_samples(const lib_iq_data_arr_t& samples, lib_iq_data_arr_t& out);
  static void remove_idle_samples(const lib_fp_data_arr_t& values, lib_fp_data_arr_t& out);

  // Appends zero samples up to `length`; never shortens.
  static void pad_array_zero(lib_iq_data_arr_t& samples, uint32 length);
  // Cyclic extension by whole copies until the array is at least `length` long; returns the new
  // length (a multiple of the original, not cut to `length`). An empty array becomes `length`
  // zeros, with a report.
  static uint32 pad_array_crc(lib_iq_data_arr_t& samples, uint32 length);

  // Peak to rms in dB of the samples without their idle runs; 0.0 when nothing is left.
  static fp64 get_burst_peak_to_rms_ratio(const lib_iq_data_arr_t& samples);
  // Rms of the samples without their idle runs, times 10^(decibels / 20); 1.0 when nothing is left.
  static fp64 get_burst_rms_scale(const lib_iq_data_arr_t& samples, fp64 decibels);
};

}  // namespace nal::common_lib

#pragma once
// Stateless numeric helpers of the signal library: powers of two, phase wrapping, decibels,
// complex arithmetic and array statistics. All members are static and safe on any thread.

#include "lib/lib_types.h"

namespace nal::common_lib {

class plib_t {
 public:
  // True when log2(x) is within the library tolerance of an integer (floating-point test).
  static bool is_power_of_2(uint32 x);
  // True when sqrt(x) is within the library tolerance of an integer.
  static bool is_square_number(uint32 x);
  // Doubles `start` until it is not below `target`. A start of 0 with a target above 0 is taken
  // as 1, and doubling stops at 2^31, so that no input can hang the caller.
  static uint32 next_power_of_2(uint32 target, uint32 start);
  // The power of two (2^0..2^20) nearest to `value`, ties to the smaller one; `lower_bound` when
  // `value` does not exceed it.
  static uint32 nearest_power_of_2(uint32 value, uint32 lower_bound);

  // Into [-pi, pi).
  static fp64 wrap_phase(fp64 radians);
  // Into [-180, 180).
  static fp64 wrap_phase_degree(fp64 degrees);
  // Wraps first, then converts.
  static fp64 degree_to_radian(fp64 degrees);

  static fp64 amplitude_to_db(fp64 value, fp64 floor);
  static fp64 db_to_amplitude(fp64 decibels);

  static fp64 get_complex_amplitude(const lib_iq_sample_t& sample);
  static lib_iq_sample_t get_complex_conjugate(const lib_iq_sample_t& sample);
  // atan2(Q, I), with the on-axis cases resolved through the tolerance.
  static fp64 get_complex_phase(const lib_iq_sample_t& sample);
  // Multiplies `sample` by (cos angle, sin angle).
  static void rotate_complex(fp64 angle, lib_iq_sample_t& sample);
  // The full complex product (a.I b.I - a.Q b.Q, a.I b.Q + a.Q b.I), without the library's
  // NaN/infinity recovery that std::complex multiplication carries.
  static lib_iq_sample_t complex_multiply(const lib_iq_sample_t& a, const lib_iq_sample_t& b) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
  }

  // 0.0 and a report for an empty array.
  static fp64 get_complex_array_rms(const lib_iq_data_arr_t& samples);
  static fp64 get_data_max_amplitude(const lib_iq_data_arr_t& samples);
  // Peak to rms in dB; 0.0 for an empty or silent array.
  static fp64 get_peak_to_rms_ratio(const lib_iq_data_arr_t& samples);

  static void get_phase_arr(const lib_iq_data_arr_t& samples, lib_fp_data_arr_t& phases);
  static void get_amplitude_arr(const lib_iq_data_arr_t& samples, lib_fp_data_arr_t& amplitudes);
  // Levels in dB against the array's peak, floored at -200 dB, for display.
  static void get_relative_level_arr(const lib_iq_data_arr_t& samples, lib_fp_data_arr_t& levels);

  // Worker count for the library's parallel region, from omp_get_max_threads().
  static uint32 get_work_thread_number();
  // The same rule for a given number of available threads: below 3 gives 1, 3..10 gives n - 2,
  // above 10 gives 8.
  static uint32 get_work_thread_number(uint32 available_threads);

  // Multiplies sample i by exp(j (2 pi i frequency + phase)); frequency in cycles per sample.
  static void apply_phase_ramp(lib_iq_data_arr_t& samples, fp64 frequency, fp64 phase);
};

}  // namespace nal::common_lib

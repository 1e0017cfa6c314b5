#pragma once
// Amplitude statistics of a sample array for the views: the CCDF (the fraction of samples whose
// magnitude lies at least x dB above the rms level), the levels exceeded with probabilities
// 10% down to 0.0001%, and the Gaussian reference curve. Levels are in dB of amplitude against the
// rms, 20 log10(|s| / rms), which equals the power ratio in dB. All members are static and safe on
// any thread.

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_ccdf_calculator_t {
 public:
  static constexpr uint32 default_point_count = 2001;
  static constexpr fp64 default_range_db = 20.0;
  static constexpr uint32 statistics_level_count = 6;

  // `hist` becomes bin_count + 2 counters: [0] below lower_db (by more than 1e-9 dB of rounding),
  // [1..bin_count] the bins of (upper_db - lower_db) / bin_count dB each, [bin_count + 1] at or
  // above upper_db. A silent array (rms below the library tolerance) or one with a non-finite
  // sample has no rms to compare with: every sample is counted in [1], with a report.
  static void _deal_amplitude_histogram_analysis(uint32 bin_count, fp64 lower_db, fp64 upper_db,
                                                 const lib_iq_data_arr_t& samples,
                                                 std::vector<uint32>& hist);

  // `ccdf` gets point_count values, point j at j * range_db / (point_count - 1) dB above the rms
  // level; samples below the rms level never count, so ccdf[0] is the fraction at or above it.
  // False, with a report, for a range not above 0 or no points.
  static bool calculate_ccdf_data(const lib_iq_data_arr_t& samples, uint32 point_count,
                                  fp64 range_db, lib_fp_data_arr_t& ccdf);
  // 2001 points over 20 dB: 0.01 dB apart.
  static bool calculate_ccdf_data(const lib_iq_data_arr_t& samples, lib_fp_data_arr_t& ccdf);

  // `statistics` gets seven values: the levels in dB exceeded with probability 10%, 1%, 0.1%,
  // 0.01%, 0.001% and 0.0001%, read from `ccdf` (made over range_db), range_db for the levels the
  // curve never reaches, then the peak-to-rms ratio of `samples` rounded up to 0.01 dB.
  static void get_ccdf_statistics(fp64 range_db, const lib_fp_data_arr_t& ccdf,
                                  const lib_iq_data_arr_t& samples, lib_fp_data_arr_t& statistics);
  static void get_ccdf_statistics(const lib_fp_data_arr_t& ccdf, const lib_iq_data_arr_t& samples,
                                  lib_fp_data_arr_t& statistics);

  // The reference: point i at x = 10^((i range_db / (point_count - 1)) / 20) is erfc(x / sqrt 2),
  // the probability that a zero-mean unit-variance real Gaussian exceeds x in magnitude.
  static void get_gaussian_ccdf(uint32 point_count, fp64 range_db, lib_fp_data_arr_t& ccdf);
};

}  // namespace nal::common_lib

#include "lib/lib_ccdf_calculator.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {
namespace {

constexpr fp64 rounding_db = 1e-9;

}  // namespace

void lib_ccdf_calculator_t::_deal_amplitude_histogram_analysis(uint32 bin_count, fp64 lower_db,
                                                               fp64 upper_db,
                                                               const lib_iq_data_arr_t& samples,
                                                               std::vector<uint32>& hist) {
  hist.assign(static_cast<std::size_t>(bin_count) + 2, 0);
  lib_fp_data_arr_t amplitudes;
  plib_t::get_amplitude_arr(samples, amplitudes);
  fp64 sum_of_squares = 0.0;
  for (const fp64 a : amplitudes) {
    sum_of_squares += a * a;
  }
  const fp64 rms =
      amplitudes.empty() ? 0.0 : std::sqrt(sum_of_squares / static_cast<fp64>(amplitudes.size()));
  if (!(rms >= lib_tolerance) || !std::isfinite(rms)) {
    hist[1] = static_cast<uint32>(samples.size());
    lib_report(
        "lib_ccdf_calculator_t::_deal_amplitude_histogram_analysis Report : Unexpected Input "
        "Data!");
    return;
  }
  const fp64 upper = std::pow(10.0, upper_db / 20.0) * rms;
  const fp64 bin_db = (upper_db - lower_db) / static_cast<fp64>(bin_count);
  for (const fp64 a : amplitudes) {
    const fp64 db = 20.0 * std::log10(std::max(a / rms, lib_tolerance));
    // A constant envelope sits at its rms give or take the rounding of the mean: it belongs in
    // the lowest bin, not below it.
    if (db < lower_db - rounding_db) {
      ++hist[0];
    } else if (a >= upper) {
      ++hist[bin_count + 1];
    } else {
      const fp64 index = 1.0 + std::floor(std::max(db - lower_db, 0.0) / bin_db);
      // Rounding at the top edge may land one bin off; the sample is still counted, in the
      // nearest bin, and said so.
      if (!(index <= static_cast<fp64>(bin_count))) {
        lib_report("lib_ccdf_calculator_t::_deal_amplitude_histogram_analysis Report : Bin index " +
                   std::to_string(index) + " of " + std::to_string(bin_count) + " bins");
      }
      ++hist[static_cast<std::size_t>(
          std::clamp(std::isfinite(index) ? index : 1.0, 1.0, static_cast<fp64>(bin_count + 1)))];
    }
  }
}

bool lib_ccdf_calculator_t::calculate_ccdf_data(const lib_iq_data_arr_t& samples,
                                                uint32 point_count, fp64 range_db,
                                                lib_fp_data_arr_t& ccdf) {
  if (!(range_db > 0.0) || point_count < 1) {
    lib_report("lib_ccdf_calculator_t::calculate_ccdf_data Report : Error Amplitude Ratio Range!");
    return false;
  }
  std::vector<uint32> hist;
  _deal_amplitude_histogram_analysis(point_count - 1, 0.0, range_db, samples, hist);
  ccdf.assign(point_count, 0.0);
  if (samples.empty()) {
    return true;
  }
  uint64 at_or_above = 0;
  for (uint32 j = point_count; j-- > 0;) {
    at_or_above += hist[j + 1];
    ccdf[j] = static_cast<fp64>(at_or_above) / static_cast<fp64>(samples.size());
  }
  return true;
}

bool lib_ccdf_calculator_t::calculate_ccdf_data(const lib_iq_data_arr_t& samples,
                                                lib_fp_data_arr_t& ccdf) {
  return calculate_ccdf_data(samples, default_point_count, default_range_db, ccdf);
}

void lib_ccdf_calculator_t::get_ccdf_statistics(fp64 range_db, const lib_fp_data_arr_t& ccdf,
                                                const lib_iq_data_arr_t& samples,
                                                lib_fp_data_arr_t& statistics) {
  statistics.clear();
  const fp64 step = ccdf.size() > 1 ? range_db / static_cast<fp64>(ccdf.size() - 1) : 0.0;
  fp64 probability = 0.1;
  for (std::size_t i = 0; i < ccdf.size() && statistics.size() < statistics_level_count; ++i) {
    if (ccdf[i] <= probability) {
      // The last point still above the probability: the level is exceeded at least that often.
      statistics.push_back((static_cast<fp64>(i) - 1.0) * step);
      probability *= 0.1;
    }
  }
  statistics.resize(statistics_level_count, range_db);
  statistics.push_back(std::ceil(plib_t::get_peak_to_rms_ratio(samples) * 100.0) / 100.0);
}

void lib_ccdf_calculator_t::get_ccdf_statistics(const lib_fp_data_arr_t& ccdf,
                                                const lib_iq_data_arr_t& samples,
                                                lib_fp_data_arr_t& statistics) {
  get_ccdf_statistics(default_range_db, ccdf, samples, statistics);
}

void lib_ccdf_calculator_t::get_gaussian_ccdf(uint32 point_count, fp64 range_db,
                                              lib_fp_data_arr_t& ccdf) {
  ccdf.clear();
  const fp64 step = point_count > 1 ? range_db / static_cast<fp64>(point_count - 1) : 0.0;
  for (uint32 i = 0; i < point_count; ++i) {
    const fp64 x = std::pow(10.0, (static_cast<fp64>(i) * step) / 20.0);
    ccdf.push_back(std::erfc(x / 1.4142135623730951));
  }
}

}  // namespace nal::common_lib

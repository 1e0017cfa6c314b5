// Helpers the packet engines build on: silence tests, burst statistics that leave idle gaps out,
// the phase ramp of a frequency offset, and level in decibels. Expected values are worked out by
// hand or from closed forms.

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <functional>
#include <string>

#include "lib/lib_common_signal_process.h"
#include "lib/plib.h"

namespace {

using nal::lib_fp_data_arr_t;
using nal::lib_iq_data_arr_t;
using nal::lib_iq_sample_t;
using nal::common_lib::lib_common_signal_process_t;
using nal::common_lib::plib_t;

constexpr double pi = 3.14159265358979323846;
constexpr double tolerance = 1e-12;
const double just_above_tolerance = std::nextafter(tolerance, 1.0);

std::string printed(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

TEST(ZeroBlock, RangeAndToleranceOfTheRealForm) {
  const lib_fp_data_arr_t values{1.0, tolerance, -tolerance, 0.0, just_above_tolerance, 0.0};
  EXPECT_TRUE(lib_common_signal_process_t::is_zero_block(values, 1, 3));  // the limit is zero
  EXPECT_FALSE(lib_common_signal_process_t::is_zero_block(values, 1, 4));
  EXPECT_FALSE(lib_common_signal_process_t::is_zero_block(values, 0, 2));
  EXPECT_TRUE(lib_common_signal_process_t::is_zero_block(values, 5, 1));  // the last value
  // A block that runs past the end is not a zero block, however quiet its part inside.
  EXPECT_FALSE(lib_common_signal_process_t::is_zero_block(values, 5, 2));
  EXPECT_FALSE(lib_common_signal_process_t::is_zero_block(values, 9, 1));
  // An empty block inside the array is trivially zero; one past the end is not.
  EXPECT_TRUE(lib_common_signal_process_t::is_zero_block(values, 4, 0));
  EXPECT_TRUE(lib_common_signal_process_t::is_zero_block(values, 6, 0));
  EXPECT_FALSE(lib_common_signal_process_t::is_zero_block(values, 7, 0));
  EXPECT_FALSE(lib_common_signal_process_t::is_zero_block(lib_fp_data_arr_t{}, 0, 1));
}

TEST(ZeroBlock, ComplexFormTestsTheMagnitude) {
  // Each component is below the tolerance, the magnitude (1.13e-12) is not.
  const lib_iq_data_arr_t samples{{0.8e-12, 0.8e-12}, {tolerance, 0.0}, {0.0, -tolerance},
                                  {0.0, 0.0},         {0.0, 1.0},       {0.0, 0.0}};
  EXPECT_FALSE(lib_common_signal_process_t::is_zero_block(samples, 0, 1));
  EXPECT_TRUE(lib_common_signal_process_t::is_zero_block(samples, 1, 3));
  EXPECT_FALSE(lib_common_signal_process_t::is_zero_block(samples, 3, 2));
  EXPECT_TRUE(lib_common_signal_process_t::is_zero_block(samples, 5, 1));
  EXPECT_FALSE(lib_common_signal_process_t::is_zero_block(samples, 5, 2));
  EXPECT_TRUE(lib_common_signal_process_t::is_zero_block(samples, 2, 0));
  EXPECT_FALSE(lib_common_signal_process_t::is_zero_block(lib_iq_data_arr_t{}, 0, 1));
}

// Two bursts of the same samples, one with idle gaps: a gap of three or more zeros is left out
// of the statistics, one of two zeros counts.
const lib_iq_data_arr_t gapped_burst{{3, 4}, {0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, -5},
                                     {0, 0}, {0, 0}, {5, 0}, {0, 0}, {0, 0}, {0, 0}};

TEST(BurstStatistics, RmsScaleLeavesIdleGapsOut) {
  // Kept: (3,4), (0,-5), 0, 0, (5,0): power 75 over 5 samples.
  const double burst_rms = std::sqrt(15.0);
  EXPECT_NEAR(lib_common_signal_process_t::get_burst_rms_scale(gapped_burst, 0.0), burst_rms,
              tolerance);
  EXPECT_NEAR(lib_common_signal_process_t::get_burst_rms_scale(gapped_burst, 20.0),
              10.0 * burst_rms, 1e-11);
  EXPECT_NEAR(lib_common_signal_process_t::get_burst_rms_scale(gapped_burst, -6.0),
              burst_rms * std::pow(10.0, -0.3), tolerance);
  // Values at the tolerance are idle too; just above it they are signal.
  const lib_iq_data_arr_t faint{{2, 0}, {tolerance, 0}, {0, tolerance}, {tolerance, 0}};
  EXPECT_DOUBLE_EQ(lib_common_signal_process_t::get_burst_rms_scale(faint, 0.0), 2.0);
  const lib_iq_data_arr_t audible{{2, 0}, {tolerance, 0}, {0, just_above_tolerance}, {0, 0}};
  EXPECT_DOUBLE_EQ(lib_common_signal_process_t::get_burst_rms_scale(audible, 0.0), 1.0);
}

TEST(BurstStatistics, NothingLeftGivesNeutralValuesSilently) {
  const lib_iq_data_arr_t silence(7, lib_iq_sample_t(0.0, 0.0));
  for (const lib_iq_data_arr_t& samples : {lib_iq_data_arr_t{}, silence}) {
    const std::string output = printed([&] {
      EXPECT_EQ(lib_common_signal_process_t::get_burst_rms_scale(samples, 12.0), 1.0);
      EXPECT_EQ(lib_common_signal_process_t::get_burst_peak_to_rms_ratio(samples), 0.0);
    });
    EXPECT_EQ(output, "") << samples.size() << " samples";
  }
  // Two zeros are not an idle run: they stay and have an rms of zero.
  EXPECT_EQ(lib_common_signal_process_t::get_burst_rms_scale({{0, 0}, {0, 0}}, 0.0), 0.0);
}

TEST(BurstStatistics, PeakToRmsOfTheBurstAlone) {
  // Peak 5 over rms sqrt(15): 10 log10(25 / 15).
  EXPECT_NEAR(lib_common_signal_process_t::get_burst_peak_to_rms_ratio(gapped_burst),
              10.0 * std::log10(5.0 / 3.0), tolerance);
  // A constant envelope with idle gaps between its bursts: 0 dB, where the whole array would
  // show 10 log10(24 / 16).
  lib_iq_data_arr_t bursts;
  for (int k = 0; k < 24; ++k) {
    bursts.push_back(k % 12 < 8 ? std::polar(0.5, 0.3 * k) : lib_iq_sample_t(0.0, 0.0));
  }
  EXPECT_NEAR(lib_common_signal_process_t::get_burst_peak_to_rms_ratio(bursts), 0.0, 1e-12);
  EXPECT_NEAR(plib_t::get_peak_to_rms_ratio(bursts), 10.0 * std::log10(1.5), 1e-12);
  // A real cosine over whole periods: sqrt(2), 3.0103 dB. Its zero crossings are single
  // samples and stay in.
  lib_iq_data_arr_t cosine;
  for (int k = 0; k < 64; ++k) {
    cosine.emplace_back(std::cos(2.0 * pi * k / 16.0), 0.0);
  }
  EXPECT_NEAR(lib_common_signal_process_t::get_burst_peak_to_rms_ratio(cosine),
              10.0 * std::log10(2.0), 1e-12);
}

TEST(PhaseRamp, RotatesEachSampleByItsOwnAngle) {
  // A quarter cycle per sample from a quarter-cycle start: multiplied by j, -1, -j, 1, j.
  lib_iq_data_arr_t samples(5, lib_iq_sample_t(1.0, 2.0));
  plib_t::apply_phase_ramp(samples, 0.25, pi / 2.0);
  const lib_iq_data_arr_t expected{{-2, 1}, {-1, -2}, {2, -1}, {1, 2}, {-2, 1}};
  for (std::size_t i = 0; i < samples.size(); ++i) {
    EXPECT_NEAR(std::abs(samples[i] - expected[i]), 0.0, 1e-14) << i;
  }
}

TEST(PhaseRamp, MatchesTheComplexExponentialAndUndoesItself) {
  const double frequency = -0.0123;  // cycles per sample
  const double phase = 0.7;
  lib_iq_data_arr_t ones(1000, lib_iq_sample_t(1.0, 0.0));
  plib_t::apply_phase_ramp(ones, frequency, phase);
  for (std::size_t i = 0; i < ones.size(); ++i) {
    ASSERT_NEAR(std::abs(ones[i] - std::polar(1.0, 2.0 * pi * frequency * i + phase)), 0.0, 1e-12)
        << i;
  }

  lib_iq_data_arr_t samples;
  for (int i = 0; i < 257; ++i) {
    samples.emplace_back(std::cos(0.37 * i), std::sin(1.1 * i) - 0.5);
  }
  lib_iq_data_arr_t shifted = samples;
  plib_t::apply_phase_ramp(shifted, frequency, phase);
  plib_t::apply_phase_ramp(shifted, -frequency, -phase);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    ASSERT_NEAR(std::abs(shifted[i] - samples[i]), 0.0, 1e-12) << i;
  }

  lib_iq_data_arr_t empty;
  plib_t::apply_phase_ramp(empty, 0.1, 0.2);
  EXPECT_TRUE(empty.empty());
}

TEST(Decibels, AmplitudeToDbWithItsFloor) {
  EXPECT_DOUBLE_EQ(plib_t::amplitude_to_db(10.0, 1e-10), 20.0);
  EXPECT_DOUBLE_EQ(plib_t::amplitude_to_db(1.0, 1e-10), 0.0);
  EXPECT_DOUBLE_EQ(plib_t::amplitude_to_db(0.001, 1e-10), -60.0);
  EXPECT_NEAR(plib_t::amplitude_to_db(2.0, 1e-10), 6.020599913279624, 1e-12);
  // Silence, and anything below the floor, reads as the floor: never -inf or NaN.
  EXPECT_DOUBLE_EQ(plib_t::amplitude_to_db(0.0, 1e-10), -200.0);
  EXPECT_DOUBLE_EQ(plib_t::amplitude_to_db(-3.0, 1e-10), -200.0);
  EXPECT_DOUBLE_EQ(plib_t::amplitude_to_db(1e-10, 1e-10), -200.0);
  EXPECT_DOUBLE_EQ(plib_t::amplitude_to_db(0.5, 1.0), 0.0);
  // The inverse.
  EXPECT_NEAR(plib_t::db_to_amplitude(plib_t::amplitude_to_db(0.3, 1e-10)), 0.3, 1e-15);
}

}  // namespace

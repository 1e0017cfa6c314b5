// Amplitude statistics: the CCDF of complex Gaussian noise against its closed form exp(-x) (x the
// power ratio), a hand-made array whose every level is known, and the reference curve against
// tabulated erfc values.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "lib/lib_ccdf_calculator.h"
#include "test_signals.h"

namespace {

using nal::lib_fp_data_arr_t;
using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_ccdf_calculator_t;

// Power of complex Gaussian noise is exponential: P(|s|^2 >= x rms^2) = exp(-x), and the level
// exceeded with probability p is 10 log10(-ln p) dB.
TEST(CcdfCalculator, GaussianNoiseFollowsTheExponentialLaw) {
  const lib_iq_data_arr_t noise = wavelume_test::random_samples(400000, 3);
  lib_fp_data_arr_t ccdf;
  ASSERT_TRUE(lib_ccdf_calculator_t::calculate_ccdf_data(noise, ccdf));
  ASSERT_EQ(ccdf.size(), 2001u);
  for (const int point : {0, 100, 300, 600, 800}) {
    const double expected = std::exp(-std::pow(10.0, point * 0.01 / 10.0));
    EXPECT_NEAR(ccdf[point], expected, 0.03 * expected) << point * 0.01 << " dB";
  }
  lib_fp_data_arr_t statistics;
  lib_ccdf_calculator_t::get_ccdf_statistics(ccdf, noise, statistics);
  ASSERT_EQ(statistics.size(), 7u);
  for (int k = 0; k < 3; ++k) {
    const double level_db = 10.0 * std::log10(-std::log(std::pow(10.0, -(k + 1))));
    EXPECT_NEAR(statistics[k], level_db, 0.05) << "probability 1e-" << k + 1;
  }
  for (int k = 1; k < 7; ++k) {
    EXPECT_LE(statistics[k - 1], statistics[k]);
  }
}

// Half the samples at 0, half at sqrt 2: rms 1, so half lie 3.0103 dB above it and none higher.
// The curve drops from 0.5 to 0 between 3.01 and 3.02 dB, and since one point serves one level,
// the six levels are 3.01 dB and the five points after it.
TEST(CcdfCalculator, TwoLevelArrayGivesAStepAndOneLevelPerPoint) {
  const double high = std::sqrt(2.0);
  const lib_iq_data_arr_t samples{0.0, {0.0, high}, 0.0, {-high, 0.0}};
  lib_fp_data_arr_t ccdf;
  ASSERT_TRUE(lib_ccdf_calculator_t::calculate_ccdf_data(samples, ccdf));
  EXPECT_DOUBLE_EQ(ccdf[0], 0.5);
  EXPECT_DOUBLE_EQ(ccdf[301], 0.5);
  EXPECT_DOUBLE_EQ(ccdf[302], 0.0);
  EXPECT_DOUBLE_EQ(ccdf[2000], 0.0);
  lib_fp_data_arr_t statistics;
  lib_ccdf_calculator_t::get_ccdf_statistics(ccdf, samples, statistics);
  const lib_fp_data_arr_t expected{3.01, 3.02, 3.03, 3.04, 3.05, 3.06, 3.02};
  ASSERT_EQ(statistics.size(), expected.size());
  for (std::size_t k = 0; k < expected.size(); ++k) {
    EXPECT_NEAR(statistics[k], expected[k], 1e-9) << k;
  }
}

TEST(CcdfCalculator, HistogramEdgesAndTheLevelsNeverReached) {
  // Squares 0.25 + 1 + 1 + 1.75: rms 1. Bins of 0.5 dB from 0 to 2 dB; sqrt(1.75) is 2.43 dB.
  const lib_iq_data_arr_t samples{0.5, 1.0, {0.0, -1.0}, std::sqrt(1.75)};
  std::vector<nal::uint32> hist;
  lib_ccdf_calculator_t::_deal_amplitude_histogram_analysis(4, 0.0, 2.0, samples, hist);
  EXPECT_EQ(hist, (std::vector<nal::uint32>{1, 2, 0, 0, 0, 1}));

  // A constant envelope lies at its rms, whatever the rounding of the mean: the curve starts at 1
  // and ends at once.
  lib_iq_data_arr_t tone(1000);
  for (std::size_t i = 0; i < tone.size(); ++i) {
    tone[i] = std::polar(2.0, 0.7 * static_cast<double>(i));
  }
  lib_fp_data_arr_t step;
  ASSERT_TRUE(lib_ccdf_calculator_t::calculate_ccdf_data(tone, step));
  EXPECT_EQ(step[0], 1.0);
  EXPECT_EQ(step[1], 0.0);

  // Over 1 dB the noise curve stays near exp(-1.26) = 0.28: no level is reached.
  const lib_iq_data_arr_t noise = wavelume_test::random_samples(10000, 5);
  lib_fp_data_arr_t ccdf;
  lib_fp_data_arr_t statistics;
  ASSERT_TRUE(lib_ccdf_calculator_t::calculate_ccdf_data(noise, 11, 1.0, ccdf));
  lib_ccdf_calculator_t::get_ccdf_statistics(1.0, ccdf, noise, statistics);
  ASSERT_EQ(statistics.size(), 7u);
  for (int k = 0; k < 6; ++k) {
    EXPECT_EQ(statistics[k], 1.0) << k;
  }
  EXPECT_GT(statistics[6], 9.0);
}

TEST(CcdfCalculator, BadInputIsReportedNotFatal) {
  lib_fp_data_arr_t ccdf;
  testing::internal::CaptureStdout();
  ASSERT_TRUE(lib_ccdf_calculator_t::calculate_ccdf_data(lib_iq_data_arr_t(10, 0.0), ccdf));
  // Every sample is counted at the rms level: the curve starts at 1.
  EXPECT_DOUBLE_EQ(ccdf[0], 1.0);
  EXPECT_DOUBLE_EQ(ccdf[1], 0.0);
  // A non-finite sample leaves no rms to compare with either.
  ASSERT_TRUE(lib_ccdf_calculator_t::calculate_ccdf_data({1.0, {NAN, 0.0}}, ccdf));
  EXPECT_FALSE(lib_ccdf_calculator_t::calculate_ccdf_data({1.0}, 0, 20.0, ccdf));
  EXPECT_FALSE(lib_ccdf_calculator_t::calculate_ccdf_data({1.0}, 10, 0.0, ccdf));
  const std::string silent =
      "lib_ccdf_calculator_t::_deal_amplitude_histogram_analysis Report : Unexpected Input Data!\n";
  const std::string range =
      "lib_ccdf_calculator_t::calculate_ccdf_data Report : Error Amplitude Ratio Range!\n";
  EXPECT_EQ(testing::internal::GetCapturedStdout(), silent + silent + range + range);
}

// erfc(1 / sqrt 2) and erfc(sqrt 2), the real Gaussian beyond one and two standard deviations.
TEST(CcdfCalculator, GaussianReferenceMatchesTabulatedErfc) {
  lib_fp_data_arr_t reference;
  lib_ccdf_calculator_t::get_gaussian_ccdf(2, 20.0 * std::log10(2.0), reference);
  ASSERT_EQ(reference.size(), 2u);
  EXPECT_NEAR(reference[0], 0.31731050786291415, 1e-15);
  EXPECT_NEAR(reference[1], 0.04550026389635842, 1e-15);
}

}  // namespace

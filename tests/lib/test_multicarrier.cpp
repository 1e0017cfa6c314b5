// Multicarrier sums against carriers built directly in the test, with std::polar for the shift
// and 10^(dB / 20) for the level.

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <string>

#include "lib/lib_multicarrier.h"
#include "test_signals.h"

namespace {

using nal::lib_fp_data_arr_t;
using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_multicarrier_t;

constexpr double pi = 3.14159265358979323846;

lib_multicarrier_t enabled(const lib_fp_data_arr_t& offsets, const lib_fp_data_arr_t& levels) {
  lib_multicarrier_t multicarrier;
  multicarrier.set_enable(true);
  multicarrier.set_carrier_offset_arr(offsets);
  multicarrier.set_carrier_level_arr(levels);
  return multicarrier;
}

TEST(Multicarrier, SumOfShiftedAttenuatedCopies) {
  const double rate = 1e6;
  const lib_iq_data_arr_t samples = wavelume_test::random_samples(500, 11);
  lib_iq_data_arr_t out;
  ASSERT_TRUE(enabled({0.0, 0.0}, {0.0}).deal_multicarrier(rate, samples, out));
  lib_iq_data_arr_t twice = samples;
  for (auto& s : twice) {
    s *= 2.0;
  }
  EXPECT_LT(wavelume_test::max_difference(out, twice), 1e-12);

  const lib_fp_data_arr_t offsets{-312.5e3, 125e3, 0.5e6};
  const lib_fp_data_arr_t levels{-6.0, 0.0, -20.0};
  ASSERT_TRUE(enabled(offsets, levels).deal_multicarrier(rate, samples, out));
  lib_iq_data_arr_t expected(samples.size(), 0.0);
  for (std::size_t k = 0; k < offsets.size(); ++k) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
      const double turns = std::fmod(offsets[k] / rate * static_cast<double>(i), 1.0);
      expected[i] +=
          samples[i] * std::pow(10.0, levels[k] / 20.0) * std::polar(1.0, 2 * pi * turns);
    }
  }
  EXPECT_LT(wavelume_test::max_difference(out, expected), 1e-9);

  lib_multicarrier_t disabled = enabled(offsets, levels);
  disabled.set_enable(false);
  ASSERT_TRUE(disabled.deal_multicarrier(rate, samples, out));
  EXPECT_EQ(out, samples);
}

// One carrier at 0 Hz: out / in is the start phase, a whole number of radians. A seed repeats
// the phases; another seed, over eight carriers, gives others.
TEST(Multicarrier, SeededRandomPhasesAreWholeRadiansAndRepeat) {
  const lib_iq_data_arr_t samples = wavelume_test::random_samples(64, 12);
  lib_multicarrier_t multicarrier = enabled({0.0}, {0.0});
  multicarrier.set_random_phase(true);
  multicarrier.set_seed(5);
  lib_iq_data_arr_t out;
  ASSERT_TRUE(multicarrier.deal_multicarrier(1e6, samples, out));
  const double phase = std::arg(out[0] / samples[0]);
  const double whole = std::round(phase < 0.0 ? phase + 2 * pi : phase);
  EXPECT_NEAR(std::fmod(phase + 2 * pi, 2 * pi), whole, 1e-9);
  EXPECT_LE(whole, 6.0);

  multicarrier.set_carrier_offset_arr(lib_fp_data_arr_t(8, 0.0));
  lib_iq_data_arr_t first;
  lib_iq_data_arr_t again;
  lib_iq_data_arr_t other;
  multicarrier.deal_multicarrier(1e6, samples, first);
  multicarrier.deal_multicarrier(1e6, samples, again);
  multicarrier.set_seed(6);
  multicarrier.deal_multicarrier(1e6, samples, other);
  EXPECT_EQ(first, again);
  EXPECT_GT(wavelume_test::max_difference(first, other), 1e-3);
}

TEST(Multicarrier, ArraysAreCutFittedAndReset) {
  lib_multicarrier_t multicarrier;
  EXPECT_FALSE(multicarrier.set_carrier_offset_arr({}));
  EXPECT_FALSE(multicarrier.set_carrier_level_arr({}));
  EXPECT_TRUE(multicarrier.set_carrier_offset_arr(lib_fp_data_arr_t(40, 1.0)));
  EXPECT_EQ(multicarrier.get_carrier_offset_arr().size(), 32u);
  EXPECT_EQ(multicarrier.get_carrier_level_arr(), lib_fp_data_arr_t(32, 0.0));
  multicarrier.set_carrier_offset_arr({1.0, 2.0});
  multicarrier.set_carrier_level_arr({3.0, -3.0});
  EXPECT_EQ(multicarrier.get_carrier_level_arr(), (lib_fp_data_arr_t{0.0, -3.0}));
  multicarrier.set_carrier_offset_arr({1.0, 2.0, 3.0, 4.0});
  EXPECT_EQ(multicarrier.get_carrier_level_arr(), (lib_fp_data_arr_t{0.0, -3.0, -3.0, -3.0}));
  multicarrier.set_carrier_level_arr({-1.0, -2.0, -4.0, -5.0, -6.0});
  EXPECT_EQ(multicarrier.get_carrier_level_arr(), (lib_fp_data_arr_t{-1.0, -2.0, -4.0, -5.0}));
  multicarrier.set_enable(true);
  multicarrier.set_seed(9);
  multicarrier.reset();
  EXPECT_FALSE(multicarrier.get_enable());
  EXPECT_EQ(multicarrier.get_seed(), 0u);
  EXPECT_EQ(multicarrier.get_carrier_offset_arr(), lib_fp_data_arr_t{0.0});
  EXPECT_EQ(multicarrier.get_carrier_level_arr(), lib_fp_data_arr_t{0.0});
}

TEST(Multicarrier, OffsetBeyondHalfTheRateGivesTheInput) {
  const lib_iq_data_arr_t samples = wavelume_test::random_samples(16, 13);
  lib_iq_data_arr_t out;
  testing::internal::CaptureStdout();
  EXPECT_FALSE(enabled({0.0, 500001.0}, {0.0}).deal_multicarrier(1e6, samples, out));
  EXPECT_FALSE(enabled({0.0}, {0.0}).deal_multicarrier(0.0, samples, out));
  const std::string line =
      "lib_multicarrier_t::deal_multicarrier Report : Carrier Freq Offset Out of Range!\n";
  EXPECT_EQ(testing::internal::GetCapturedStdout(), line + line);
  EXPECT_EQ(out, samples);
}

}  // namespace

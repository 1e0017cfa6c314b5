#include <gtest/gtest.h>

#include <cmath>

#include "lib/lib_filter.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_filter_t;
using wavelume_test::max_difference;
using wavelume_test::random_samples;

constexpr double pi = 3.14159265358979323846;

// Textbook pulses in symbol time t (unit symbol period), independent of the library's forms.
double textbook_raised_cosine(double t, double b) {
  if (std::abs(t) < 1e-15) {
    return 1.0;
  }
  if (std::abs(std::abs(2.0 * b * t) - 1.0) < 1e-12) {
    return pi / 4.0 * std::sin(pi * t) / (pi * t);
  }
  return std::sin(pi * t) / (pi * t) * std::cos(pi * b * t) / (1.0 - 4.0 * b * b * t * t);
}

double textbook_root_raised_cosine(double t, double b) {
  if (std::abs(t) < 1e-15) {
    return 1.0 - b + 4.0 * b / pi;
  }
  if (std::abs(std::abs(4.0 * b * t) - 1.0) < 1e-12) {
    return b / std::sqrt(2.0) *
           ((1.0 + 2.0 / pi) * std::sin(pi / (4.0 * b)) +
            (1.0 - 2.0 / pi) * std::cos(pi / (4.0 * b)));
  }
  return (std::sin(pi * t * (1.0 - b)) + 4.0 * b * t * std::cos(pi * t * (1.0 + b))) /
         (pi * t * (1.0 - 16.0 * b * b * t * t));
}

// Taps of `pulse` at the library's tap times, scaled to unit energy.
lib_iq_data_arr_t unit_energy_taps(nal::uint32 length, nal::uint32 ratio,
                                   double (*pulse)(double, double), double b) {
  const nal::uint32 span = length * ratio;
  lib_iq_data_arr_t taps(span + 1);
  double energy = 0.0;
  for (nal::uint32 n = 0; n <= span; ++n) {
    const double value = pulse((n - span / 2.0) / ratio, b);
    taps[n] = value;
    energy += value * value;
  }
  for (auto& tap : taps) {
    tap /= std::sqrt(energy);
  }
  return taps;
}

TEST(PulseFilter, RaisedCosineMatchesTextbookAndCrossesZeroAtSymbols) {
  for (const double b : {0.35, 1.0}) {
    lib_iq_data_arr_t taps;
    lib_filter_t::_raised_consine_filter(b, 16, 8, taps, true);
    ASSERT_EQ(taps.size(), 129u);
    EXPECT_LT(max_difference(taps, unit_energy_taps(16, 8, textbook_raised_cosine, b)), 1e-13)
        << "roll-off " << b;
    for (std::size_t n = 0; n < taps.size(); n += 8) {
      if (n != 64) {
        EXPECT_NEAR(std::abs(taps[n]), 0.0, 1e-16) << "roll-off " << b << ", tap " << n;
      }
      EXPECT_EQ(taps[n].imag(), 0.0);
    }
  }
}

TEST(PulseFilter, RootRaisedCosineMatchesTextbookIncludingSingularPoints) {
  // b = 0.25 puts the singular point on t = +-1, b = 1 on t = +-0.25 (a tap at ratio 8).
  for (const double b : {0.25, 1.0}) {
    lib_iq_data_arr_t taps;
    lib_filter_t::_root_cosine_filter(b, 32, 8, taps, true);
    EXPECT_LT(max_difference(taps, unit_energy_taps(32, 8, textbook_root_raised_cosine, b)), 1e-13)
        << "roll-off " << b;
  }
}

TEST(PulseFilter, GaussianHasUnitSumAndTheBandwidthTimeWidth) {
  const double bt = 0.5;
  lib_iq_data_arr_t taps;
  lib_filter_t::_gaussian_filter(bt, 4, 8, taps, true);
  ASSERT_EQ(taps.size(), 33u);
  double sum = 0.0;
  for (const auto& tap : taps) {
    sum += tap.real();
  }
  EXPECT_NEAR(sum, 1.0, 1e-14);
  const double sigma = std::sqrt(std::log(2.0)) / (2.0 * pi * bt);
  for (std::size_t n = 0; n < taps.size(); ++n) {
    const double t = (n - 16.0) / 8.0;
    EXPECT_NEAR(taps[n].real() / taps[16].real(), std::exp(-t * t / (2 * sigma * sigma)), 1e-14);
  }
}

TEST(PulseFilter, CyclicFilteringIsCircularConvolution) {
  lib_iq_data_arr_t taps;
  lib_filter_t::_root_cosine_filter(0.35, 8, 8, taps, true);  // 65 taps
  const std::size_t half = taps.size() / 2;
  for (const std::size_t period : {10u, 1000u}) {
    const lib_iq_data_arr_t x = random_samples(period, static_cast<unsigned>(period));
    lib_iq_data_arr_t y;
    ASSERT_TRUE(lib_filter_t::deal_filter(x, taps, y, true));
    lib_iq_data_arr_t expected(period);
    for (std::size_t i = 0; i < period; ++i) {
      for (std::size_t k = 0; k < taps.size(); ++k) {
        expected[i] += taps[k] * x[(i + half + period * taps.size() - k) % period];
      }
    }
    EXPECT_LT(max_difference(y, expected), 1e-12) << "period " << period;
  }
}

TEST(PulseFilter, DegenerateInputs) {
  // An odd span of taps is refused and leaves no taps.
  lib_iq_data_arr_t taps = {1.0};
  lib_filter_t filter;
  filter.set_filter_length(5);
  filter.set_oversampling_ratio(3);
  testing::internal::CaptureStdout();
  lib_filter_t::_root_cosine_filter(0.35, 5, 3, taps, true);
  EXPECT_TRUE(taps.empty());
  taps = {1.0};
  EXPECT_FALSE(filter._generate_filter(taps));
  EXPECT_TRUE(taps.empty());

  const lib_iq_data_arr_t x = random_samples(20, 95);
  lib_iq_data_arr_t y = x;
  EXPECT_FALSE(lib_filter_t::deal_filter(lib_iq_data_arr_t(), x, y, true));
  EXPECT_TRUE(y.empty());
  // One tap: the convolution copies its input, and the cyclic cut gives the samples back.
  EXPECT_TRUE(lib_filter_t::deal_filter(x, lib_iq_data_arr_t{1.0}, y, true));
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(y, x);

  lib_filter_t none;
  none.set_filter_type(nal::FILTER_NONE);
  EXPECT_TRUE(none.deal_filter(x, y, true));
  EXPECT_EQ(y, x);

  lib_filter_t shaped;
  lib_iq_data_arr_t in_place = x;
  EXPECT_TRUE(shaped.deal_filter(in_place, in_place, true));
  lib_iq_data_arr_t separate;
  EXPECT_TRUE(shaped.deal_filter(x, separate, true));
  EXPECT_EQ(in_place, separate);
}

}  // namespace
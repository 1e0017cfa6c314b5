#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "lib/lib_resample.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::lib_iq_sample_t;
using nal::uint32;
using nal::common_lib::lib_resample_t;
using wavelume_test::max_difference;
using wavelume_test::random_samples;

constexpr double pi = 3.14159265358979323846;

// The rate change as its steps read, filtering every sample at the interpolated rate.
lib_iq_data_arr_t literal_resampling(const lib_iq_data_arr_t& samples, uint32 l, uint32 m) {
  const std::size_t n = samples.size();
  const uint32 h = n < 21 ? static_cast<uint32>((n - 1) / 2) : 10;
  const auto trimmed = static_cast<std::ptrdiff_t>(2 * h * l);
  lib_iq_data_arr_t out;
  lib_resample_t::_extend_array_edge(samples, out, 2 * h);
  lib_resample_t::_deal_insert_zero(out, l);
  lib_resample_t::_deal_interpolate_filter(out, l, m, h);
  out.erase(out.end() - trimmed, out.end());
  out.erase(out.begin(), out.begin() + trimmed);
  for (auto& s : out) {
    s *= static_cast<double>(l);
  }
  lib_resample_t::_deal_decimation(out, m);
  return out;
}

TEST(Resample, PolyphaseFormEqualsTheLiteralSteps) {
  // u = 900 asks for 18001 taps: the design stops at 16384, an even length whose centre is half a
  // sample off, and on short arrays the taps wrap around many times.
  const uint32 ratios[][2] = {{1, 1}, {7, 5}, {5, 7}, {13, 1}, {6, 4}, {11, 89}, {1, 900}, {900, 1}};
  unsigned seed = 1;
  for (const auto& [l, m] : ratios) {
    for (const std::size_t n : {3, 4, 20, 21, 22, 3001}) {
      if (n * std::max(l, m) > 300'000) {
        continue;
      }
      const lib_iq_data_arr_t samples = random_samples(n, ++seed);
      lib_iq_data_arr_t fast;
      ASSERT_TRUE(lib_resample_t::deal_resampling(samples, fast, l, m));
      const lib_iq_data_arr_t reference = literal_resampling(samples, l, m);
      double peak = 0.0;
      for (const auto& s : reference) {
        peak = std::max(peak, std::abs(s));
      }
      EXPECT_EQ(fast.size(), (n * l + m - 1) / m) << l << "/" << m << " n=" << n;
      EXPECT_LT(max_difference(fast, reference), 1e-9 * peak) << l << "/" << m << " n=" << n;
    }
  }
}

// A tone of f cycles per input sample becomes f M / L cycles per output sample with the same
// phase, since the centred cyclic filter adds no delay. Checked away from the reflected ends.
TEST(Resample, ToneKeepsItsFrequencyAndPhase) {
  const std::size_t n = 4000;
  const double f = 0.0371;
  lib_iq_data_arr_t tone(n);
  for (std::size_t k = 0; k < n; ++k) {
    tone[k] = std::polar(1.0, 2.0 * pi * f * static_cast<double>(k) + 0.3);
  }
  for (const auto& [l, m] : {std::pair<uint32, uint32>{7, 5}, {1, 2}}) {
    lib_iq_data_arr_t out;
    ASSERT_TRUE(lib_resample_t::deal_resampling(tone, out, l, m));
    EXPECT_EQ(out.size(), (n * l + m - 1) / m);
    const double step = static_cast<double>(m) / l;
    double worst_phase = 0.0;
    double worst_gain = 0.0;
    for (auto j = static_cast<std::size_t>(100 / step); j + 100 / step < out.size(); ++j) {
      const auto expected = std::polar(1.0, 2.0 * pi * f * step * static_cast<double>(j) + 0.3);
      worst_phase = std::max(worst_phase, std::abs(std::arg(out[j] / expected)));
      worst_gain = std::max(worst_gain, std::abs(std::abs(out[j]) - 1.0));
    }
    EXPECT_LT(worst_phase, 1e-4) << l << "/" << m;
    EXPECT_LT(worst_gain, 1e-3) << l << "/" << m;
  }
}

TEST(Resample, OneOrTwoSamplesPassUnfiltered) {
  const lib_iq_sample_t a(1.0, -2.0);
  const lib_iq_sample_t zero(0.0, 0.0);
  lib_iq_data_arr_t out;
  testing::internal::CaptureStdout();
  EXPECT_TRUE(lib_resample_t::deal_resampling({a}, out, 3, 1));
  EXPECT_EQ(out, (lib_iq_data_arr_t{3.0 * a, zero, zero}));
  // a, 0, b, 0 times 2; samples 0 and 3 kept.
  EXPECT_TRUE(lib_resample_t::deal_resampling({a, {0.5, 3.0}}, out, 2, 3));
  EXPECT_EQ(out, (lib_iq_data_arr_t{2.0 * a, zero}));
  testing::internal::GetCapturedStdout();
}

TEST(ResampleCoefficients, FindExactPairsOrReportAndKeepUnitFactors) {
  uint32 l = 0;
  uint32 m = 0;
  EXPECT_TRUE(lib_resample_t::_calc_resample_coef(1000, 1'000'000, 1'250'000, l, m));
  EXPECT_EQ(std::uint64_t{1'000'000} * l, std::uint64_t{1'250'000} * m);
  // One sample allows L up to 1e7 and l * B wraps in 32 bits; exact means b div m is the target.
  EXPECT_TRUE(lib_resample_t::_calc_resample_coef(1, 1'000'000, 1'000'001, l, m));
  EXPECT_EQ(static_cast<uint32>(l * 1'000'000u) / m, 1'000'001u);

  for (const auto& [length, target] :
       {std::pair<uint32, uint32>{10'000'001, 1'250'000}, {0, 1'250'000}, {1000, 0}}) {
    testing::internal::CaptureStdout();
    EXPECT_FALSE(lib_resample_t::_calc_resample_coef(length, 1'000'000, target, l, m));
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(l, 1u);
    EXPECT_EQ(m, 1u);
  }
}

}  // namespace

#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <utility>

#include "lib/lib_resample.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::fp64;
using nal::lib_iq_data_arr_t;
using nal::uint32;
using nal::common_lib::lib_resample_t;
using wavelume_test::max_difference;
using wavelume_test::random_samples;

constexpr double pi = 3.14159265358979323846;

double peak(const lib_iq_data_arr_t& samples) {
  double largest = 0.0;
  for (const auto& s : samples) {
    largest = std::max(largest, std::abs(s));
  }
  return largest;
}

// The rate change as the steps define it, at the full interpolated rate.
lib_iq_data_arr_t literal_resampling(const lib_iq_data_arr_t& samples, uint32 l, uint32 m) {
  const std::size_t n = samples.size();
  const uint32 h = n < 21 ? static_cast<uint32>((n - 1) / 2) : 10;
  const std::size_t trimmed = std::size_t{2} * h * l;
  lib_iq_data_arr_t out;
  lib_resample_t::_extend_array_edge(samples, out, 2 * h);
  lib_resample_t::_deal_insert_zero(out, l);
  lib_resample_t::_deal_interpolate_filter(out, l, m, h);
  out.erase(out.end() - static_cast<std::ptrdiff_t>(trimmed), out.end());
  out.erase(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(trimmed));
  for (auto& s : out) {
    s *= static_cast<double>(l);
  }
  lib_resample_t::_deal_decimation(out, m);
  return out;
}

TEST(Resample, PolyphaseFormEqualsTheLiteralSteps) {
  const std::pair<uint32, uint32> ratios[] = {{1, 1}, {7, 5}, {5, 7}, {3, 4}, {4, 3}, {2, 1},
                                              {1, 2}, {13, 1}, {1, 13}, {6, 4}, {3, 3}, {1, 90},
                                              {90, 1}, {11, 89}};
  const std::size_t lengths[] = {3, 4, 5, 8, 13, 20, 21, 22, 64, 257, 3001};
  unsigned seed = 1;
  for (const auto& [l, m] : ratios) {
    for (const std::size_t n : lengths) {
      const lib_iq_data_arr_t samples = random_samples(n, ++seed);
      lib_iq_data_arr_t fast;
      ASSERT_TRUE(lib_resample_t::deal_resampling(samples, fast, l, m));
      const lib_iq_data_arr_t reference = literal_resampling(samples, l, m);
      EXPECT_EQ(fast.size(), (n * l + m - 1) / m) << l << "/" << m << " n=" << n;
      EXPECT_LT(max_difference(fast, reference), 1e-9 * peak(reference))
          << l << "/" << m << " n=" << n;
    }
  }
}

TEST(Resample, PolyphaseFormEqualsTheLiteralStepsWithTheLongestFilter) {
  // u = 900 asks for 18001 taps: the design stops at 16384, an even length whose centre is half
  // a sample off, and the taps wrap many times around a short array.
  for (const auto& [l, m, n] : {std::tuple<uint32, uint32, std::size_t>{1, 900, 2500},
                                {900, 899, 40}, {1, 900, 3}, {900, 1, 5}}) {
    const lib_iq_data_arr_t samples = random_samples(n, 5);
    lib_iq_data_arr_t fast;
    ASSERT_TRUE(lib_resample_t::deal_resampling(samples, fast, l, m));
    const lib_iq_data_arr_t reference = literal_resampling(samples, l, m);
    EXPECT_LT(max_difference(fast, reference), 1e-9 * peak(reference)) << l << "/" << m;
  }
}

TEST(Resample, ResultDoesNotDependOnTheThreadCount) {
  const lib_iq_data_arr_t samples = random_samples(200'000, 3);
  const int saved = omp_get_max_threads();
  lib_iq_data_arr_t one_thread;
  lib_iq_data_arr_t many_threads;
  omp_set_num_threads(1);
  lib_resample_t::deal_resampling(samples, one_thread, 7, 5);
  omp_set_num_threads(8);
  lib_resample_t::deal_resampling(samples, many_threads, 7, 5);
  omp_set_num_threads(saved);
  ASSERT_EQ(one_thread.size(), 280'000u);
  EXPECT_TRUE(one_thread == many_threads);
}

// A tone of f cycles per input sample is, after L / M, the tone f M / L cycles per output sample
// with the same start phase: the cyclic filter is centred, so it adds no delay. Checked away from
// the ends, where the reflected edges are not the tone.
TEST(Resample, ToneKeepsItsFrequencyAndPhaseAfterARationalRateChange) {
  const std::size_t n = 4000;
  const double f = 0.0371;
  lib_iq_data_arr_t tone(n);
  for (std::size_t k = 0; k < n; ++k) {
    tone[k] = std::polar(1.0, 2.0 * pi * f * static_cast<double>(k) + 0.3);
  }
  for (const auto& [l, m] : {std::pair<uint32, uint32>{7, 5}, {3, 4}, {1, 2}, {5, 1}}) {
    lib_iq_data_arr_t out;
    ASSERT_TRUE(lib_resample_t::deal_resampling(tone, out, l, m));
    EXPECT_EQ(out.size(), (n * l + m - 1) / m);
    const double step = static_cast<double>(m) / l;
    const std::size_t margin = static_cast<std::size_t>(100 / step);
    double worst_phase = 0.0;
    double worst_gain = 0.0;
    for (std::size_t j = margin; j + margin < out.size(); ++j) {
      const auto expected = std::polar(1.0, 2.0 * pi * f * step * static_cast<double>(j) + 0.3);
      worst_phase = std::max(worst_phase, std::abs(std::arg(out[j] / expected)));
      worst_gain = std::max(worst_gain, std::abs(std::abs(out[j]) - 1.0));
    }
    EXPECT_LT(worst_phase, 1e-4) << l << "/" << m;
    EXPECT_LT(worst_gain, 1e-3) << l << "/" << m;
  }
}

// With the band above 1.05 / u cut, a tone beyond the output's Nyquist frequency is removed
// instead of folding back.
TEST(Resample, DecimationRemovesToneAboveTheNewNyquistFrequency) {
  const std::size_t n = 3000;
  lib_iq_data_arr_t tone(n);
  for (std::size_t k = 0; k < n; ++k) {
    tone[k] = std::polar(1.0, 2.0 * pi * 0.4 * static_cast<double>(k));
  }
  lib_iq_data_arr_t out;
  ASSERT_TRUE(lib_resample_t::deal_resampling(tone, out, 1, 4));
  const lib_iq_data_arr_t interior(out.begin() + 50, out.end() - 50);
  EXPECT_LT(peak(interior), 1e-3);
}

TEST(Resample, RatioOneIsTheIdentityFilter) {
  for (const std::size_t n : {3, 20, 500}) {
    const lib_iq_data_arr_t samples = random_samples(n, 9);
    lib_iq_data_arr_t out;
    ASSERT_TRUE(lib_resample_t::deal_resampling(samples, out, 1, 1));
    EXPECT_LT(max_difference(out, samples), 1e-12);
  }
}

TEST(Resample, OneOrTwoSamplesPassUnfilteredWithTheConvolutionReport) {
  const std::string too_short =
      "lib_convolution_t::deal_fft_convolution Report: Filter data array is too short!\n";
  const nal::lib_iq_sample_t a(1.0, -2.0);
  const nal::lib_iq_sample_t b(0.5, 3.0);
  const nal::lib_iq_sample_t zero(0.0, 0.0);
  lib_iq_data_arr_t out;

  testing::internal::CaptureStdout();
  EXPECT_TRUE(lib_resample_t::deal_resampling({a}, out, 3, 1));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), too_short);
  EXPECT_EQ(out, (lib_iq_data_arr_t{3.0 * a, zero, zero}));

  testing::internal::CaptureStdout();
  EXPECT_TRUE(lib_resample_t::deal_resampling({a, b}, out, 2, 3));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), too_short);
  // Zero-stuffed a, 0, b, 0 times 2, then samples 0 and 3.
  EXPECT_EQ(out, (lib_iq_data_arr_t{2.0 * a, zero}));
}

TEST(Resample, RefusedArgumentsLeaveOutputEmpty) {
  const lib_iq_data_arr_t samples = random_samples(10, 1);
  lib_iq_data_arr_t out = samples;
  testing::internal::CaptureStdout();
  EXPECT_FALSE(lib_resample_t::deal_resampling({}, out, 1, 1));
  EXPECT_TRUE(out.empty());
  out = samples;
  EXPECT_FALSE(lib_resample_t::deal_resampling(samples, out, 0, 1));
  EXPECT_TRUE(out.empty());
  EXPECT_FALSE(lib_resample_t::deal_resampling(samples, out, 2, 0));
  lib_iq_data_arr_t in_place;
  EXPECT_FALSE(lib_resample_t::_deal_interpolate_filter(in_place, 1, 1, 1));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_resample_t::deal_resampling Report: Empty input data array!\n"
            "lib_resample_t::deal_resampling Report: Error resample parameters!\n"
            "lib_resample_t::deal_resampling Report: Error resample parameters!\n"
            "lib_resample_t::deal_resampling Report: Empty input data array!\n");
}

TEST(Resample, DecimationAndZeroInsertion) {
  lib_iq_data_arr_t samples = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0};
  ASSERT_TRUE(lib_resample_t::_deal_decimation(samples, 3));
  EXPECT_EQ(samples, (lib_iq_data_arr_t{1.0, 4.0, 7.0}));

  lib_resample_t::_deal_insert_zero(samples, 1);
  lib_resample_t::_deal_insert_zero(samples, 0);
  EXPECT_EQ(samples, (lib_iq_data_arr_t{1.0, 4.0, 7.0}));
  lib_resample_t::_deal_insert_zero(samples, 3);
  EXPECT_EQ(samples, (lib_iq_data_arr_t{1.0, 0.0, 0.0, 4.0, 0.0, 0.0, 7.0, 0.0, 0.0}));

  testing::internal::CaptureStdout();
  EXPECT_FALSE(lib_resample_t::_deal_decimation(samples, 0));
  EXPECT_TRUE(samples.empty());
  EXPECT_FALSE(lib_resample_t::_deal_decimation(samples, 2));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_resample_t::_deal_decimation Report: Error decimation paramter!\n"
            "lib_resample_t::_deal_decimation Report: Empty input data array!\n");
}

TEST(Resample, EdgeExtensionContinuesAStraightLineExactly) {
  const nal::lib_iq_sample_t start(3.0, -1.0);
  const nal::lib_iq_sample_t slope(0.5, 2.0);
  lib_iq_data_arr_t line(9);
  for (std::size_t k = 0; k < line.size(); ++k) {
    line[k] = start + slope * static_cast<double>(k);
  }
  lib_iq_data_arr_t out;
  ASSERT_TRUE(lib_resample_t::_extend_array_edge(line, out, 8));
  ASSERT_EQ(out.size(), 25u);
  for (std::size_t j = 0; j < out.size(); ++j) {
    EXPECT_EQ(out[j], start + slope * (static_cast<double>(j) - 8.0)) << j;
  }

  // A parabola is reflected, not continued: the odd reflection keeps value and slope only.
  ASSERT_TRUE(lib_resample_t::_extend_array_edge({0.0, 1.0, 4.0, 9.0}, out, 2));
  EXPECT_EQ(out, (lib_iq_data_arr_t{-4.0, -1.0, 0.0, 1.0, 4.0, 9.0, 14.0, 17.0}));

  testing::internal::CaptureStdout();
  EXPECT_FALSE(lib_resample_t::_extend_array_edge({1.0, 2.0}, out, 2));
  EXPECT_TRUE(out.empty());
  EXPECT_FALSE(lib_resample_t::_extend_array_edge({}, out, 0));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_resample_t::_extend_array_edge Report: Edge longer than the data array: 2\n"
            "lib_resample_t::_extend_array_edge Report: Empty input data array!\n");
}

// The filter's response by a direct sum: about 1 well inside 1 / u, and the Blackman window's
// stop band well beyond 1.05 / u (frequencies relative to the Nyquist frequency).
TEST(Resample, FilterPassesBelowAndStopsAboveTheCutOffOfTheLargerFactor) {
  for (const auto& [l, m] : {std::pair<uint32, uint32>{7, 5}, {3, 8}, {1, 1}}) {
    lib_iq_data_arr_t taps;
    lib_resample_t::_calc_resample_filter(taps, l, m, 10);
    const uint32 u = std::max(l, m);
    ASSERT_EQ(taps.size(), 20u * u + 1);
    const auto response = [&taps](double frequency) {
      std::complex<double> sum = 0.0;
      for (std::size_t k = 0; k < taps.size(); ++k) {
        sum += taps[k] * std::polar(1.0, -pi * frequency * static_cast<double>(k));
      }
      return std::abs(sum);
    };
    EXPECT_NEAR(response(0.0), 1.0, 1e-3);
    EXPECT_NEAR(response(0.8 / u), 1.0, 1e-3);
    if (u > 1) {
      EXPECT_LT(response(1.45 / u), 1e-3);
      EXPECT_LT(response(0.5 * (1.0 + 1.45 / u)), 1e-3);
    }
  }
  lib_iq_data_arr_t taps;
  lib_resample_t::_calc_resample_filter(taps, 1000, 3, 10);
  EXPECT_EQ(taps.size(), 16384u);
}

// The search exactly as its steps read, with every candidate m tried.
bool literal_coefficient_search(uint32 a_length, uint32 b_rate, uint32 t_rate, uint32& l_out,
                                uint32& m_out) {
  l_out = 1;
  m_out = 1;
  const double l_max = 1e7 / a_length;
  if (l_max <= 1.0 || a_length > 1e7) {
    return false;
  }
  double best = 1.0;
  for (uint32 l = 1;; ++l) {
    const uint32 a = l * a_length;
    const uint32 b = l * b_rate;
    if (b >= 0.8 * t_rate) {
      for (uint32 m = 1; m <= 1000; ++m) {
        const uint32 r = m == 1 ? b : b / m;
        if (r < 0.8 * t_rate) {
          break;
        }
        const double p = 1.0 / r;
        const double q = 1.0 / t_rate;
        const double error = (a / m_out) * std::abs(p - q) / p;
        if (error <= 0.2 && error < best) {
          l_out = l;
          m_out = m;
          if (error < 1e-12) {
            return true;
          }
          best = error;
        }
      }
    }
    if (l + 1 >= l_max || static_cast<double>(l + 1) * a_length > 1e7) {
      return false;
    }
  }
}

TEST(ResampleCoefficients, FindsExactPairs) {
  uint32 l = 0;
  uint32 m = 0;
  EXPECT_TRUE(lib_resample_t::_calc_resample_coef(1000, 1'000'000, 1'250'000, l, m));
  EXPECT_EQ(std::uint64_t{1'000'000} * l, std::uint64_t{1'250'000} * m);
  EXPECT_EQ(std::gcd(l, m), 1u);

  EXPECT_TRUE(lib_resample_t::_calc_resample_coef(4096, 3'840'000, 2'000'000, l, m));
  EXPECT_EQ(std::uint64_t{3'840'000} * l, std::uint64_t{2'000'000} * m);

  // One sample allows L up to 1e7, and l * B wraps in 32 bits as the search defines; an exact
  // pair is one whose rate b div m is the target.
  EXPECT_TRUE(lib_resample_t::_calc_resample_coef(1, 1'000'000, 1'000'001, l, m));
  EXPECT_EQ(static_cast<uint32>(l * 1'000'000u) / m, 1'000'001u);
}

void expect_same_search(uint32 a_length, uint32 b_rate, uint32 t_rate) {
  uint32 l = 0;
  uint32 m = 0;
  uint32 expected_l = 0;
  uint32 expected_m = 0;
  const bool expected = literal_coefficient_search(a_length, b_rate, t_rate, expected_l, expected_m);
  testing::internal::CaptureStdout();
  EXPECT_EQ(lib_resample_t::_calc_resample_coef(a_length, b_rate, t_rate, l, m), expected);
  const std::string printed = testing::internal::GetCapturedStdout();
  EXPECT_EQ(printed.empty(), expected);
  EXPECT_EQ(l, expected_l) << a_length << " " << b_rate << " " << t_rate;
  EXPECT_EQ(m, expected_m) << a_length << " " << b_rate << " " << t_rate;
}

TEST(ResampleCoefficients, AgreesWithTheSearchThatTriesEveryCandidate) {
  // Exact, near and hopeless targets, short and long waveforms, and products that wrap in 32 bits.
  const uint32 cases[][3] = {
      {1000, 1'000'000, 1'250'000},   {1000, 1'000'000, 1'000'007}, {2500, 8'000'000, 7'777'777},
      {20000, 2'000'000, 2'048'000},  {5000, 1'000'000, 123'457},   {200, 1'000'000, 1'000'003},
      {1000, 3'000'000'000, 7'000'001}, {3000, 1, 1'000'000},       {4000, 2'000'003, 1'000'000},
      {600, 7'000'003, 3'000'000},    {7'000'000, 3'000'000, 1'000'000}};
  for (const auto& c : cases) {
    expect_same_search(c[0], c[1], c[2]);
  }
  // Rates just off a ratio l0 / m0, so that the drift of l0 / m0 lands near the 0.2 limit; once an
  // m0 above 1 is stored, the drift scale a div M drops and other pairs can improve on it.
  std::mt19937 generator(11);
  for (int trial = 0; trial < 40; ++trial) {
    const uint32 a_length = std::uniform_int_distribution<uint32>(2000, 20000)(generator);
    const uint32 l0 = std::uniform_int_distribution<uint32>(1, 12)(generator);
    const uint32 m0 = std::uniform_int_distribution<uint32>(1, 1000)(generator);
    const uint32 t_rate = std::uniform_int_distribution<uint32>(1000, 4'000'000)(generator);
    const double offset =
        std::uniform_real_distribution<double>(-0.3, 0.3)(generator) / (l0 * a_length);
    const double b_rate = t_rate * (1.0 + offset) * m0 / l0;
    if (b_rate < 4e9) {
      expect_same_search(a_length, static_cast<uint32>(b_rate), t_rate);
    }
  }
}

TEST(ResampleCoefficients, TooLongOrEmptyWaveformReportsAndKeepsUnitFactors) {
  for (const auto& [length, target] : {std::pair<uint32, uint32>{10'000'001, 1'250'000},
                                       {5'000'001, 1'250'000},
                                       {0, 1'250'000},
                                       {1000, 0}}) {
    uint32 l = 7;
    uint32 m = 9;
    testing::internal::CaptureStdout();
    EXPECT_FALSE(lib_resample_t::_calc_resample_coef(length, 1'000'000, target, l, m));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "lib_resample_t::_calc_resample_coef Report: Cannot find a proper sample rate!\n");
    EXPECT_EQ(l, 1u);
    EXPECT_EQ(m, 1u);
  }
}

}  // namespace

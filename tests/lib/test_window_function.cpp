#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <vector>

#include "lib/lib_window_function.h"

namespace nal::common_lib {
namespace {

using lwf = lib_window_function_t;

// I0 from its series sum ((x/2)^(2k) / (k!)^2), in long double, each term from the previous one so
// that nothing overflows before the sum does.
long double bessel_i0_series(long double x) {
  const long double a = x * x / 4.0L;
  long double term = 1.0L;
  long double sum = 1.0L;
  for (int k = 1; term > sum * 1e-21L; ++k) {
    term *= a / (static_cast<long double>(k) * k);
    sum += term;
  }
  return sum;
}

std::vector<fp64> real_parts(const lib_iq_data_arr_t& samples) {
  std::vector<fp64> values;
  for (const auto& s : samples) {
    EXPECT_EQ(s.imag(), 0.0);
    values.push_back(s.real());
  }
  return values;
}

std::vector<fp64> window(window_type_t type, uint32 length, bool normalize = false) {
  lib_iq_data_arr_t out;
  lwf::_generate_win_data_arr(out, type, length, normalize);
  return real_parts(out);
}

TEST(WindowFunction, BesselI0MatchesSeriesInAllThreeRanges) {
  for (const fp64 x : {0.0, 5.0, 7.7, 7.75, 100.0, 499.0, 500.0, 700.0}) {
    const fp64 expected = static_cast<fp64>(bessel_i0_series(x));
    EXPECT_NEAR(lwf::_calc_bessel_i0(x) / expected, 1.0, 1e-13) << "x = " << x;
    EXPECT_EQ(lwf::_calc_bessel_i0(-x), lwf::_calc_bessel_i0(x)) << "I0 is even, x = " << x;
  }
  // The standard library's own I0 as a second reference where the exponential fit takes over.
  for (const fp64 x : {7.75, 100.0, 500.0, 700.0}) {
    EXPECT_NEAR(lwf::_calc_bessel_i0(x) / std::cyl_bessel_i(0.0, x), 1.0, 1e-12) << "x = " << x;
  }
}

// First half of each symmetric window of length 8, from numpy 1.24 / scipy 1.10:
//   import numpy as np, scipy.signal.windows as w
//   w.hamming(8), w.hann(8), w.gaussian(8, std=3.5/2.5), np.kaiser(8, 6.0), w.blackman(8),
//   w.blackmanharris(8), w.flattop(8),
//   a = [0.3232153789, -0.47149214396, 0.17553412995, -0.0284969901, 0.00126135709]
//   w.general_cosine(8, a)  # the positive flat top, signs alternated for scipy's convention
TEST(WindowFunction, EvenLengthWindowsMatchReferenceValues) {
  const std::map<window_type_t, std::vector<fp64>> reference{
      {WINDOW_HAMMING,
       {0.08000000000000007, 0.2531946911449827, 0.6423596296199047, 0.9544456792351128}},
      {WINDOW_HANNING, {0.0, 0.1882550990706333, 0.6112604669781573, 0.9504844339512095}},
      {WINDOW_GAUSS,
       {0.0439369336234074, 0.20303279625113788, 0.5632793505016535, 0.9382155957191078}},
      {WINDOW_KAISER,
       {0.014873337104763207, 0.19978195130647008, 0.5913121823478988, 0.9454284905890261}},
      {WINDOW_BLACKMAN,
       {-1.3877787807814457e-17, 0.09045342435412812, 0.45918295754596367, 0.9203636180999081}},
      {WINDOW_BLACKMAN_HARRIS,
       {6.0000000000001025e-05, 0.03339172347815124, 0.33283350429856506, 0.8893697722232837}},
      {WINDOW_FLAT_TOP,
       {-0.0004210510000000013, -0.036840781154923445, 0.01070371671615349, 0.7808739149387699}},
      {WINDOW_FLAT_TOP_POSITIVE,
       {0.9999999999999999, 0.5513145593994652, 0.07870174632680463, 0.0012375204237300374}},
  };
  for (const auto& [type, half] : reference) {
    const std::vector<fp64> w = window(type, 8);
    ASSERT_EQ(w.size(), 8u);
    for (std::size_t n = 0; n < half.size(); ++n) {
      EXPECT_NEAR(w[n], half[n], 1e-14) << "type " << type << ", n = " << n;
      EXPECT_NEAR(w[7 - n], half[n], 1e-14) << "type " << type << ", n = " << 7 - n;
    }
  }
  EXPECT_EQ(window(WINDOW_RECTANGLE, 8), std::vector<fp64>(8, 1.0));
}

TEST(WindowFunction, OddLengthWindowsPeakAtOneInTheCentre) {
  for (const window_type_t type : {WINDOW_RECTANGLE, WINDOW_HAMMING, WINDOW_HANNING, WINDOW_GAUSS,
                                   WINDOW_KAISER, WINDOW_BLACKMAN, WINDOW_BLACKMAN_HARRIS}) {
    for (const uint32 length : {3u, 9u, 101u}) {
      const std::vector<fp64> w = window(type, length);
      EXPECT_NEAR(w[length / 2], 1.0, 1e-15) << "type " << type << ", length " << length;
      for (const fp64 value : w) {
        EXPECT_LE(value, w[length / 2]);
      }
    }
  }
}

TEST(WindowFunction, NormalisedWindowsHaveUnitMagnitudeSum) {
  for (uint32 type = WINDOW_RECTANGLE; type <= WINDOW_FLAT_TOP_POSITIVE; ++type) {
    const std::vector<fp64> plain = window(static_cast<window_type_t>(type), 33);
    const std::vector<fp64> normalised = window(static_cast<window_type_t>(type), 33, true);
    fp64 magnitude_sum = 0.0;
    for (const fp64 value : normalised) {
      magnitude_sum += std::abs(value);
    }
    EXPECT_NEAR(magnitude_sum, 1.0, 1e-14) << "type " << type;
    // Same shape: the flat top's negative entries keep their sign.
    EXPECT_NEAR(normalised[5] / normalised[16], plain[5] / plain[16], 1e-14) << "type " << type;
  }
}

TEST(WindowFunction, KaiserBetaShapesTheWindow) {
  lib_iq_data_arr_t out;
  // The ends are 1 / I0(beta); larger beta, smaller ends.
  lwf::generate_kaiser_window(out, 16, false, 3.0);
  EXPECT_NEAR(out.front().real(), 1.0 / 4.880792585865024, 1e-14);
  lwf::generate_kaiser_window(out, 16, false, 6.0);
  EXPECT_EQ(real_parts(out), window(WINDOW_KAISER, 16));

  const lib_iq_data_arr_t before = out;
  testing::internal::CaptureStdout();
  lwf::generate_kaiser_window(out, 4, true, -0.5);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(out, before);
}

}  // namespace
}  // namespace nal::common_lib

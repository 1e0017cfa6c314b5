#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "lib/lib_fir_filter_design.h"
#include "lib/lib_types.h"

namespace nal::common_lib {
namespace {

using design_t = lib_fir_filter_design_t;

// |H(f)| = |sum h[n] exp(-j pi f n)|, f normalised to the Nyquist frequency.
fp64 response_magnitude(const lib_iq_data_arr_t& taps, fp64 f) {
  lib_iq_sample_t sum{0.0, 0.0};
  for (std::size_t n = 0; n < taps.size(); ++n) {
    sum += taps[n] * std::polar(1.0, -lib_pi * f * static_cast<fp64>(n));
  }
  return std::abs(sum);
}

struct band_check_t {
  std::vector<fp64> pass;  // |H| within 1e-3 of 1
  std::vector<fp64> stop;  // |H| below 1e-3
};

void expect_response(const lib_iq_data_arr_t& taps, const band_check_t& bands) {
  for (const fp64 f : bands.pass) {
    EXPECT_NEAR(response_magnitude(taps, f), 1.0, 1e-3) << "pass band at f = " << f;
  }
  for (const fp64 f : bands.stop) {
    EXPECT_LT(response_magnitude(taps, f), 1e-3) << "stop band at f = " << f;
  }
}

fp64 max_imag(const lib_iq_data_arr_t& taps) {
  fp64 largest = 0.0;
  for (const auto& tap : taps) {
    largest = std::max(largest, std::abs(tap.imag()));
  }
  return largest;
}

TEST(FirFilterDesign, LowPassIdealTapsAndBlackmanResponse) {
  design_t design;  // low-pass, cut-off 0.5, Blackman
  design.set_filter_length(65);
  ASSERT_TRUE(design.generate());
  const lib_iq_data_arr_t& taps = design.get_filter_data();
  ASSERT_EQ(taps.size(), 65u);
  EXPECT_EQ(design.get_ideal_filter_data()[32], lib_iq_sample_t(0.5, 0.0));
  // sin(pi m / 2) / (pi m) at m = 1 and m = 3.
  EXPECT_NEAR(design.get_ideal_filter_data()[33].real(), 1.0 / lib_pi, 1e-15);
  EXPECT_NEAR(design.get_ideal_filter_data()[29].real(), -1.0 / (3.0 * lib_pi), 1e-15);
  EXPECT_EQ(max_imag(taps), 0.0);
  expect_response(taps, {{0.0, 0.2, 0.38}, {0.62, 0.8, 1.0}});

  design.set_filter_length(64);
  ASSERT_TRUE(design.generate());
  expect_response(design.get_filter_data(), {{0.0, 0.2, 0.38}, {0.62, 0.8}});
}

TEST(FirFilterDesign, HighPassPassesTheUpperBand) {
  design_t design;
  design.set_filter_type(FIR_HIGH_PASS);
  design.set_filter_length(65);
  ASSERT_TRUE(design.generate());
  EXPECT_TRUE(design.get_real_result_flag());
  EXPECT_EQ(max_imag(design.get_filter_data()), 0.0);
  expect_response(design.get_filter_data(), {{0.62, 0.75, 0.9, 1.0}, {0.0, 0.2, 0.38}});

  // Length 4, cut-off 0.5: envelope sin(pi m / 4) / (pi m) with m = n - 1.5, modulated by
  // 2 cos(3 pi (n - 1) / 4) on the integer centre 1.
  design.set_filter_length(4);
  ASSERT_TRUE(design.generate());
  const fp64 outer = std::sin(0.375 * lib_pi) / (1.5 * lib_pi);
  const fp64 inner = std::sin(0.125 * lib_pi) / (0.5 * lib_pi);
  const std::vector<fp64> expected{-std::sqrt(2.0) * outer, 2.0 * inner, -std::sqrt(2.0) * inner,
                                   0.0};
  for (std::size_t n = 0; n < expected.size(); ++n) {
    EXPECT_NEAR(design.get_ideal_filter_data()[n].real(), expected[n], 1e-15) << "n = " << n;
  }
}

TEST(FirFilterDesign, ComplexBandPassRejectsTheMirror) {
  design_t design;
  design.set_filter_type(FIR_BAND_PASS);
  design.set_filter_length(65);
  design.set_real_filter(false);
  design.set_lower_edge(0.2);
  design.set_upper_edge(0.6);
  ASSERT_TRUE(design.generate());
  EXPECT_TRUE(design.is_finished());
  EXPECT_FALSE(design.get_real_result_flag());
  EXPECT_GT(max_imag(design.get_filter_data()), 0.01);
  expect_response(design.get_filter_data(), {{0.3, 0.4, 0.5}, {-0.4, 0.0, 0.8}});
}

TEST(FirFilterDesign, MaskSamplingTakesMeansWithoutInterpolation) {
  // Unsorted on purpose. Samples of 8 points lie at -1, -0.75, ..., 0.75.
  const lib_iq_data_arr_t mask{{0.5, 10.0}, {0.0, 3.0}, {-0.6, 2.0}, {0.0, 1.0}, {0.0, 2.0}};
  lib_iq_data_arr_t out;
  design_t::_generate_mask_data(8, mask, out);
  const std::vector<fp64> expected{
      2.0,   // -1 is below the first frequency
      2.0,   // -0.75 likewise
      1.5,   // -0.5 lies between -0.6 (level 2) and 0 (lowest level 1)
      1.5,   // -0.25 likewise: no interpolation over the distance
      2.0,   // 0 holds levels 1, 2 and 3: the mean of the lowest and the highest
      6.5,   // 0.25 lies between 0 (highest level 3) and 0.5 (level 10)
      10.0,  // 0.5 is the last frequency
      10.0,  // 0.75 is above it
  };
  ASSERT_EQ(out.size(), expected.size());
  for (std::size_t k = 0; k < out.size(); ++k) {
    EXPECT_EQ(out[k], lib_iq_sample_t(expected[k], 0.0)) << "k = " << k;
  }
}

TEST(FirFilterDesign, MaskDesignRefusesBadInput) {
  const lib_iq_data_arr_t five_points{{-1.0, 0.0}, {-0.5, 1.0}, {0.0, 1.0}, {0.5, 1.0}, {1.0, 0.0}};
  const std::vector<std::pair<uint32, lib_iq_data_arr_t>> cases{
      {16, {}}, {12, five_points}, {0, five_points}, {4, five_points}};
  testing::internal::CaptureStdout();
  for (const auto& [length, mask] : cases) {
    lib_iq_data_arr_t taps(3);
    EXPECT_FALSE(design_t::generate_windowed_filter_data(length, WINDOW_BLACKMAN, mask, taps))
        << "length " << length;
    EXPECT_TRUE(taps.empty());
  }
  testing::internal::GetCapturedStdout();
}

}  // namespace
}  // namespace nal::common_lib

// Small helpers the signal chains rely on: normalisation, oversampling, powers of two, phase
// wrapping, idle-sample removal and padding.

#include <gtest/gtest.h>

#include <cmath>

#include "lib/lib_common_signal_process.h"
#include "lib/lib_convolution.h"
#include "lib/lib_normalization.h"
#include "lib/lib_oversampling.h"
#include "lib/plib.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_fp_data_arr_t;
using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_common_signal_process_t;
using nal::common_lib::lib_normalization_t;
using nal::common_lib::lib_oversampling_t;
using nal::common_lib::plib_t;

constexpr double pi = 3.14159265358979323846;
const nal::lib_iq_sample_t zero(0.0, 0.0);

lib_iq_data_arr_t from_amplitudes(std::initializer_list<double> values) {
  lib_iq_data_arr_t samples;
  for (const double v : values) {
    samples.emplace_back(v, 0.0);
  }
  return samples;
}

TEST(Normalization, EachScaleReachesOne) {
  const lib_iq_data_arr_t x = wavelume_test::random_samples(50, 3);
  lib_iq_data_arr_t y = x;
  lib_normalization_t::rms_normalize(y);
  EXPECT_NEAR(plib_t::get_complex_array_rms(y), 1.0, 1e-14);

  y = x;
  lib_normalization_t::max_normalize(y);
  double largest = 0.0;
  for (const auto& s : y) {
    largest = std::max({largest, std::abs(s.real()), std::abs(s.imag())});
  }
  EXPECT_EQ(largest, 1.0);

  y = x;
  lib_normalization_t::filter_energy_normalize(y);
  double energy = 0.0;
  for (const auto& s : y) {
    energy += std::norm(s);
  }
  EXPECT_NEAR(energy, 1.0, 1e-14);

  lib_fp_data_arr_t values = {-2.0, -2.0};
  lib_normalization_t::sum_normalize(values);
  EXPECT_EQ(values, (lib_fp_data_arr_t{0.5, 0.5}));  // a negative sum keeps the sign
}

TEST(Normalization, DegenerateArraysAreKept) {
  lib_iq_data_arr_t empty;
  lib_iq_data_arr_t silent(4);
  lib_fp_data_arr_t balanced = {1.0, -1.0};
  testing::internal::CaptureStdout();
  lib_normalization_t::rms_normalize(empty);
  lib_normalization_t::rms_normalize(silent);
  lib_normalization_t::filter_energy_normalize(silent);
  lib_normalization_t::max_normalize(silent);
  lib_normalization_t::sum_normalize(balanced);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(silent, lib_iq_data_arr_t(4));
  EXPECT_TRUE(empty.empty());
  EXPECT_EQ(balanced, (lib_fp_data_arr_t{1.0, -1.0}));
}

// Holding a point for a symbol is impulse oversampling followed by a box of `ratio` ones.
TEST(Oversampling, KindsGiveImpulsesHeldPointsAndOffsetQuadrature) {
  const lib_iq_data_arr_t points = wavelume_test::random_samples(20, 4);
  lib_iq_data_arr_t impulses;
  lib_oversampling_t::deal_oversampling(points, 3, impulses, 0);
  ASSERT_EQ(impulses.size(), 60u);
  for (std::size_t k = 0; k < impulses.size(); ++k) {
    EXPECT_EQ(impulses[k], k % 3 == 0 ? points[k / 3] : zero) << k;
  }
  lib_iq_data_arr_t boxed;
  nal::common_lib::lib_convolution_t::deal_convolution(impulses, {1.0, 1.0, 1.0}, boxed);
  boxed.resize(impulses.size());
  lib_iq_data_arr_t held;
  lib_oversampling_t::deal_oversampling(points, 3, held, 1);
  EXPECT_EQ(held, boxed);

  lib_iq_data_arr_t offset;
  lib_oversampling_t::deal_oversampling({{1.0, 1.0}, {-1.0, -1.0}}, 4, offset, 2);
  EXPECT_EQ(offset, (lib_iq_data_arr_t{
                        {1.0, 0.0}, zero, {0.0, 1.0}, zero, {-1.0, 0.0}, zero, {0.0, -1.0}, zero}));
  // An odd ratio cannot offset by half a symbol.
  testing::internal::CaptureStdout();
  lib_oversampling_t::deal_offset_oversampling(points, 3, offset);
  testing::internal::GetCapturedStdout();
  EXPECT_TRUE(offset.empty());
}

TEST(Plib, PowersOfTwoAndHalfOpenPhaseWrap) {
  EXPECT_TRUE(plib_t::is_power_of_2(1u << 31));
  EXPECT_FALSE(plib_t::is_power_of_2(0));
  EXPECT_EQ(plib_t::next_power_of_2(514, 32), 1024u);
  EXPECT_EQ(plib_t::next_power_of_2(10, 3), 12u);  // a start off the powers stays off them
  EXPECT_EQ(plib_t::next_power_of_2(0xFFFFFFFFu, 1), 0x80000000u);  // ends instead of overflowing
  EXPECT_EQ(plib_t::nearest_power_of_2(3000000, 1), 1u << 20);

  EXPECT_DOUBLE_EQ(plib_t::wrap_phase(pi), -pi);
  EXPECT_DOUBLE_EQ(plib_t::wrap_phase(-pi), -pi);
  EXPECT_NEAR(plib_t::wrap_phase(-7.5 * pi), 0.5 * pi, 1e-12);
  const double huge = plib_t::wrap_phase(1e300);
  EXPECT_TRUE(huge >= -pi && huge < pi);
  EXPECT_TRUE(std::isnan(plib_t::wrap_phase(NAN)));
}

TEST(SignalProcess, IdleRunsOfThreeOrMoreAreRemovedAndPaddingRepeats) {
  lib_iq_data_arr_t out;
  lib_common_signal_process_t::remove_idle_samples(from_amplitudes({1, 0, 0, 1, 0, 0, 0, 0, 1}),
                                                   out);
  EXPECT_EQ(out, from_amplitudes({1, 0, 0, 1, 1}));
  lib_common_signal_process_t::remove_idle_samples(from_amplitudes({0, 0, 0, 2, 0, 0}), out);
  EXPECT_EQ(out, from_amplitudes({2, 0, 0}));
  lib_fp_data_arr_t real_out;
  lib_common_signal_process_t::remove_idle_samples(lib_fp_data_arr_t{1, 0, 0, 0, -1e-13, 5},
                                                   real_out);
  EXPECT_EQ(real_out, (lib_fp_data_arr_t{1, 5}));

  lib_iq_data_arr_t x = from_amplitudes({1, 2, 3});
  EXPECT_EQ(lib_common_signal_process_t::pad_array_crc(x, 7), 9u);
  EXPECT_EQ(x, from_amplitudes({1, 2, 3, 1, 2, 3, 1, 2, 3}));
  lib_iq_data_arr_t empty;
  testing::internal::CaptureStdout();
  EXPECT_EQ(lib_common_signal_process_t::pad_array_crc(empty, 5), 5u);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(empty, lib_iq_data_arr_t(5));
}

}  // namespace

#include <gtest/gtest.h>

#include <cmath>

#include "lib/plib.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::common_lib::plib_t;
constexpr double pi = 3.14159265358979323846;

TEST(Plib, PowersOfTwoAndSquares) {
  for (nal::uint32 k = 0; k < 32; ++k) {
    EXPECT_TRUE(plib_t::is_power_of_2(1u << k)) << k;
  }
  for (const nal::uint32 x : {0u, 3u, 6u, 12u, 1000u, (1u << 20) + 1}) {
    EXPECT_FALSE(plib_t::is_power_of_2(x)) << x;
  }
  EXPECT_TRUE(plib_t::is_square_number(0));
  EXPECT_TRUE(plib_t::is_square_number(4096));
  EXPECT_FALSE(plib_t::is_square_number(2048));

  EXPECT_EQ(plib_t::next_power_of_2(514, 32), 1024u);
  EXPECT_EQ(plib_t::next_power_of_2(3, 32), 32u);
  EXPECT_EQ(plib_t::next_power_of_2(10, 3), 12u);  // a start off the powers stays off them
  EXPECT_EQ(plib_t::next_power_of_2(5, 0), 8u);
  EXPECT_EQ(plib_t::next_power_of_2(0xFFFFFFFFu, 1), 0x80000000u);  // ends instead of overflowing

  EXPECT_EQ(plib_t::nearest_power_of_2(6, 1), 4u);
  EXPECT_EQ(plib_t::nearest_power_of_2(7, 1), 8u);
  EXPECT_EQ(plib_t::nearest_power_of_2(3000000, 1), 1u << 20);
  EXPECT_EQ(plib_t::nearest_power_of_2(5, 16), 16u);
}

TEST(Plib, PhaseWrappingIsHalfOpen) {
  EXPECT_DOUBLE_EQ(plib_t::wrap_phase(pi), -pi);
  EXPECT_DOUBLE_EQ(plib_t::wrap_phase(-pi), -pi);
  EXPECT_NEAR(plib_t::wrap_phase(7.5 * pi), -0.5 * pi, 1e-12);
  EXPECT_NEAR(plib_t::wrap_phase(-7.5 * pi), 0.5 * pi, 1e-12);
  EXPECT_DOUBLE_EQ(plib_t::wrap_phase_degree(180.0), -180.0);
  EXPECT_DOUBLE_EQ(plib_t::wrap_phase_degree(540.0 + 90.0), -90.0);
  EXPECT_DOUBLE_EQ(plib_t::degree_to_radian(270.0), -pi / 2);
  const double huge = plib_t::wrap_phase(1e300);
  EXPECT_TRUE(huge >= -pi && huge < pi);
  EXPECT_TRUE(std::isnan(plib_t::wrap_phase(NAN)));
}

TEST(Plib, ArrayStatisticsAndTheirEmptyReports) {
  const lib_iq_data_arr_t square = {{1.0, 0.0}, {0.0, -1.0}, {-1.0, 0.0}, {0.0, 1.0}};
  EXPECT_DOUBLE_EQ(plib_t::get_complex_array_rms(square), 1.0);
  EXPECT_DOUBLE_EQ(plib_t::get_peak_to_rms_ratio(square), 0.0);
  const lib_iq_data_arr_t pulse = {2.0, 0.0, 0.0, 0.0};
  EXPECT_NEAR(plib_t::get_peak_to_rms_ratio(pulse), 20.0 * std::log10(2.0), 1e-12);
  EXPECT_DOUBLE_EQ(plib_t::get_data_max_amplitude(pulse), 2.0);
  EXPECT_DOUBLE_EQ(plib_t::get_peak_to_rms_ratio(lib_iq_data_arr_t(3)), 0.0);

  testing::internal::CaptureStdout();
  EXPECT_EQ(plib_t::get_complex_array_rms({}), 0.0);
  EXPECT_EQ(plib_t::get_data_max_amplitude({}), 0.0);
  EXPECT_EQ(plib_t::get_peak_to_rms_ratio({}), 0.0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "plib_t::get_complex_array_rms Report: Empty data array to rms calculation!\n"
            "plib_t::get_data_max_amplitude Report: Empty data array to max amplitude search!\n"
            "plib_t::get_peak_to_rms_ratio Report: Empty data array!\n");
}

TEST(Plib, WorkThreadRule) {
  EXPECT_EQ(plib_t::get_work_thread_number(1), 1u);
  EXPECT_EQ(plib_t::get_work_thread_number(2), 1u);
  EXPECT_EQ(plib_t::get_work_thread_number(3), 1u);
  EXPECT_EQ(plib_t::get_work_thread_number(4), 2u);
  EXPECT_EQ(plib_t::get_work_thread_number(10), 8u);
  EXPECT_EQ(plib_t::get_work_thread_number(16), 8u);
  EXPECT_GE(plib_t::get_work_thread_number(), 1u);
}

}  // namespace

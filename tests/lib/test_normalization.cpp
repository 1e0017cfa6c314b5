#include <gtest/gtest.h>

#include "lib/lib_normalization.h"
#include "lib/plib.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_fp_data_arr_t;
using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_normalization_t;

TEST(Normalization, EachScaleReachesOne) {
  const lib_iq_data_arr_t x = wavelume_test::random_samples(50, 3);

  lib_iq_data_arr_t y = x;
  lib_normalization_t::rms_normalize(y);
  EXPECT_NEAR(nal::common_lib::plib_t::get_complex_array_rms(y), 1.0, 1e-14);

  y = x;
  lib_normalization_t::amplitude_max_normalize(y);
  EXPECT_NEAR(nal::common_lib::plib_t::get_data_max_amplitude(y), 1.0, 1e-15);

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

  y = x;
  lib_normalization_t::sum_normalize(y);
  double magnitudes = 0.0;
  for (const auto& s : y) {
    magnitudes += std::abs(s);
  }
  EXPECT_NEAR(magnitudes, 1.0, 1e-14);
}

TEST(Normalization, RealSumKeepsItsSign) {
  lib_fp_data_arr_t values = {-2.0, -2.0};
  lib_normalization_t::sum_normalize(values);
  EXPECT_EQ(values, (lib_fp_data_arr_t{0.5, 0.5}));

  values = {1.0, -1.0};
  testing::internal::CaptureStdout();
  lib_normalization_t::sum_normalize(values);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_normalization_t::sum_normalize Report: Data array has a too small sum: 0\n");
  EXPECT_EQ(values, (lib_fp_data_arr_t{1.0, -1.0}));
}

TEST(Normalization, EmptyAndSilentArraysAreReportedAndKept) {
  lib_iq_data_arr_t empty;
  lib_iq_data_arr_t silent(4);
  lib_fp_data_arr_t empty_real;
  testing::internal::CaptureStdout();
  lib_normalization_t::rms_normalize(empty);
  lib_normalization_t::rms_normalize(silent);
  lib_normalization_t::filter_energy_normalize(empty_real);
  lib_normalization_t::filter_energy_normalize(silent);
  lib_normalization_t::amplitude_max_normalize(silent);
  lib_normalization_t::max_normalize(silent);
  lib_normalization_t::sum_normalize(silent);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_normalization_t::rms_normalize Report: An EMPTY data array is to normalize!\n"
            "lib_normalization_t::rms_normalize Report: Data array has a too small rms: 0\n"
            "lib_normalization_t::filter_energy_normalize Report: An EMPTY data array is to "
            "normalize!\n"
            "lib_normalization_t::filter_energy_normalize Report: Data array has a too small "
            "erengy: 0\n"
            "lib_normalization_t::amplitude_max_normalize Report: Data array has a too small "
            "max_amplitude: 0\n"
            "lib_normalization_t::max_normalize Report: Data array has a too small max_value: 0\n"
            "lib_normalization_t::sum_normalize Report: Data array has a too small sum: 0\n");
  EXPECT_EQ(silent, lib_iq_data_arr_t(4));
  EXPECT_TRUE(empty.empty());
}

}  // namespace

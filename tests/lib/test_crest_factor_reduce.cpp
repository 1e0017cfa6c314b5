// Crest factor reduction: the mask rules worked by hand, a single peak whose cancelled height is
// known in closed form, the pulse's spectrum against its mask, and an OFDM-like signal read back
// subcarrier by subcarrier.

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <string>

#include "lib/lib_crest_factor_reduce.h"
#include "lib/plib.h"
#include "test_ofdm_like_signal.h"
#include "test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::lib_iq_sample_t;
using nal::common_lib::lib_crest_factor_reduce_setting_t;
using nal::common_lib::lib_crest_factor_reduce_t;
using nal::common_lib::plib_t;

constexpr double pi = 3.14159265358979323846;

TEST(CrestFactorReduceSetting, MaskPointsAndTheirChecks) {
  lib_crest_factor_reduce_setting_t setting;
  EXPECT_EQ(setting.get_filter_mask(),
            (lib_iq_data_arr_t{{-8e7, -100.0}, {-1e7, 0.0}, {1e7, 0.0}, {8e7, -100.0}}));
  testing::internal::CaptureStdout();
  EXPECT_FALSE(setting.init_filter_mask_data(1e6, 2e7));
  EXPECT_FALSE(setting.init_filter_mask_data(2e7, 0.0));
  EXPECT_FALSE(setting.init_filter_mask_data(9.99e6, 2e7));
  const std::string illegal =
      "lib_crest_factor_reduce_setting_t::init_filter_mask_data Report : Illegal input "
      "parameter!\n";
  EXPECT_EQ(testing::internal::GetCapturedStdout(), illegal + illegal + illegal);
  ASSERT_TRUE(setting.init_filter_mask_data(2e7, 2e7));
  EXPECT_EQ(setting.get_filter_mask().back(), lib_iq_sample_t(2e7, -100.0));
  ASSERT_TRUE(setting.init_filter_mask_data(1.1e7, 2e7));
  EXPECT_EQ(setting.get_filter_mask().front(), lib_iq_sample_t(-1.25e7, -100.0));

  // Nyquist is trunc(0.5 rate) = 12500000 for a rate of 25000001: the stop lands on 1.
  lib_crest_factor_reduce_setting_t normalized = setting;
  ASSERT_TRUE(normalized.deal_filter_mask_normalize(25000001.0));
  EXPECT_EQ(normalized.get_filter_mask().back(), lib_iq_sample_t(1.0, -100.0));
  EXPECT_EQ(normalized.get_filter_mask()[1], lib_iq_sample_t(-0.8, 0.0));
  testing::internal::CaptureStdout();
  EXPECT_FALSE(setting.deal_filter_mask_normalize(2.4e7));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_crest_factor_reduce_setting_t::deal_filter_mask_normalize Report : Error Sample "
            "Rate!\n");
  EXPECT_EQ(setting.get_filter_mask().back(), lib_iq_sample_t(1.25e7, -100.0));
}

lib_crest_factor_reduce_t reducer(double target_db, unsigned passes, double rate) {
  lib_crest_factor_reduce_setting_t setting;
  setting.set_enable(true);
  setting.set_target_ratio(target_db);
  setting.set_iteration_number(passes);
  lib_crest_factor_reduce_t reduce;
  EXPECT_TRUE(reduce.set_setting(setting, rate));
  return reduce;
}

// A constant envelope with one peak of 10 at sample 500 and phase 1 rad: one pass brings that
// sample down to the threshold, rms * 10^(3 / 20), along the peak's own phase, and changes its
// neighbours by the excess times the pulse taps.
TEST(CrestFactorReduce, OnePassCutsTheBlockPeakToTheThreshold) {
  lib_iq_data_arr_t samples(1000);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    samples[i] = std::polar(1.0, 0.01 * static_cast<double>(i));
  }
  samples[500] = std::polar(10.0, 1.0);
  double power = 0.0;
  for (const lib_iq_sample_t& s : samples) {
    power += std::norm(s);
  }
  const double threshold = std::sqrt(power / 1000.0) * std::pow(10.0, 3.0 / 20.0);
  const lib_iq_data_arr_t original = samples;
  lib_crest_factor_reduce_t reduce = reducer(3.0, 1, 2e8);
  ASSERT_TRUE(reduce.deal_crest_factor_reduce(samples));
  ASSERT_TRUE(reduce.is_filter_ready());
  EXPECT_NEAR(std::abs(samples[500]), threshold, 1e-9);
  EXPECT_NEAR(std::arg(samples[500]), 1.0, 1e-12);
  const lib_iq_data_arr_t& taps = reduce.get_filter_data();
  const std::size_t centre = taps.size() / 2;
  const lib_iq_sample_t excess = std::polar(10.0 - threshold, 1.0);
  for (const std::size_t i : {495u, 499u, 501u, 503u}) {
    EXPECT_LT(std::abs(original[i] - samples[i] - excess * taps[centre + i - 500]), 1e-9) << i;
  }
  EXPECT_EQ(samples[200], original[200]);
}

// The pulse follows its mask (default, at 2e8 samples/s: pass band +-0.1, stop from 0.8 of
// Nyquist): a real, symmetric pulse of peak 1 whose response, evaluated as a DTFT, falls by 40 dB
// from the pass band to the stop band (17 taps come nowhere near the mask's -100 dB).
TEST(CrestFactorReduce, PulseFollowsTheMask) {
  lib_crest_factor_reduce_t reduce = reducer(8.0, 10, 2e8);
  lib_iq_data_arr_t constant(64, 1.0);
  ASSERT_TRUE(reduce.deal_crest_factor_reduce(constant));
  const lib_iq_data_arr_t& taps = reduce.get_filter_data();
  ASSERT_EQ(taps.size(), 17u);
  EXPECT_NEAR(taps[8].real(), 1.0, 1e-12);
  for (std::size_t n = 0; n < taps.size(); ++n) {
    EXPECT_NEAR(taps[n].real(), taps[16 - n].real(), 1e-12);
    EXPECT_NEAR(taps[n].imag(), 0.0, 1e-12);
  }
  const auto response = [&taps](double f) {
    std::complex<double> sum = 0.0;
    for (std::size_t n = 0; n < taps.size(); ++n) {
      sum += taps[n] * std::polar(1.0, -pi * f * (static_cast<double>(n) - 8.0));
    }
    return std::abs(sum);
  };
  for (const double f : {0.8, 0.9, 1.0}) {
    EXPECT_LT(20.0 * std::log10(response(f) / response(0.0)), -40.0) << f;
  }
  EXPECT_GT(response(0.1), 0.5 * response(0.0));
}

TEST(CrestFactorReduce, NothingToDoLeavesTheSamplesAlone) {
  lib_iq_data_arr_t constant(100);
  for (std::size_t i = 0; i < constant.size(); ++i) {
    constant[i] = std::polar(0.5, 0.3 * static_cast<double>(i));
  }
  lib_iq_data_arr_t samples = constant;
  ASSERT_TRUE(reducer(3.0, 10, 2e8).deal_crest_factor_reduce(samples));
  EXPECT_EQ(samples, constant);  // 0 dB, below the target: no pass
  lib_iq_data_arr_t noise = wavelume_test::random_samples(100, 4);
  const lib_iq_data_arr_t copy = noise;
  lib_crest_factor_reduce_t disabled;
  ASSERT_TRUE(disabled.deal_crest_factor_reduce(noise));
  EXPECT_EQ(noise, copy);
  EXPECT_FALSE(disabled.is_filter_ready());
  lib_iq_data_arr_t empty;
  EXPECT_TRUE(reducer(3.0, 10, 2e8).deal_crest_factor_reduce(empty));
}

// 100 symbols, 256 MHz, subcarriers 1 MHz apart: the mask passes the occupied +-26.5 MHz.
// Target 8 dB, 10 passes, blocks of 1000.
TEST(CrestFactorReduce, OfdmPeaksComeDownWithLittleInBandError) {
  const double rate = 256e6;
  const auto signal = wavelume_test::ofdm_like_signal_t::make(100, 1);
  lib_crest_factor_reduce_setting_t setting;
  ASSERT_TRUE(setting.init_filter_mask_data(53e6, 53e6));
  setting.set_enable(true);
  lib_crest_factor_reduce_t reduce;
  ASSERT_TRUE(reduce.set_setting(setting, rate));
  lib_iq_data_arr_t samples = signal.samples;
  ASSERT_TRUE(reduce.deal_crest_factor_reduce(samples));

  const double before_db = plib_t::get_peak_to_rms_ratio(signal.samples);
  const double after_db = plib_t::get_peak_to_rms_ratio(samples);
  const double edge = 27e6 / rate;
  const double out_of_band_rise_db =
      wavelume_test::ofdm_like_signal_t::out_of_band_db(samples, edge) -
      wavelume_test::ofdm_like_signal_t::out_of_band_db(signal.samples, edge);
  const double evm = signal.evm_percent(samples);
  RecordProperty("papr_before_db", std::to_string(before_db));
  RecordProperty("papr_after_db", std::to_string(after_db));
  EXPECT_GT(before_db, 8.8);
  EXPECT_LE(after_db, 8.3);
  EXPECT_LE(evm, 4.0);
  EXPECT_LE(out_of_band_rise_db, 1.0);
  EXPECT_LT(signal.evm_percent(signal.samples), 1e-9);
}

}  // namespace

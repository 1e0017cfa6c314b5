#include <gtest/gtest.h>

#include <cmath>

#include "lib/lib_iq_waveform.h"

namespace {

using nal::fp64;
using nal::lib_iq_data_arr_t;
using namespace nal::common_lib;

lib_iq_waveform_config_t qpsk_config() {
  lib_iq_waveform_config_t config;
  config.modulator_type = nal::MODULATOR_APSK_QAM;
  config.symbol_rate = 10000;
  config.oversampling = 4;
  config.data_source_type = 1;
  config.symbol_length = 100;
  config.constellation_type = nal::MOD_QPSK;
  config.filter_type = nal::FILTER_ROOT_COSINE;
  config.filter_parameter = 0.35;
  config.filter_length = 16;
  config.carrier_frequency = 1000.0;
  config.waveform_sample_rate = 160000;
  config.iq_sample_rate = 10000;
  return config;
}

TEST(IqWaveform, GeneratesTheActiveModulatorsStream) {
  lib_iq_waveform_t generator;
  ASSERT_TRUE(generator.set_iq_waveform_config(qpsk_config()));
  generator.generate_iq_signal();
  ASSERT_EQ(generator.get_baseband_iq().size(), 400u);
  EXPECT_EQ(generator.get_baseband_iq(), generator.active_modulator().get_modulated_iq_data());
  EXPECT_EQ(generator.get_iq_sample_rate(), 40000u);  // stored value times the ratio

  const lib_iq_data_arr_t& spectrum = generator.get_spectrum();
  ASSERT_EQ(spectrum.size(), 512u);
  fp64 peak = 0.0;
  for (const auto& bin : spectrum) {
    peak = std::max(peak, std::abs(bin));
  }
  EXPECT_NEAR(peak, 1.0, 1e-12);
}

TEST(IqWaveform, SwitchingModulatorCarriesSharedSettings) {
  lib_iq_waveform_t generator;
  EXPECT_TRUE(generator.set_modulation_type(nal::MODULATOR_APSK_QAM));  // already active
  ASSERT_TRUE(generator.set_modulation_config(qpsk_config()));

  testing::internal::CaptureStdout();
  ASSERT_TRUE(generator.set_modulation_type(nal::MODULATOR_MFSK));
  // QPSK is no FSK type: the copy reports it, and everything else is carried over.
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_constellation_base_t::set_constellation_type Report: constellation Type 3 Not "
            "supported!\n");
  const lib_modulation_base_t& fsk = generator.active_modulator();
  EXPECT_EQ(fsk.get_modulator_type(), nal::MODULATOR_MFSK);
  EXPECT_EQ(fsk.get_symbol_rate(), 10000u);
  EXPECT_EQ(fsk.get_oversampling_ratio(), 4u);
  EXPECT_EQ(fsk.get_filter_length(), 16u);
  EXPECT_EQ(fsk.get_filter_parameter(), 0.35);
  EXPECT_EQ(fsk.symbol_data().get_symbol_length(), 100u);

  testing::internal::CaptureStdout();
  EXPECT_FALSE(generator.set_modulation_type(7));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_iq_waveform_t::set_modulation_type Report: Illegal Modulation Type!\n");
}

TEST(IqWaveform, RateAndCarrierChecks) {
  lib_iq_waveform_t generator;
  testing::internal::CaptureStdout();
  EXPECT_FALSE(generator.set_carrier_freq(0.0));
  EXPECT_FALSE(generator.set_carrier_freq(1e-13));
  EXPECT_FALSE(generator.set_iq_sample_rate(0));
  EXPECT_FALSE(generator.set_waveform_sample_rate(1000));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_iq_waveform_t::set_carrier_freq Report: Carrier wave frequency should be "
            "positive!\n"
            "lib_iq_waveform_t::set_carrier_freq Report: Carrier wave frequency should be "
            "positive!\n"
            "lib_iq_waveform_t::set_iq_sample_rate Report: IQ Sample Rate should NOT be zero!\n"
            "lib_iq_waveform_t::set_iq_sample_rate Report: Waveform sample rate is lower than "
            "signal frequency!\n");
  EXPECT_EQ(generator.get_carrier_freq(), 20000000.0);
  EXPECT_EQ(generator.get_waveform_sample_rate(), 400000000u);

  // A carrier below the IQ rate is taken, with a warning.
  testing::internal::CaptureStdout();
  generator.set_iq_sample_rate(50000000);
  EXPECT_TRUE(generator.set_carrier_freq(1000.0));
  EXPECT_NE(testing::internal::GetCapturedStdout().find("lower than IQ sample rate"),
            std::string::npos);
  EXPECT_EQ(generator.get_carrier_freq(), 1000.0);
}

TEST(IqWaveform, CarrierModulationHoldsEachSampleAndMixes) {
  lib_iq_waveform_t generator;
  ASSERT_TRUE(generator.set_iq_waveform_config(qpsk_config()));
  generator.generate_modulated_signal();
  const lib_iq_data_arr_t& baseband = generator.get_baseband_iq();
  const lib_iq_data_arr_t& carrier = generator.get_modulated_signal();
  const std::size_t ratio = 160000 / 40000;
  ASSERT_EQ(carrier.size(), baseband.size() * ratio);
  for (std::size_t i = 0; i < carrier.size(); i += 7) {
    const fp64 x = i * (1.0 / 160000) * 1000.0;  // the product itself is the argument
    const auto& s = baseband[i / ratio];
    EXPECT_NEAR(carrier[i].real(), s.real() * std::cos(x) - s.imag() * std::sin(x), 1e-15);
    EXPECT_EQ(carrier[i].imag(), 0.0);
  }

  lib_iq_waveform_config_t slow = qpsk_config();
  slow.waveform_sample_rate = 20000;
  ASSERT_TRUE(generator.set_iq_waveform_config(slow));
  testing::internal::CaptureStdout();
  generator.generate_modulated_signal();
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_iq_waveform_t::_generate_modulated_signal Report: Carrier Wave Sampling Freqency "
            "is too low!\n");
  EXPECT_TRUE(generator.get_modulated_signal().empty());
}

}  // namespace

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
  testing::internal::GetCapturedStdout();
  EXPECT_TRUE(generator.get_modulated_signal().empty());
}

}  // namespace

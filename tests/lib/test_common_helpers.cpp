#include <gtest/gtest.h>

#include "lib/lib_common_signal_process.h"
#include "lib/lib_common_type_cast.h"
#include "lib/lib_enum_text.h"
#include "lib/lib_enum_types.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_common_signal_process_t;
using nal::common_lib::lib_common_type_cast_t;

lib_iq_data_arr_t from_amplitudes(std::initializer_list<double> values) {
  lib_iq_data_arr_t samples;
  for (const double v : values) {
    samples.emplace_back(v, 0.0);
  }
  return samples;
}

TEST(SignalProcess, IdleRunsOfThreeOrMoreAreRemoved) {
  lib_iq_data_arr_t out;
  lib_common_signal_process_t::remove_idle_samples(from_amplitudes({1, 0, 0, 1, 0, 0, 0, 0, 1}),
                                                   out);
  EXPECT_EQ(out, from_amplitudes({1, 0, 0, 1, 1}));
  lib_common_signal_process_t::remove_idle_samples(from_amplitudes({0, 0, 0, 2, 0, 0}), out);
  EXPECT_EQ(out, from_amplitudes({2, 0, 0}));
  lib_common_signal_process_t::remove_idle_samples(from_amplitudes({3, 0, 0, 0}), out);
  EXPECT_EQ(out, from_amplitudes({3}));

  nal::lib_fp_data_arr_t real_out;
  lib_common_signal_process_t::remove_idle_samples(nal::lib_fp_data_arr_t{1, 0, 0, 0, -1e-13, 5},
                                                   real_out);
  EXPECT_EQ(real_out, (nal::lib_fp_data_arr_t{1, 5}));
}

TEST(SignalProcess, Padding) {
  lib_iq_data_arr_t x = from_amplitudes({1, 2, 3});
  EXPECT_EQ(lib_common_signal_process_t::pad_array_crc(x, 7), 9u);
  EXPECT_EQ(x, from_amplitudes({1, 2, 3, 1, 2, 3, 1, 2, 3}));
  x = from_amplitudes({1, 2, 3});
  EXPECT_EQ(lib_common_signal_process_t::pad_array_crc(x, 3), 3u);
  EXPECT_EQ(lib_common_signal_process_t::pad_array_crc(x, 4), 6u);

  lib_iq_data_arr_t empty;
  testing::internal::CaptureStdout();
  EXPECT_EQ(lib_common_signal_process_t::pad_array_crc(empty, 5), 5u);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_common_signal_process_t::pad_array_crc Report: Empty Data Array!\n");
  EXPECT_EQ(empty, lib_iq_data_arr_t(5));

  x = from_amplitudes({1, 2});
  lib_common_signal_process_t::pad_array_zero(x, 4);
  EXPECT_EQ(x, from_amplitudes({1, 2, 0, 0}));
  lib_common_signal_process_t::pad_array_zero(x, 1);
  EXPECT_EQ(x.size(), 4u);
}

TEST(SignalProcess, BurstStatisticsIgnoreIdleTime) {
  const lib_iq_data_arr_t burst = from_amplitudes({0, 0, 0, 0, 1, -1, 1, -1, 0, 0, 0});
  EXPECT_DOUBLE_EQ(lib_common_signal_process_t::get_burst_peak_to_rms_ratio(burst), 0.0);
  EXPECT_DOUBLE_EQ(lib_common_signal_process_t::get_burst_rms_scale(burst, 20.0), 10.0);
  EXPECT_DOUBLE_EQ(lib_common_signal_process_t::get_burst_rms_scale(lib_iq_data_arr_t(5), 0.0),
                   1.0);
  EXPECT_DOUBLE_EQ(lib_common_signal_process_t::get_burst_peak_to_rms_ratio(lib_iq_data_arr_t(5)),
                   0.0);
}

TEST(TypeCast, ConstellationSizesAndModulators) {
  EXPECT_EQ(lib_common_type_cast_t::get_constellation_point(nal::MOD_PR_ASK), 2u);
  EXPECT_EQ(lib_common_type_cast_t::get_constellation_point(nal::MOD_PI8_D8PSK), 8u);
  EXPECT_EQ(lib_common_type_cast_t::get_constellation_point(nal::MOD_32APSK), 32u);
  EXPECT_EQ(lib_common_type_cast_t::get_constellation_point(nal::MOD_2048QAM), 2048u);
  EXPECT_EQ(lib_common_type_cast_t::get_constellation_point(nal::MOD_16FSK), 16u);
  EXPECT_EQ(lib_common_type_cast_t::get_symbol_bit_number(nal::MOD_4096QAM, 0), 12u);
  EXPECT_EQ(lib_common_type_cast_t::get_symbol_bit_number(nal::MOD_MULTITONE2, 64), 6u);
  EXPECT_EQ(lib_common_type_cast_t::get_symbol_bit_number(nal::MOD_MULTITONE2, 48), 5u);

  testing::internal::CaptureStdout();
  EXPECT_EQ(lib_common_type_cast_t::get_constellation_point(nal::MOD_MULTITONE2), 0u);
  EXPECT_EQ(
      lib_common_type_cast_t::get_symbol_bit_number(static_cast<nal::modulation_type_t>(99), 4),
      0u);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_common_type_cast_t::get_constellation_point Report: Error Constellation Type!\n"
            "lib_common_type_cast_t::get_constellation_point Report: Error Constellation Type!\n");

  EXPECT_EQ(lib_common_type_cast_t::get_modulator_type(nal::MOD_4096QAM), nal::MODULATOR_APSK_QAM);
  EXPECT_EQ(lib_common_type_cast_t::get_modulator_type(nal::MOD_2FSK), nal::MODULATOR_MFSK);
  EXPECT_EQ(lib_common_type_cast_t::get_modulator_type(nal::MOD_MULTITONE2),
            nal::MODULATOR_MULTITONE);

  lib_iq_data_arr_t out = from_amplitudes({9});
  lib_common_type_cast_t::real_to_complex_arr({1.5, -2.0}, out);
  EXPECT_EQ(out, from_amplitudes({1.5, -2.0}));
}

TEST(EnumText, LookupIsExactAndAMissLeavesTheValue) {
  using nal::common_lib::lib_enum_text_t;
  nal::filter_type_t filter = nal::FILTER_NONE;
  EXPECT_TRUE(
      lib_enum_text_t::get_enum_value(nal::common_lib::filter_type_text_map(), "Gaussian", filter));
  EXPECT_EQ(filter, nal::FILTER_GAUSSIAN);
  EXPECT_FALSE(
      lib_enum_text_t::get_enum_value(nal::common_lib::filter_type_text_map(), "gaussian", filter));
  EXPECT_EQ(filter, nal::FILTER_GAUSSIAN);
  EXPECT_EQ(lib_enum_text_t::get_enum_text(nal::common_lib::filter_type_text_map(),
                                           nal::FILTER_HALF_SINE),
            "Half Sine");

  const std::map<nal::filter_type_t, std::string> empty;
  testing::internal::CaptureStdout();
  EXPECT_FALSE(lib_enum_text_t::get_enum_value(empty, "None", filter));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_xml_common_t::get_enum_value Warning : Empty enum string mapping!\n");
}

}  // namespace

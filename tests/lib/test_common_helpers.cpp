#include <gtest/gtest.h>

#include "lib/lib_common_signal_process.h"
#include "lib/lib_enum_text.h"
#include "lib/lib_enum_types.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_common_signal_process_t;

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

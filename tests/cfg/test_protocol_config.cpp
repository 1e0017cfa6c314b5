#include <gtest/gtest.h>

#include "cfg/cfg_protocol_factory.h"
#include "cfg/lib_version_manager.h"
#include "cfg/lib_xml_common.h"
#include "lib/lib_enum_types.h"

namespace {

using nal::lib_version_manager_t;
using nal::lib_xml_common_t;

TEST(XmlCommon, TextsMapExactlyAndMissesGiveZero) {
  const auto& modulations = nal::common_lib::modulation_type_text_map();
  EXPECT_EQ(lib_xml_common_t::get_enum_value(modulations, "PI/4-DQPSK"), nal::MOD_PI4_DQPSK);
  EXPECT_EQ(lib_xml_common_t::get_enum_value(modulations, "16qam"), nal::MOD_2ASK);
  EXPECT_EQ(lib_xml_common_t::get_enum_string(modulations, nal::MOD_16QAM), "16QAM");
  EXPECT_EQ(lib_xml_common_t::get_enum_string(modulations, static_cast<nal::modulation_type_t>(77)),
            "");
  EXPECT_EQ(lib_xml_common_t::get_enum_value(nal::protocol_type_state_text_map(), "Z-wave"),
            nal::PROTOCOL_G9959);

  const std::map<nal::filter_type_t, std::string> empty;
  testing::internal::CaptureStdout();
  EXPECT_EQ(lib_xml_common_t::get_enum_value(empty, "None"), nal::FILTER_NONE);
  EXPECT_EQ(lib_xml_common_t::get_enum_string(empty, nal::FILTER_NONE), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_xml_common_t::get_enum_value Warning : Empty enum string mapping!\n"
            "lib_xml_common_t::get_enum_value Warning : Empty enum string mapping!\n");
}

TEST(VersionManager, ParsesComparesAndRefusesMixedFormats) {
  std::vector<nal::uint64> fields;
  EXPECT_TRUE(lib_version_manager_t::parse(lib_version_manager_t::library_version(), fields));
  EXPECT_EQ(fields, (std::vector<nal::uint64>{1, 0, 0, 0, 0}));
  EXPECT_TRUE(lib_version_manager_t::is_beta_version("1.0.0.0.0_BETA"));
  EXPECT_FALSE(lib_version_manager_t::parse("1.-2.3", fields));
  EXPECT_TRUE(fields.empty());
  EXPECT_FALSE(lib_version_manager_t::parse("1..3", fields));
  EXPECT_FALSE(lib_version_manager_t::parse("1.x", fields));

  EXPECT_TRUE(lib_version_manager_t::is_version_greater("1.2.10", "1.2.9"));
  EXPECT_FALSE(lib_version_manager_t::is_version_greater("1.2.9", "1.2.9"));
  EXPECT_TRUE(lib_version_manager_t::is_version_less("0.9.9", "1.0.0"));
  EXPECT_TRUE(lib_version_manager_t::is_version_equal("2.0.1", "2.0.1"));
  EXPECT_FALSE(lib_version_manager_t::is_version_equal("1.0.0.0.0", "1.0.0.0.0_BETA"));

  testing::internal::CaptureStdout();
  EXPECT_FALSE(lib_version_manager_t::is_version_greater("1.0.0.0.1", "1.0.0.0"));
  EXPECT_FALSE(lib_version_manager_t::is_version_less("1.0.0.0.1", "1.0.0.0"));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_version_manager_t::is_version_greater Report : Different Version Format!\n"
            "lib_version_manager_t::is_version_greater Report : Different Version Format!\n");
}

TEST(ProtocolFactory, HomeGivesNothingSilentlyAndUnknownTypesAreNamed) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(nal::cfg_protocol_factory_t::create_protocol_config(nal::PROTOCOL_HOME), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

  testing::internal::CaptureStderr();
  EXPECT_EQ(
      nal::cfg_protocol_factory_t::create_protocol_config(static_cast<nal::protocol_type_t>(42)),
      nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unknown Protocol Type!\n");

  testing::internal::CaptureStderr();
  EXPECT_EQ(nal::cfg_protocol_factory_t::create_protocol_config(nal::PROTOCOL_BLUETOOTH_LE),
            nullptr);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("Bluetooth LE"), std::string::npos);
}

}  // namespace

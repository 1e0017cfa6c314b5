#include <gtest/gtest.h>

#include "cfg/lib_version_manager.h"

namespace {

using nal::lib_version_manager_t;

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

}  // namespace

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "comm/comm_visa_backend.h"
#include "comm/comm_visa_builtin.h"
#include "comm/visa_device_manager.h"
#include "comm/visa_resource.h"

namespace {

using nal::comm_visa_backend_t;

std::string read_file(const std::string& path) {
  std::ifstream file(path);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

class SystemLibrary : public ::testing::Test {
 protected:
  const std::string log = "/tmp/wavelume_stand_in_visa_" + std::to_string(::getpid()) + ".log";

  void SetUp() override { ::setenv("STAND_IN_VISA_LOG", log.c_str(), 1); }
  void TearDown() override {
    ::unsetenv("WAVELUME_VISA_LIBRARY");
    ::unsetenv("STAND_IN_VISA_LOG");
    std::remove(log.c_str());
  }
};

TEST_F(SystemLibrary, InstalledLibraryIsFoundAndUsed) {
  ::setenv("WAVELUME_VISA_LIBRARY", WAVELUME_STAND_IN_VISA, 1);
  std::string description;
  auto visa = comm_visa_backend_t::choose(description);
  EXPECT_EQ(description, WAVELUME_STAND_IN_VISA);

  nal::visa_device_manager_t devices(visa);
  EXPECT_EQ(devices.get_found_names(), QStringList{"USB0::0x1234::0x5678::STANDIN::INSTR"});
  ASSERT_TRUE(devices.connect_resource("USB0::0x1234::0x5678::STANDIN::INSTR"));
  EXPECT_EQ(devices.get_current_resource()->get_idn(), "Stand-in,VISA,0,1");
  EXPECT_TRUE(devices.send_to_current("abc", 3, "hdr,"));
  // The block in three writes, with END held back (VI_ATTR_SEND_END_EN, 0x3FFF0016) until the
  // last; nothing else in between.
  EXPECT_EQ(read_file(log),
            "viOpenDefaultRM\nviFindRsrc\nviFindNext\nviClose\n"
            "viOpen USB0::0x1234::0x5678::STANDIN::INSTR\nviWrite [*IDN?]\nviRead\n"
            "viWrite [*IDN?]\nviRead\nviSetAttribute 3fff0016 0\nviWrite [IQDA ]\n"
            "viWrite [hdr,]\nviSetAttribute 3fff0016 1\nviWrite [abc]\n");
}

TEST_F(SystemLibrary, AbsentOrIncompleteLibraryFallsBackToTheBuiltInLayer) {
  for (const char* path : {WAVELUME_INCOMPLETE_VISA, "/nonexistent/libvisa.so"}) {
    ::setenv("WAVELUME_VISA_LIBRARY", path, 1);
    std::string description;
    testing::internal::CaptureStdout();
    auto visa = comm_visa_backend_t::choose(description);
    const std::string report = testing::internal::GetCapturedStdout();
    EXPECT_EQ(description, "built-in");
    EXPECT_NE(dynamic_cast<nal::comm_visa_builtin_t*>(visa.get()), nullptr);
    EXPECT_NE(report.find("is no usable VISA library"), std::string::npos) << report;
  }
}

}  // namespace

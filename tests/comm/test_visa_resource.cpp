#include <gtest/gtest.h>

#include <memory>

#include "comm/visa_resource.h"
#include "comm/visa_resource_manager.h"
#include "tests/comm/test_recording_visa.h"

namespace {

using nal::visa_resource_manager_t;
using nal::visa_resource_t;
using test_comm::recording_visa_t;

class VisaResource : public ::testing::Test {
 protected:
  std::shared_ptr<recording_visa_t> visa = std::make_shared<recording_visa_t>();
  visa_resource_manager_t manager{visa};
  visa_resource_t resource{&manager, "TCPIP0::10.0.0.7::inst0::INSTR"};

  void SetUp() override { visa->instruments["TCPIP0::10.0.0.7::inst0::INSTR"] = "Acme,SG1,7,1.0"; }
};

TEST_F(VisaResource, OnlyPlainSuccessEndsAReply) {
  ASSERT_TRUE(resource.open(0, 2000));
  visa->calls.clear();
  visa->reads = {{nal::VI_SUCCESS_MAX_CNT, std::string(256, 'a')},
                 {nal::VI_SUCCESS_TERM_CHAR, "b\n"},
                 {nal::VI_SUCCESS, "c\n"}};
  EXPECT_EQ(resource.query("X?"), QByteArray(256, 'a') + "b\nc\n");
  EXPECT_EQ(visa->calls, (std::vector<std::string>{"viWrite TCPIP0::10.0.0.7::inst0::INSTR X?",
                                                   "viRead 256", "viRead 256", "viRead 256"}));

  // An error, or a warning other than the two, throws away what came before it.
  visa->reads = {{nal::VI_SUCCESS_MAX_CNT, std::string(256, 'a')}, {nal::VI_ERROR_TMO, ""}};
  EXPECT_TRUE(resource.query("X?").isEmpty());
  visa->reads = {{nal::VI_WARN_NULL_OBJECT, "partial"}};
  EXPECT_TRUE(resource.query("X?").isEmpty());
}

TEST_F(VisaResource, OpenKeepsTheTrimmedIdentificationUpToAZeroByte) {
  visa->reads = {{nal::VI_SUCCESS, std::string("  Acme,SG1,7,1.0\r\n\0junk", 24)}};
  ASSERT_TRUE(resource.open(0, 2000));
  EXPECT_EQ(resource.get_idn(), "Acme,SG1,7,1.0");

  // Open on an open resource: no traffic, the identification is not refreshed.
  visa->calls.clear();
  EXPECT_TRUE(resource.open(0, 2000));
  EXPECT_TRUE(visa->calls.empty());

  EXPECT_TRUE(resource.close());
  EXPECT_TRUE(resource.get_idn().isEmpty());
  EXPECT_TRUE(resource.close());
  EXPECT_EQ(resource.write_command("*RST"), 0u);
  EXPECT_EQ(visa->calls.size(), 1u);  // the one viClose
}

}  // namespace

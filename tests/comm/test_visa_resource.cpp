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

// A block of a kept part and a generated one: "IQDA " and then "0123456789" in pieces of four.
nal::comm_block_t digits_block() {
  nal::comm_block_t block;
  block.add_bytes("IQDA ", 5);
  block.add_generated(10, 4, [](std::uint64_t first, std::size_t count, unsigned char* out) {
    for (std::size_t i = 0; i < count; ++i) {
      out[i] = static_cast<unsigned char>('0' + (first + i));
    }
  });
  return block;
}

TEST_F(VisaResource, BlockInPiecesHoldsEndBackUntilTheLastOrIsJoinedWhereItCannot) {
  const std::string end_off = "viSetAttribute " + std::to_string(nal::VI_ATTR_SEND_END_EN) + " 0";
  const std::string end_on = "viSetAttribute " + std::to_string(nal::VI_ATTR_SEND_END_EN) + " 1";
  const std::string write = "viWrite TCPIP0::10.0.0.7::inst0::INSTR ";
  ASSERT_TRUE(resource.open(0, 2000));
  const nal::comm_block_t block = digits_block();

  visa->calls.clear();
  EXPECT_EQ(resource.write_block(block), 15u);
  EXPECT_EQ(visa->calls, (std::vector<std::string>{end_off, write + "IQDA ", write + "0123",
                                                   write + "4567", end_on, write + "89"}));

  // The third piece lost on the way: the rest is not sent, and END is on again for the next
  // command.
  visa->calls.clear();
  visa->failing_write = visa->writes + 3;
  EXPECT_EQ(resource.write_block(block), 0u);
  EXPECT_EQ(visa->calls, (std::vector<std::string>{end_off, write + "IQDA ", write + "0123",
                                                   write + "4567", end_on}));

  // A library without the attribute gets the whole block in one write, as it expects.
  visa->calls.clear();
  visa->failing_write = 0;
  visa->refused_attributes = {nal::VI_ATTR_SEND_END_EN};
  EXPECT_EQ(resource.write_block(block), 15u);
  EXPECT_EQ(visa->calls, (std::vector<std::string>{end_off, write + "IQDA 0123456789"}));

  // One piece needs no attribute at all; a closed session writes nothing.
  visa->calls.clear();
  nal::comm_block_t single;
  single.add_bytes("IQDA 1", 6);
  EXPECT_EQ(resource.write_block(single), 6u);
  EXPECT_EQ(visa->calls, (std::vector<std::string>{write + "IQDA 1"}));
  resource.close();
  visa->calls.clear();
  EXPECT_EQ(resource.write_block(block), 0u);
  EXPECT_TRUE(visa->calls.empty());
}

}  // namespace

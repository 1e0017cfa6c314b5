#include <gtest/gtest.h>
#include <poll.h>

#include <chrono>
#include <cstring>
#include <memory>

#include "comm/comm_visa_builtin.h"
#include "comm/visa_resource.h"
#include "comm/visa_resource_manager.h"
#include "tests/comm/test_tiny_server.h"

namespace {

using nal::visa_resource_manager_t;
using nal::visa_resource_t;
using test_comm::tiny_server_t;

QString socket_name(std::uint16_t port) {
  return QStringLiteral("TCPIP0::127.0.0.1::%1::SOCKET").arg(port);
}

double seconds_since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

class BuiltinFaults : public ::testing::Test {
 protected:
  visa_resource_manager_t manager{std::make_shared<nal::comm_visa_builtin_t>()};
};

TEST_F(BuiltinFaults, ReplyWithoutEndIsDroppedAtItsLimit) {
  tiny_server_t server([](int client) {
    tiny_server_t::read_command(client);
    const std::string chunk(1 << 16, 'x');
    for (int i = 0; i < 40; ++i) {
      tiny_server_t::write_all(client, chunk);
    }
    tiny_server_t::wait_for_close(client);
  });
  visa_resource_t resource(&manager, socket_name(server.port()));
  testing::internal::CaptureStdout();
  ASSERT_TRUE(resource.open(0, 2000));
  EXPECT_TRUE(resource.get_idn().isEmpty());
  EXPECT_NE(testing::internal::GetCapturedStdout().find("visa_resource_t::read_reply Report: "),
            std::string::npos);
}

TEST_F(BuiltinFaults, SilentInstrumentEndsWithinTheTimeout) {
  tiny_server_t server([](int client) {
    pollfd entry{client, POLLRDHUP, 0};
    ::poll(&entry, 1, 10000);
  });
  visa_resource_t resource(&manager, socket_name(server.port()));
  const auto start = std::chrono::steady_clock::now();
  ASSERT_TRUE(resource.open(0, 2000));
  EXPECT_TRUE(resource.get_idn().isEmpty());
  EXPECT_EQ(resource.set_attribute(nal::VI_ATTR_TMO_VALUE, 200), nal::VI_SUCCESS);
  EXPECT_FALSE(resource.refresh_idn());
  EXPECT_LT(seconds_since(start), 3.5);
  EXPECT_GT(seconds_since(start), 2.1);
}

TEST_F(BuiltinFaults, ConnectionDroppedInTheMiddleOfABlock) {
  tiny_server_t server([](int client) {
    tiny_server_t::read_command(client);
    tiny_server_t::write_all(client, "Acme,SG1,7,1.0\n");
    char sink[65536];
    tiny_server_t::read_exact(client, sink, sizeof sink);
  });
  visa_resource_t resource(&manager, socket_name(server.port()));
  ASSERT_TRUE(resource.open(0, 2000));
  // In pieces, as a waveform goes: the link is lost in the middle of one of them.
  nal::comm_block_t block;
  block.add_generated(64 << 20, 1 << 20, [](std::uint64_t, std::size_t count, unsigned char* out) {
    std::memset(out, 0x55, count);
  });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(resource.write_block(block), 0u);
  EXPECT_LT(seconds_since(start), 2.5);
  EXPECT_EQ(resource.write_command("*IDN?"), 0u);
}

TEST_F(BuiltinFaults, RefusedConnectionAndUnparsableNamesFailAtOnce) {
  std::uint16_t closed_port = 0;
  {
    tiny_server_t server([](int) {});
    closed_port = server.port();
  }
  const auto start = std::chrono::steady_clock::now();
  visa_resource_t refused(&manager, socket_name(closed_port));
  EXPECT_FALSE(refused.open(0, 2000));
  // A host name goes through the resolver first.
  visa_resource_t named(&manager, QStringLiteral("TCPIP0::localhost::%1::SOCKET").arg(closed_port));
  EXPECT_FALSE(named.open(0, 2000));
  EXPECT_LT(seconds_since(start), 1.0);

  visa_resource_t unparsable(&manager, "TCPIP0::300.1.1.1::inst0::INSTR");
  testing::internal::CaptureStdout();
  EXPECT_FALSE(unparsable.open(0, 2000));
  EXPECT_NE(testing::internal::GetCapturedStdout().find("comm_visa_builtin_t::open Report: "),
            std::string::npos);
}

}  // namespace

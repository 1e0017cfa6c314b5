#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include "comm/comm_visa_builtin.h"
#include "comm/visa_resource.h"
#include "comm/visa_resource_manager.h"
#include "tests/comm/test_tiny_server.h"

namespace {

using test_comm::tiny_server_t;

// A HiSLIP message header as IVI-6.1 lays it out.
struct message_t {
  unsigned type = 0;
  unsigned control = 0;
  std::uint32_t parameter = 0;
  std::string payload;
};

bool read_message(int client, message_t& message) {
  unsigned char header[16];
  if (!tiny_server_t::read_exact(client, header, 16) || header[0] != 'H' || header[1] != 'S') {
    return false;
  }
  message.type = header[2];
  message.control = header[3];
  message.parameter =
      static_cast<std::uint32_t>(header[4]) << 24 | header[5] << 16 | header[6] << 8 | header[7];
  std::uint64_t size = 0;
  for (int i = 8; i < 16; ++i) {
    size = size << 8 | header[i];
  }
  message.payload.assign(size, '\0');
  return tiny_server_t::read_exact(client, message.payload.data(), size);
}

std::string message(unsigned type, std::uint32_t parameter, const std::string& payload) {
  std::string bytes = {'H', 'S', static_cast<char>(type), 0};
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes += static_cast<char>(parameter >> shift);
  }
  for (int shift = 56; shift >= 0; shift -= 8) {
    bytes += static_cast<char>(static_cast<std::uint64_t>(payload.size()) >> shift);
  }
  return bytes + payload;
}

class Hislip : public ::testing::Test {
 protected:
  // Header included, as the client counts it.
  static constexpr std::uint64_t server_max_message = 16 + 64;
  std::mutex mutex;
  std::vector<message_t> data_messages;
  std::string sub_address;
  std::condition_variable sync_closed;
  bool sync_done = false;

  // The first connection is the synchronous channel, the second the asynchronous one.
  tiny_server_t server{[this](int client) {
    message_t first;
    if (!read_message(client, first)) {
      return;
    }
    if (first.type == 0) {
      serve_sync(client, first);
    } else {
      serve_async(client);
    }
  }};

  void serve_sync(int client, const message_t& initialize) {
    {
      std::lock_guard<std::mutex> lock(mutex);
      sub_address = initialize.payload;
    }
    tiny_server_t::write_all(client, message(1, 0x01000000u | 77u, ""));
    std::string command;
    for (message_t m; read_message(client, m);) {
      std::lock_guard<std::mutex> lock(mutex);
      data_messages.push_back(m);
      command += m.payload;
      if (m.type == 7 && command == "*IDN?") {
        // A stale answer to another message first, then the reply in two parts.
        tiny_server_t::write_all(client, message(7, m.parameter - 2, "stale\n") +
                                             message(6, m.parameter, "Acme,HiSLIP,") +
                                             message(7, m.parameter, "9,1.0\n"));
      }
      if (m.type == 7) {
        command.clear();
      }
    }
    std::lock_guard<std::mutex> lock(mutex);
    sync_done = true;
    sync_closed.notify_all();
  }

  void serve_async(int client) {
    tiny_server_t::write_all(client, message(18, 0, ""));
    message_t size;
    if (read_message(client, size) && size.type == 15) {
      std::string payload;
      for (int shift = 56; shift >= 0; shift -= 8) {
        payload += static_cast<char>(server_max_message >> shift);
      }
      tiny_server_t::write_all(client, message(16, 0, payload));
    }
    message_t ignored;
    while (read_message(client, ignored)) {
    }
  }
};

TEST_F(Hislip, MessagesAreCutToTheNegotiatedSizeAndRepliesGatheredToDataEnd) {
  nal::visa_resource_manager_t manager(std::make_shared<nal::comm_visa_builtin_t>());
  nal::visa_resource_t resource(
      &manager, QStringLiteral("TCPIP0::127.0.0.1::hislip0,%1::INSTR").arg(server.port()));
  ASSERT_TRUE(resource.open(0, 2000));
  EXPECT_EQ(resource.get_idn(), "Acme,HiSLIP,9,1.0");
  EXPECT_EQ(resource.write_block(QByteArray(150, 'w')), 150u);
  resource.close();

  // The server has read everything once it sees the channel close.
  std::unique_lock<std::mutex> lock(mutex);
  ASSERT_TRUE(sync_closed.wait_for(lock, std::chrono::seconds(5), [this]() { return sync_done; }));
  EXPECT_EQ(sub_address, "hislip0");
  // "*IDN?" without a line feed: HiSLIP marks the end with DataEnd, not with a character.
  ASSERT_EQ(data_messages.size(), 4u);
  EXPECT_EQ(data_messages[0].payload, "*IDN?");
  EXPECT_EQ(data_messages[0].parameter, 0xFFFFFF00u);
  const std::size_t sizes[] = {5, 64, 64, 22};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(data_messages[i].payload.size(), sizes[i]) << i;
    EXPECT_EQ(data_messages[i].type, i == 0 || i == 3 ? 7u : 6u) << i;
    EXPECT_EQ(data_messages[i].parameter, 0xFFFFFF00u + 2 * i) << i;
  }
  // The first message after a complete reply carries the response-terminator flag.
  EXPECT_EQ(data_messages[1].control, 1u);
  EXPECT_EQ(data_messages[2].control, 0u);
}

}  // namespace

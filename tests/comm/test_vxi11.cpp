#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <vector>

#include "comm/comm_visa_builtin.h"
#include "comm/visa_device_manager.h"
#include "comm/visa_resource.h"
#include "comm/visa_resource_manager.h"
#include "tests/comm/test_tiny_server.h"

namespace {

using test_comm::tiny_server_t;

// XDR words and opaques as the VXI-11 and RPC documents lay them out, written here from the
// documents rather than from the product's encoder.
void put(std::string& out, std::uint32_t word) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    out += static_cast<char>(word >> shift);
  }
}
std::uint32_t get(const std::string& in, std::size_t& at) {
  std::uint32_t word = 0;
  for (int i = 0; i < 4; ++i) {
    word = word << 8 | static_cast<unsigned char>(in.at(at++));
  }
  return word;
}

// One RPC record, any number of fragments; empty when the peer closed.
std::string read_record(int client) {
  std::string record;
  for (;;) {
    unsigned char mark[4];
    if (!tiny_server_t::read_exact(client, mark, 4)) {
      return {};
    }
    const std::uint32_t length = (mark[0] & 0x7Fu) << 24 | mark[1] << 16 | mark[2] << 8 | mark[3];
    std::string fragment(length, '\0');
    if (!tiny_server_t::read_exact(client, fragment.data(), length)) {
      return {};
    }
    record += fragment;
    if ((mark[0] & 0x80u) != 0) {
      return record;
    }
  }
}

// An accepted reply to `xid` carrying `results`, cut into fragments of seven bytes.
std::string reply_wire(std::uint32_t xid, const std::string& results) {
  std::string body;
  for (const std::uint32_t word : {xid, 1u, 0u, 0u, 0u, 0u}) {
    put(body, word);
  }
  body += results;
  std::string wire;
  for (std::size_t at = 0; at < body.size(); at += 7) {
    const std::size_t size = std::min<std::size_t>(7, body.size() - at);
    put(wire, static_cast<std::uint32_t>(size) | (at + size == body.size() ? 0x80000000u : 0u));
    wire += body.substr(at, size);
  }
  return wire;
}

class Vxi11 : public ::testing::Test {
 protected:
  std::atomic<bool> silent{false};
  // Replies to device_read stop after their first ten bytes.
  std::atomic<bool> cut_short{false};
  std::mutex mutex;
  std::vector<std::string> writes;

  tiny_server_t core{[this](int client) { serve_core(client); }};
  tiny_server_t portmapper{[this](int client) {
    const std::string call = read_record(client);
    std::size_t at = 0;
    std::string port;
    put(port, core.port());
    tiny_server_t::write_all(client, reply_wire(get(call, at), port));
  }};

  void SetUp() override {
    ::setenv("WAVELUME_VXI11_PORTMAPPER_PORT", std::to_string(portmapper.port()).c_str(), 1);
  }
  void TearDown() override { ::unsetenv("WAVELUME_VXI11_PORTMAPPER_PORT"); }

  void serve_core(int client) {
    std::string pending_reply;
    for (std::string call = read_record(client); !call.empty(); call = read_record(client)) {
      std::size_t at = 0;
      const std::uint32_t xid = get(call, at);
      at += 16;  // type, RPC version, program, version
      const std::uint32_t procedure = get(call, at);
      at += 16;  // two empty authenticators
      std::string results;
      put(results, 0);  // no device error
      if (procedure == 10) {
        for (const std::uint32_t word : {5u, 0u, 100u}) {  // link, abort port, max receive size
          put(results, word);
        }
      } else if (procedure == 11) {
        at += 16;  // link, io timeout, lock timeout, flags
        const std::uint32_t size = get(call, at);
        const std::string data = call.substr(at, size);
        {
          std::lock_guard<std::mutex> lock(mutex);
          writes.push_back(data);
        }
        if (data == "*IDN?") {
          pending_reply = "Acme,VXI11,3,1.0\n";
        }
        put(results, size);
      } else if (procedure == 12) {
        if (silent) {
          continue;
        }
        put(results, 4);  // END
        put(results, static_cast<std::uint32_t>(pending_reply.size()));
        results += pending_reply + std::string((4 - pending_reply.size() % 4) % 4, '\0');
        pending_reply.clear();
      }
      tiny_server_t::write_all(client, procedure == 12 && cut_short
                                           ? reply_wire(xid, results).substr(0, 10)
                                           : reply_wire(xid, results));
    }
  }
};

TEST_F(Vxi11, InstrumentThatNeverAnswersIsReopenedOnceThenRefused) {
  silent = true;
  nal::visa_device_manager_t devices(std::make_shared<nal::comm_visa_builtin_t>());
  devices.add_tcpip_resource("127.0.0.1");
  const auto start = std::chrono::steady_clock::now();
  ASSERT_TRUE(devices.connect_resource("TCPIP0::127.0.0.1::inst0::INSTR"));
  EXPECT_TRUE(devices.get_resource_info("TCPIP0::127.0.0.1::inst0::INSTR").idn.isEmpty());
  EXPECT_FALSE(devices.send_to_current("abc", 3, QByteArray()));
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  EXPECT_LT(seconds, 8.0);

  std::lock_guard<std::mutex> lock(mutex);
  for (const std::string& write : writes) {
    EXPECT_EQ(write, "*IDN?");
  }
  EXPECT_EQ(writes.size(), 3u);  // connect, check, check after the one reopen
}

TEST_F(Vxi11, ReplyCutInTheMiddleOfARecordLosesTheConnectionCleanly) {
  cut_short = true;
  nal::visa_resource_manager_t manager(std::make_shared<nal::comm_visa_builtin_t>());
  nal::visa_resource_t resource(&manager, "TCPIP0::127.0.0.1::inst0::INSTR");
  ASSERT_TRUE(resource.open(0, 2000));
  EXPECT_TRUE(resource.get_idn().isEmpty());
  // The rest of the stream no longer lines up with records: nothing more is sent or waited for.
  const auto start = std::chrono::steady_clock::now();
  testing::internal::CaptureStdout();
  nal::comm_block_t block;
  block.add_bytes("IQDA 1234", 9);
  EXPECT_EQ(resource.write_block(block), 0u);
  EXPECT_EQ(resource.write_command("*RST"), 0u);
  testing::internal::GetCapturedStdout();
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 0.5);
  std::lock_guard<std::mutex> lock(mutex);
  EXPECT_EQ(writes.size(), 1u);
}

}  // namespace

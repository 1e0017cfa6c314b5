// The instrument link against the loopback simulator, end to end through comm_deal_t and the
// device list: whole waveforms over every transport, the wire sequence of a download, and two
// ticked devices. The simulator serves on threads of its own, hence the suite names: these
// cases also run under ThreadSanitizer.

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "comm/comm_block.h"
#include "comm/comm_deal.h"
#include "comm/visa_device_manager.h"
#include "comm/visa_resource.h"
#include "tools/instrument_sim/sim_instrument.h"
#include "tools/instrument_sim/sim_listing_visa.h"
#include "tools/instrument_sim/sim_message_sink.h"

namespace {

using nal::comm_deal_t;
using nal::visa_device_manager_t;
using wavelume_sim::sim_block_keeping_t;
using wavelume_sim::sim_instrument_options_t;
using wavelume_sim::sim_instrument_t;
using wavelume_sim::sim_kept_block_t;
using wavelume_sim::sim_transport_t;
using wavelume_sim::sim_wire_event_t;

constexpr auto transfer_timeout = std::chrono::seconds(120);
constexpr std::size_t fifty_megabytes = 50u << 20;

// A waveform file's bytes: a text header, then random samples that hold every byte value,
// line feeds and zeros included.
QByteArray waveform_bytes(std::size_t size, unsigned seed) {
  QByteArray bytes("CheckCode,00000000000000000000000000000000,FileType,IQ,Version,3.0,IQData,");
  const auto header = static_cast<std::size_t>(bytes.size());
  bytes.resize(static_cast<int>(size));
  char* out = bytes.data();
  std::mt19937_64 random(seed);
  for (std::size_t i = header; i < size; i += 8) {
    const std::uint64_t word = random();
    std::memcpy(out + i, &word, std::min<std::size_t>(8, size - i));
  }
  return bytes;
}

std::string md5_of_block(const QByteArray& data) {
  QCryptographicHash hash(QCryptographicHash::Md5);
  hash.addData("IQDA ", 5);
  hash.addData(data);
  return hash.result().toHex().toStdString();
}

// One simulated instrument and the link's device list and front over it, as the Download
// dialog uses them.
class linked_instrument_t {
 public:
  explicit linked_instrument_t(const sim_instrument_options_t& options) {
    started = instrument.start(options);
    setenv("WAVELUME_VXI11_PORTMAPPER_PORT", std::to_string(instrument.portmapper_port()).c_str(),
           1);
    devices =
        std::make_unique<visa_device_manager_t>(std::make_shared<wavelume_sim::sim_listing_visa_t>(
            std::vector<std::string>{instrument.socket_resource(), instrument.hislip_resource()}));
    deal = std::make_unique<comm_deal_t>(*devices);
    deal->add_tcpip_inst_res(QStringLiteral("127.0.0.1"));
  }

  std::string resource(sim_transport_t transport) const {
    switch (transport) {
      case sim_transport_t::raw_socket:
        return instrument.socket_resource();
      case sim_transport_t::vxi11:
        return instrument.vxi11_resource();
      case sim_transport_t::hislip:
        return instrument.hislip_resource();
    }
    return {};
  }

  // The result that sig_download_data_to_inst_callback reports.
  bool download(sim_transport_t transport, const QByteArray& data) {
    bool reported = false;
    const QString name = QString::fromStdString(resource(transport));
    const auto connection = QObject::connect(
        deal.get(), &comm_deal_t::sig_download_data_to_inst_callback,
        [&](const QString& resName, bool successed) { reported = resName == name && successed; });
    deal->download_waveform_data_to_inst(name, data);
    QObject::disconnect(connection);
    return reported;
  }

  sim_instrument_t instrument;
  bool started = false;
  std::unique_ptr<visa_device_manager_t> devices;
  std::unique_ptr<comm_deal_t> deal;
};

struct transfer_case_t {
  const char* name;
  sim_transport_t transport;
  // 0 leaves the simulator's default.
  std::uint32_t vxi11_max_receive_size;
  std::uint64_t hislip_max_message_size;
};

void PrintTo(const transfer_case_t& test, std::ostream* out) {
  *out << test.name;
}

class SimulatorLinkConcurrency : public testing::TestWithParam<transfer_case_t> {
 protected:
  static sim_instrument_options_t options() {
    sim_instrument_options_t options;
    options.set_keeping(sim_block_keeping_t::md5);
    options.raw_socket.block_idle_gap = std::chrono::milliseconds(300);
    if (GetParam().vxi11_max_receive_size != 0) {
      options.vxi11.max_receive_size = GetParam().vxi11_max_receive_size;
      options.vxi11.reply_fragment_size = 7;
    }
    if (GetParam().hislip_max_message_size != 0) {
      options.hislip.max_message_size = GetParam().hislip_max_message_size;
    }
    return options;
  }
};

TEST_P(SimulatorLinkConcurrency, FiftyMegabyteWaveformArrivesByteIdentical) {
  linked_instrument_t link(options());
  ASSERT_TRUE(link.started);
  const sim_transport_t transport = GetParam().transport;
  const QByteArray data = waveform_bytes(fifty_megabytes, 50);

  ASSERT_TRUE(link.download(transport, data));
  ASSERT_TRUE(link.instrument.record().wait_for_blocks(1, transfer_timeout));
  const std::vector<sim_kept_block_t> blocks = link.instrument.record().blocks();
  ASSERT_EQ(blocks.size(), 1u);
  EXPECT_EQ(blocks[0].transport, transport);
  EXPECT_EQ(blocks[0].size, 5 + fifty_megabytes)
      << "the block must arrive as written, with nothing appended";
  EXPECT_EQ(blocks[0].md5, md5_of_block(data));
  if (GetParam().vxi11_max_receive_size != 0) {
    // The block went in pieces of at most the announced size (a larger one is refused).
    EXPECT_GE(static_cast<std::size_t>(link.instrument.vxi11()->device_write_calls()),
              fifty_megabytes / GetParam().vxi11_max_receive_size);
  }
  if (transport == sim_transport_t::hislip) {
    const std::uint64_t allowed = GetParam().hislip_max_message_size != 0
                                      ? GetParam().hislip_max_message_size
                                      : wavelume_sim::sim_hislip_options_t{}.max_message_size;
    EXPECT_LE(link.instrument.hislip()->largest_payload(), allowed);
  }
}

// The sequence of a download from a file to a resource connected before: the old session
// closes, and the new one sees "*IDN?" with its reply twice (the open, then the check before
// sending), then one block of "IQDA " and the file's bytes unchanged.
TEST_P(SimulatorLinkConcurrency, DownloadFromFileFollowsTheWireSequence) {
  linked_instrument_t link(options());
  ASSERT_TRUE(link.started);
  const sim_transport_t transport = GetParam().transport;
  QTemporaryDir folder;
  ASSERT_TRUE(folder.isValid());
  QFile file(folder.filePath(QStringLiteral("burst.ARB")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(waveform_bytes(300000, 9));
  file.close();
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray data = file.readAll();

  ASSERT_TRUE(link.deal->connect_resource(QString::fromStdString(link.resource(transport))));
  ASSERT_TRUE(link.download(transport, data));
  ASSERT_TRUE(link.instrument.record().wait_for_blocks(1, transfer_timeout));
  const auto first_closed = [](const std::vector<sim_wire_event_t>& events, const auto&) {
    for (const auto& event : events) {
      if (event.kind == sim_wire_event_t::CLOSE) {
        return true;
      }
    }
    return false;
  };
  ASSERT_TRUE(link.instrument.record().wait_until(first_closed, transfer_timeout));

  // Grouped by session: the old session's close may be noticed after the new one's connect.
  std::vector<std::vector<sim_wire_event_t>> sessions;
  for (const auto& event : link.instrument.record().events()) {
    EXPECT_EQ(event.transport, transport);
    const auto same = [&event](const auto& group) { return group[0].session == event.session; };
    const auto group = std::find_if(sessions.begin(), sessions.end(), same);
    if (group == sessions.end()) {
      sessions.push_back({event});
    } else {
      group->push_back(event);
    }
  }
  ASSERT_EQ(sessions.size(), 2u);
  EXPECT_EQ(sessions[0].back().kind, sim_wire_event_t::CLOSE);

  // The new session: connect, then "*IDN?" and its reply twice, then the block.
  const std::vector<sim_wire_event_t>& session = sessions[1];
  std::size_t at = 0;
  ASSERT_EQ(session.at(at++).kind, sim_wire_event_t::CONNECT);
  for (int query = 0; query < 2; ++query) {
    ASSERT_LT(at, session.size());
    EXPECT_EQ(session[at].kind, sim_wire_event_t::WRITE);
    EXPECT_EQ(session[at].head.substr(0, 5), "*IDN?");
    EXPECT_LE(session[at++].size, 6u);
    std::string reply;
    while (at < session.size() && session[at].kind == sim_wire_event_t::READ) {
      reply += session[at++].head;
    }
    EXPECT_EQ(reply.substr(0, 32),
              std::string(wavelume_sim::sim_message_sink_t::identification).substr(0, 32));
  }
  ASSERT_EQ(at + 1, session.size());
  EXPECT_EQ(session[at].kind, sim_wire_event_t::WRITE);
  EXPECT_EQ(session[at].size, 5u + static_cast<std::size_t>(data.size()))
      << "the block must arrive as written, with nothing appended";
  EXPECT_EQ(session[at].head.substr(0, 5), "IQDA ");
  const std::vector<sim_kept_block_t> blocks = link.instrument.record().blocks();
  ASSERT_EQ(blocks.size(), 1u);
  EXPECT_EQ(blocks[0].md5, md5_of_block(data));
}

// A block written in many pieces, as a waveform goes: the instrument sees one message with the
// bytes unchanged, ended only after its last piece (an END on an earlier one would end the
// message there and leave the rest as a second write), and commands end as before afterwards.
TEST_P(SimulatorLinkConcurrency, BlockInPiecesArrivesAsOneMessage) {
  linked_instrument_t link(options());
  ASSERT_TRUE(link.started);
  const sim_transport_t transport = GetParam().transport;
  const QByteArray data = waveform_bytes(3u << 20, 77);
  constexpr std::size_t kept = 1000;
  constexpr std::size_t piece = 65537;
  nal::comm_block_t body;
  body.add_bytes(data.constData(), kept);
  body.add_generated(static_cast<std::size_t>(data.size()) - kept, piece,
                     [&data](std::uint64_t first, std::size_t count, unsigned char* out) {
                       std::memcpy(out, data.constData() + kept + first, count);
                     });
  ASSERT_GT(body.piece_count(), 40u);

  ASSERT_TRUE(link.deal->connect_resource(QString::fromStdString(link.resource(transport))));
  ASSERT_TRUE(link.devices->send_to_current(body));
  ASSERT_TRUE(link.instrument.record().wait_for_blocks(1, transfer_timeout));
  ASSERT_TRUE(link.devices->refresh_current());

  const std::vector<sim_kept_block_t> blocks = link.instrument.record().blocks();
  ASSERT_EQ(blocks.size(), 1u);
  EXPECT_EQ(blocks[0].size, 5u + static_cast<std::size_t>(data.size()));
  EXPECT_EQ(blocks[0].md5, md5_of_block(data));
  std::vector<std::string> writes;
  for (const sim_wire_event_t& event : link.instrument.record().events()) {
    if (event.kind == sim_wire_event_t::WRITE) {
      writes.push_back(event.head.substr(0, 5) + " " + std::to_string(event.size));
    }
  }
  const std::string block_write = "IQDA  " + std::to_string(5 + data.size());
  EXPECT_EQ(writes, (std::vector<std::string>{"*IDN? 5", "*IDN? 5", block_write, "*IDN? 5"}));
  if (transport == sim_transport_t::vxi11) {
    EXPECT_GE(static_cast<std::uint64_t>(link.instrument.vxi11()->device_write_calls()),
              4 + body.piece_count())
        << "three queries, \"IQDA \" and the body's pieces";
  }
}

INSTANTIATE_TEST_SUITE_P(
    Transports, SimulatorLinkConcurrency,
    testing::Values(transfer_case_t{"Socket", sim_transport_t::raw_socket, 0, 0},
                    transfer_case_t{"Vxi11", sim_transport_t::vxi11, 0, 0},
                    transfer_case_t{"Vxi11SmallPieces", sim_transport_t::vxi11, 4096, 0},
                    transfer_case_t{"Hislip", sim_transport_t::hislip, 0, 0},
                    transfer_case_t{"HislipSmallMessages", sim_transport_t::hislip, 0, 8192}),
    [](const testing::TestParamInfo<transfer_case_t>& test) { return test.param.name; });

// Two ticked devices, as the Download dialog sends to them: one after the other, each by its own
// connect, so the last one ends as the current resource and the first stays open.
TEST(SimulatorLinkConcurrencyDevices, TwoTickedDevicesAreServedOneAfterTheOther) {
  sim_instrument_options_t options;
  options.raw_socket.block_idle_gap = std::chrono::milliseconds(300);
  linked_instrument_t first(options);
  linked_instrument_t second(options);
  ASSERT_TRUE(first.started && second.started);
  // One device list holding both instruments, the first by its socket, the second by HiSLIP.
  const std::string first_name = first.instrument.socket_resource();
  const std::string second_name = second.instrument.hislip_resource();
  visa_device_manager_t devices(std::make_shared<wavelume_sim::sim_listing_visa_t>(
      std::vector<std::string>{first_name, second_name}));
  comm_deal_t deal(devices);
  const QByteArray first_data = waveform_bytes(2u << 20, 1);
  const QByteArray second_data = waveform_bytes(3u << 20, 2);

  std::vector<std::pair<QString, bool>> callbacks;
  QObject::connect(
      &deal, &comm_deal_t::sig_download_data_to_inst_callback,
      [&](const QString& resName, bool successed) { callbacks.emplace_back(resName, successed); });
  deal.download_waveform_data_to_inst(QString::fromStdString(first_name), first_data);
  deal.download_waveform_data_to_inst(QString::fromStdString(second_name), second_data);

  ASSERT_EQ(callbacks.size(), 2u);
  EXPECT_EQ(callbacks[0], std::make_pair(QString::fromStdString(first_name), true));
  EXPECT_EQ(callbacks[1], std::make_pair(QString::fromStdString(second_name), true));
  ASSERT_NE(devices.get_current_resource(), nullptr);
  EXPECT_EQ(devices.get_current_resource()->get_resource_name().toStdString(), second_name);

  ASSERT_TRUE(first.instrument.record().wait_for_blocks(1, transfer_timeout));
  ASSERT_TRUE(second.instrument.record().wait_for_blocks(1, transfer_timeout));
  const sim_kept_block_t first_block = first.instrument.record().blocks().at(0);
  const sim_kept_block_t second_block = second.instrument.record().blocks().at(0);
  EXPECT_EQ(first_block.md5, md5_of_block(first_data));
  EXPECT_EQ(second_block.md5, md5_of_block(second_data));

  // The second block did not start before the first, and the first session stays open after
  // its download. The instruments stamp what they read, and a block small enough for the socket
  // buffers may still be unread when the second device is connected: so the blocks are compared,
  // not the second device's first event.
  const auto first_events = first.instrument.record().events();
  const auto second_events = second.instrument.record().events();
  ASSERT_FALSE(first_events.empty());
  EXPECT_EQ(first_events.back().kind, sim_wire_event_t::WRITE);
  EXPECT_EQ(first_events.back().head.substr(0, 5), "IQDA ");
  const auto second_block_write =
      std::find_if(second_events.begin(), second_events.end(), [](const auto& event) {
        return event.kind == sim_wire_event_t::WRITE && event.head.substr(0, 5) == "IQDA ";
      });
  ASSERT_NE(second_block_write, second_events.end());
  EXPECT_LE(first_events.back().time, second_block_write->time);
}

// An instrument switched off after it was connected: the download reports failure, within the
// session timeout, instead of hanging or ending the process.
TEST(SimulatorLinkConcurrencyDevices, InstrumentGoneBeforeDownloadReportsFailure) {
  for (const sim_transport_t transport : {sim_transport_t::raw_socket, sim_transport_t::hislip}) {
    linked_instrument_t link{sim_instrument_options_t{}};
    ASSERT_TRUE(link.started);
    ASSERT_TRUE(link.deal->connect_resource(QString::fromStdString(link.resource(transport))));
    link.instrument.stop();
    EXPECT_FALSE(link.download(transport, waveform_bytes(1u << 20, 4)))
        << wavelume_sim::sim_transport_name(transport);
    EXPECT_TRUE(link.instrument.record().blocks().empty());
  }
}

}  // namespace

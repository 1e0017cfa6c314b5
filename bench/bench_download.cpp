// Download of a 100 MB waveform to the loopback instrument simulator through comm_deal_t, over
// the raw socket, VXI-11 and HiSLIP: megabytes per second from the download call to the last
// byte received by the instrument, and the time from the call to the block's first byte on the
// wire (the connect and two "*IDN?" queries come first). The reference is a plain blocking
// send() loop of the same block into the same simulator socket, so the ratio shows what the
// link costs over the bare TCP stream. Rates are bytes per second; wire_ms is the time from the
// block's first byte to its last as the instrument saw them.

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QByteArray>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench_ratio_reporter.h"
#include "comm/comm_deal.h"
#include "comm/visa_device_manager.h"
#include "tools/instrument_sim/sim_instrument.h"
#include "tools/instrument_sim/sim_listing_visa.h"

namespace {

using std::chrono::steady_clock;
using wavelume_sim::sim_transport_t;

constexpr std::size_t waveform_size = 100u << 20;
constexpr auto block_timeout = std::chrono::seconds(120);

struct bench_setup_t {
  bench_setup_t() {
    wavelume_sim::sim_instrument_options_t options;
    // Hashing 100 MB on the receiving thread would slow the sender down; the tests check bytes.
    options.set_keeping(wavelume_sim::sim_block_keeping_t::size_only);
    options.raw_socket.block_idle_gap = std::chrono::milliseconds(200);
    // "*IDN?" goes out without a line feed, so the simulated instrument answers it only once the
    // line stays idle for this long; kept short, so that time to first byte measures the link.
    options.raw_socket.command_idle_gap = std::chrono::milliseconds(1);
    started = instrument.start(options);
    setenv("WAVELUME_VXI11_PORTMAPPER_PORT", std::to_string(instrument.portmapper_port()).c_str(),
           1);
    devices = std::make_unique<nal::visa_device_manager_t>(
        std::make_shared<wavelume_sim::sim_listing_visa_t>(
            std::vector<std::string>{instrument.socket_resource(), instrument.hislip_resource()}));
    deal = std::make_unique<nal::comm_deal_t>(*devices);
    deal->add_tcpip_inst_res(QStringLiteral("127.0.0.1"));
    waveform.resize(static_cast<int>(waveform_size));
    char* bytes = waveform.data();
    for (std::size_t i = 0; i < waveform_size; ++i) {
      bytes[i] = static_cast<char>((i * 2654435761u) >> 13);
    }
  }

  std::string resource(sim_transport_t transport) const {
    return transport == sim_transport_t::raw_socket ? instrument.socket_resource()
           : transport == sim_transport_t::vxi11    ? instrument.vxi11_resource()
                                                    : instrument.hislip_resource();
  }

  wavelume_sim::sim_instrument_t instrument;
  bool started = false;
  std::unique_ptr<nal::visa_device_manager_t> devices;
  std::unique_ptr<nal::comm_deal_t> deal;
  QByteArray waveform;
};

bench_setup_t& setup() {
  static bench_setup_t instance;
  return instance;
}

// Waits for the block after `blocks_before` and returns its write event: first and last byte.
bool received_block(std::size_t blocks_before, wavelume_sim::sim_wire_event_t& write) {
  auto& record = setup().instrument.record();
  if (!record.wait_for_blocks(blocks_before + 1, block_timeout)) {
    return false;
  }
  const auto events = record.events();
  for (auto it = events.rbegin(); it != events.rend(); ++it) {
    if (it->kind == wavelume_sim::sim_wire_event_t::WRITE && it->head.rfind("IQDA ", 0) == 0) {
      write = *it;
      return true;
    }
  }
  return false;
}

double milliseconds(steady_clock::duration span) {
  return std::chrono::duration<double, std::milli>(span).count();
}

// Runs `send_block` once per iteration, each time from the call to the block's last byte at the
// instrument, and reports bytes per second, first_byte_ms and wire_ms.
void measure(benchmark::State& state, const std::function<bool()>& send_block) {
  double first_byte_ms = 0.0;
  double wire_ms = 0.0;
  for (auto _ : state) {
    const std::size_t blocks_before = setup().instrument.record().blocks().size();
    const auto pressed = steady_clock::now();
    wavelume_sim::sim_wire_event_t write;
    if (!send_block() || !received_block(blocks_before, write)) {
      state.SkipWithError("the block did not arrive");
      return;
    }
    state.SetIterationTime(std::chrono::duration<double>(write.last_byte_time - pressed).count());
    first_byte_ms += milliseconds(write.time - pressed);
    wire_ms += milliseconds(write.last_byte_time - write.time);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * waveform_size));
  state.counters["first_byte_ms"] =
      benchmark::Counter(first_byte_ms, benchmark::Counter::kAvgIterations);
  state.counters["wire_ms"] = benchmark::Counter(wire_ms, benchmark::Counter::kAvgIterations);
}

void download(benchmark::State& state, sim_transport_t transport) {
  bench_setup_t& s = setup();
  const QString name = QString::fromStdString(s.resource(transport));
  measure(state, [&s, &name] {
    bool sent = false;
    const auto connection =
        QObject::connect(s.deal.get(), &nal::comm_deal_t::sig_download_data_to_inst_callback,
                         [&sent](const QString&, bool successed) { sent = successed; });
    s.deal->download_waveform_data_to_inst(name, s.waveform);
    QObject::disconnect(connection);
    return sent;
  });
}

// The reference: the same block through one blocking send() loop on a fresh loopback connection.
void plain_send_loop(benchmark::State& state) {
  bench_setup_t& s = setup();
  const QByteArray block = QByteArray("IQDA ", 5) + s.waveform;
  measure(state, [&s, &block] {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(s.instrument.socket_port());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bool sent = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    for (int offset = 0; sent && offset < block.size();) {
      const ssize_t count = ::send(socket, block.constData() + offset,
                                   static_cast<std::size_t>(block.size() - offset), MSG_NOSIGNAL);
      sent = count > 0;
      offset += sent ? static_cast<int>(count) : 0;
    }
    ::close(socket);
    return sent;
  });
}

}  // namespace

int main(int argc, char** argv) {
  if (!setup().started) {
    std::fprintf(stderr, "bench_download: the instrument simulator did not start\n");
    return 1;
  }
  const std::pair<const char*, sim_transport_t> transports[] = {
      {"download_100MB/socket", sim_transport_t::raw_socket},
      {"download_100MB/vxi11", sim_transport_t::vxi11},
      {"download_100MB/hislip", sim_transport_t::hislip}};
  for (const auto& [name, transport] : transports) {
    benchmark::RegisterBenchmark(name, download, transport)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(5)
        ->UseManualTime();
  }
  benchmark::RegisterBenchmark("plain_send_loop_100MB", plain_send_loop)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(5)
      ->UseManualTime();
  return wavelume_bench::run_benchmarks_with_ratios(
      argc, argv,
      {{"socket download / plain send() loop (bytes)", "download_100MB/socket", "plain_send_loop"},
       {"VXI-11 download / plain send() loop (bytes)", "download_100MB/vxi11", "plain_send_loop"},
       {"HiSLIP download / plain send() loop (bytes)", "download_100MB/hislip",
        "plain_send_loop"}});
}

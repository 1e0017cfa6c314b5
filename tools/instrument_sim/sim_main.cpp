// wavelume-instrument-sim: the loopback instrument simulator as a program, for checks with
// independent clients and for trying downloads by hand. It prints its ports on one line,
//   socket PORT vxi11 PORT portmapper PORT hislip PORT
// runs until standard input closes or SIGINT/SIGTERM arrives, then prints what it recorded:
//   event TRANSPORT SESSION connect|write|read|close SIZE HEAD_HEX
//   block TRANSPORT SESSION SIZE MD5
// and ends with "end".

#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tools/instrument_sim/sim_instrument.h"

namespace {

using wavelume_sim::sim_block_keeping_t;
using wavelume_sim::sim_instrument_options_t;
using wavelume_sim::sim_instrument_t;
using wavelume_sim::sim_wire_event_t;

const char usage[] =
    "usage: wavelume-instrument-sim [--socket-port N] [--vxi11-port N] [--portmapper-port N]\n"
    "         [--hislip-port N] [--max-recv-size N] [--reply-fragment-size N]\n"
    "         [--hislip-max-message-size N] [--block-idle-gap-ms N] [--keep bytes|md5|size]\n"
    "Ports default to 0: a free port chosen by the system.\n";

bool parse_number(const char* text, unsigned long long limit, unsigned long long& value) {
  char* end = nullptr;
  errno = 0;
  value = std::strtoull(text, &end, 10);
  return text[0] >= '0' && text[0] <= '9' && *end == '\0' && errno == 0 && value <= limit;
}

bool parse_arguments(int argc, char** argv, sim_instrument_options_t& options) {
  for (int i = 1; i < argc; i += 2) {
    const std::string name = argv[i];
    if (i + 1 >= argc) {
      return false;
    }
    const char* text = argv[i + 1];
    if (name == "--keep") {
      const std::string keep = text;
      if (keep != "bytes" && keep != "md5" && keep != "size") {
        return false;
      }
      options.set_keeping(keep == "bytes" ? sim_block_keeping_t::bytes
                          : keep == "md5" ? sim_block_keeping_t::md5
                                          : sim_block_keeping_t::size_only);
      continue;
    }
    unsigned long long value = 0;
    const bool is_port = name.size() > 5 && name.compare(name.size() - 5, 5, "-port") == 0;
    if (!parse_number(text, is_port ? 65535 : 0x7FFFFFFF, value)) {
      return false;
    }
    const auto port = static_cast<std::uint16_t>(value);
    if (name == "--socket-port") {
      options.socket_port = port;
    } else if (name == "--vxi11-port") {
      options.vxi11_port = port;
    } else if (name == "--portmapper-port") {
      options.portmapper_port = port;
    } else if (name == "--hislip-port") {
      options.hislip_port = port;
    } else if (name == "--max-recv-size" && value > 0) {
      options.vxi11.max_receive_size = static_cast<std::uint32_t>(value);
    } else if (name == "--reply-fragment-size") {
      options.vxi11.reply_fragment_size = static_cast<std::size_t>(value);
    } else if (name == "--hislip-max-message-size" && value > 0) {
      options.hislip.max_message_size = value;
    } else if (name == "--block-idle-gap-ms") {
      options.raw_socket.block_idle_gap = std::chrono::milliseconds(value);
    } else {
      return false;
    }
  }
  return true;
}

std::string hex(const std::string& bytes) {
  static const char digits[] = "0123456789abcdef";
  std::string text;
  for (const unsigned char c : bytes) {
    text.push_back(digits[c >> 4]);
    text.push_back(digits[c & 15]);
  }
  return text.empty() ? "-" : text;
}

void print_record(sim_instrument_t& instrument) {
  static const char* const kinds[] = {"connect", "write", "read", "close"};
  for (const auto& event : instrument.record().events()) {
    std::printf("event %s %d %s %zu %s\n", wavelume_sim::sim_transport_name(event.transport),
                event.session, kinds[event.kind], event.size, hex(event.head).c_str());
  }
  for (const auto& block : instrument.record().blocks()) {
    std::printf("block %s %d %zu %s\n", wavelume_sim::sim_transport_name(block.transport),
                block.session, block.size, block.md5.empty() ? "-" : block.md5.c_str());
  }
  std::printf("end\n");
}

}  // namespace

int main(int argc, char** argv) {
  sim_instrument_options_t options;
  if (!parse_arguments(argc, argv, options)) {
    std::fputs(usage, stderr);
    return 2;
  }
  // Blocked before any server thread exists, so that only the signal descriptor sees them.
  sigset_t stop_signals;
  sigemptyset(&stop_signals);
  sigaddset(&stop_signals, SIGINT);
  sigaddset(&stop_signals, SIGTERM);
  sigaddset(&stop_signals, SIGHUP);
  pthread_sigmask(SIG_BLOCK, &stop_signals, nullptr);
  const int signal_descriptor = signalfd(-1, &stop_signals, SFD_CLOEXEC);

  sim_instrument_t instrument;
  if (signal_descriptor < 0 || !instrument.start(options)) {
    std::fprintf(stderr, "wavelume-instrument-sim: cannot listen on the ports asked for: %s\n",
                 std::strerror(errno));
    return 1;
  }
  std::printf("socket %u vxi11 %u portmapper %u hislip %u\n", instrument.socket_port(),
              instrument.vxi11_port(), instrument.portmapper_port(), instrument.hislip_port());
  std::fflush(stdout);

  pollfd waits[2] = {{STDIN_FILENO, POLLIN, 0}, {signal_descriptor, POLLIN, 0}};
  for (;;) {
    if (::poll(waits, 2, -1) < 0) {
      if (errno == EINTR) {
        continue;
      }
      break;
    }
    if (waits[1].revents != 0) {
      break;
    }
    char discarded[256];
    if (waits[0].revents != 0 && ::read(STDIN_FILENO, discarded, sizeof discarded) <= 0) {
      break;
    }
  }
  instrument.stop();
  print_record(instrument);
  ::close(signal_descriptor);
  return 0;
}

#include "cli/cli_phase.h"

#include <sys/resource.h>
#include <unistd.h>

#include <iomanip>

namespace wavelume::cli {

namespace {
constexpr auto redraw_interval = std::chrono::milliseconds(250);
}

cli_phase_t::cli_phase_t(std::ostream& errors, std::string label, bool live)
    : _errors(errors), _label(std::move(label)), _start(std::chrono::steady_clock::now()) {
  if (live) {
    _redraw = std::thread([this] { _redraw_until_finished(); });
  }
}

cli_phase_t::~cli_phase_t() {
  finish();
}

double cli_phase_t::finish() {
  {
    std::lock_guard<std::mutex> lock(_mutex);
    if (!_finished) {
      _finished = true;
      _seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - _start).count();
    }
  }
  _finished_signal.notify_all();
  if (_redraw.joinable()) {
    _redraw.join();
    _errors << "\r\033[K" << std::flush;
  }
  return _seconds;
}

void cli_phase_t::_redraw_until_finished() {
  std::unique_lock<std::mutex> lock(_mutex);
  while (!_finished_signal.wait_for(lock, redraw_interval, [this] { return _finished; })) {
    const double elapsed =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - _start).count();
    _errors << "\r" << _label << "... " << std::fixed << std::setprecision(1) << elapsed << " s"
            << std::defaultfloat << std::flush;
  }
}

double cli_phase_t::peak_memory_bytes() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * 1024.0;  // reported in KiB on Linux
}

bool cli_phase_t::errors_on_terminal() {
  return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace wavelume::cli

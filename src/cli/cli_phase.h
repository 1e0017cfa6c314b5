#pragma once
// One stage of a long command (computing, writing). On a terminal it keeps a live line with the
// elapsed time on standard error; when asked, it reports the stage's time and the process's peak
// memory so far, so that a run shows where its time and memory go.

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>

namespace wavelume::cli {

class cli_phase_t {
 public:
  // `live`: redraw a progress line while the stage runs (only sensible on a terminal).
  cli_phase_t(std::ostream& errors, std::string label, bool live);
  ~cli_phase_t();
  cli_phase_t(const cli_phase_t&) = delete;
  cli_phase_t& operator=(const cli_phase_t&) = delete;

  // Ends the stage (clearing the live line) and returns its duration in seconds.
  double finish();

  // The process's peak resident memory so far, in bytes.
  static double peak_memory_bytes();
  // Whether standard error is a terminal.
  static bool errors_on_terminal();

 private:
  void _redraw_until_finished();

  std::ostream& _errors;
  const std::string _label;
  const std::chrono::steady_clock::time_point _start;
  std::mutex _mutex;
  std::condition_variable _finished_signal;
  bool _finished = false;
  double _seconds = 0.0;
  std::thread _redraw;
};

}  // namespace wavelume::cli

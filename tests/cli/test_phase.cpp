// The live progress line of long commands: drawn by a thread of its own while a stage runs.

#include <gtest/gtest.h>

#include <sstream>
#include <thread>

#include "cli/cli_phase.h"

namespace {

TEST(CliPhaseConcurrency, LiveLineShowsElapsedTimeAndIsClearedAtTheEnd) {
  std::ostringstream errors;
  wavelume::cli::cli_phase_t phase(errors, "computing the waveform", true);
  std::this_thread::sleep_for(std::chrono::milliseconds(600));
  const double seconds = phase.finish();
  EXPECT_GE(seconds, 0.6);
  const std::string shown = errors.str();
  EXPECT_NE(shown.find("\rcomputing the waveform... 0."), std::string::npos) << shown;
  EXPECT_EQ(shown.substr(shown.size() - 4), "\r\033[K");  // the line is erased when done
  EXPECT_EQ(phase.finish(), seconds);                     // finishing twice changes nothing
}

TEST(CliPhaseConcurrency, QuietWhenNotLive) {
  std::ostringstream errors;
  wavelume::cli::cli_phase_t phase(errors, "writing", false);
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  phase.finish();
  EXPECT_TRUE(errors.str().empty());
}

}  // namespace

#pragma once
// `wavelume-cli info FILE.ARB [--json]`: what a waveform file holds (header fields, sample count,
// duration, rms, peak, crest factor) and whether its seal matches.

#include <ostream>
#include <string>

namespace wavelume::cli {

// Prints the report to `out` (text, or one JSON object with `json`) and problems to `errors`.
// Returns the exit status: 0 read, 2 unreadable or not a waveform file. A seal mismatch is a
// warning on `errors` and still returns 0.
int run_info(const std::string& path, bool json, std::ostream& out, std::ostream& errors);

}  // namespace wavelume::cli

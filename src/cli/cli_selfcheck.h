#pragma once
// `wavelume-cli selfcheck`: checks the signal library against independent references on this
// machine (transforms against a direct DFT, fast against direct convolution, the Nyquist
// property of the pulse filters) and measures the filter throughput.

#include <ostream>

namespace wavelume::cli {

// Prints one line per check and a summary to `report`; returns the process exit status
// (0 all checks passed, 1 otherwise).
int run_selfcheck(std::ostream& report);

}  // namespace wavelume::cli

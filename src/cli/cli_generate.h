#pragma once
// The commands `protocols`, `defaults` and `generate` of wavelume-cli.

#include <ostream>
#include <string>
#include <vector>

namespace wavelume::cli {

// Each returns the exit status: 0 done, 1 no waveform was produced, 2 bad usage or unreadable
// input (with a message on `errors` that says what to fix).
int run_protocols(std::ostream& out);
int run_defaults(const std::vector<std::string>& arguments, std::ostream& out,
                 std::ostream& errors);
// arguments: SOURCE [--tab N] [--set PATH=VALUE]... -o OUT
int run_generate(const std::vector<std::string>& arguments, std::ostream& out,
                 std::ostream& errors);

}  // namespace wavelume::cli

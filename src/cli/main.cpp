// wavelume-cli: runs the waveform engines without a display.

#include <iostream>
#include <string>

#include "cli/cli_info.h"
#include "cli/cli_selfcheck.h"

namespace {

constexpr const char* usage =
    "Usage: wavelume-cli COMMAND\n"
    "\n"
    "Commands:\n"
    "  info FILE.ARB [--json]  header fields, samples, duration, rms, peak, PAPR and seal of a\n"
    "                          waveform file\n"
    "  selfcheck               check the signal library on this machine and measure its speed\n"
    "  help                    show this text\n";

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "selfcheck" && argc == 2) {
    return wavelume::cli::run_selfcheck(std::cout);
  }
  if (command == "info" && (argc == 3 || (argc == 4 && std::string(argv[3]) == "--json"))) {
    return wavelume::cli::run_info(argv[2], argc == 4, std::cout, std::cerr);
  }
  if (command == "help" || command == "--help" || command == "-h") {
    std::cout << usage;
    return 0;
  }
  std::cerr << (command.empty() ? "wavelume-cli: no command given\n"
                                : "wavelume-cli: unknown command or arguments: '" + command + "'\n")
            << usage;
  return 2;
}

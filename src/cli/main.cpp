// wavelume-cli: runs the waveform engines without a display.

#include <iostream>
#include <string>

#include "cli/cli_selfcheck.h"

namespace {

constexpr const char* usage =
    "Usage: wavelume-cli COMMAND\n"
    "\n"
    "Commands:\n"
    "  selfcheck    check the signal library on this machine and measure its speed\n"
    "  help         show this text\n";

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "selfcheck" && argc == 2) {
    return wavelume::cli::run_selfcheck(std::cout);
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

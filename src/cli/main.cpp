// wavelume-cli: runs the waveform engines without a display.

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "cli/cli_download.h"
#include "cli/cli_generate.h"
#include "cli/cli_info.h"
#include "cli/cli_selfcheck.h"

namespace {

constexpr const char* usage =
    "Usage: wavelume-cli COMMAND\n"
    "\n"
    "Commands:\n"
    "  protocols               list protocol names and their state-file texts\n"
    "  defaults PROTOCOL [-o FILE.xml]\n"
    "                          print the default ProtocolConfiguration element\n"
    "  generate SOURCE [--tab N] [--set PATH=VALUE]... [--timing] -o OUT\n"
    "                          compute a waveform from a protocol name, .state, .project or\n"
    "                          .xml file into OUT (.ARB, .csv or .sigmf-data); --timing\n"
    "                          reports the time and peak memory of computing and writing\n"
    "  info FILE.ARB [--json]  header fields, samples, duration, rms, peak, PAPR and seal of a\n"
    "                          waveform file\n"
    "  instruments [--add ADDRESS]...\n"
    "                          list the instruments found and added, with their identification\n"
    "  download RESOURCE SOURCE [--tab N] [--set PATH=VALUE]...\n"
    "                          send a waveform (computed from SOURCE as for generate, or an\n"
    "                          .ARB file as it is) to an instrument; exit 3 when it fails\n"
    "  selfcheck               check the signal library on this machine and measure its speed\n"
    "  help                    show this text\n";

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "selfcheck" && argc == 2) {
    return wavelume::cli::run_selfcheck(std::cout);
  }
  const std::vector<std::string> rest(argv + std::min(argc, 2), argv + argc);
  if (command == "protocols" && argc == 2) {
    return wavelume::cli::run_protocols(std::cout);
  }
  if (command == "defaults" && argc >= 3) {
    return wavelume::cli::run_defaults(rest, std::cout, std::cerr);
  }
  if (command == "generate") {
    return wavelume::cli::run_generate(rest, std::cout, std::cerr);
  }
  if (command == "info" && (argc == 3 || (argc == 4 && std::string(argv[3]) == "--json"))) {
    return wavelume::cli::run_info(argv[2], argc == 4, std::cout, std::cerr);
  }
  if (command == "instruments") {
    return wavelume::cli::run_instruments(rest, std::cout, std::cerr);
  }
  if (command == "download") {
    return wavelume::cli::run_download(rest, std::cout, std::cerr);
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

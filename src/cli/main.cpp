// wavelume-cli: runs the waveform engines without a display.

#include <algorithm>
#include <exception>
#include <iostream>
#include <map>
#include <new>
#include <string>
#include <vector>

#include "cli/cli_download.h"
#include "cli/cli_generate.h"
#include "cli/cli_info.h"
#include "cli/cli_selfcheck.h"

namespace {

constexpr const char* usage =
    "Usage: wavelume-cli COMMAND [ARGUMENTS]\n"
    "\n"
    "Commands:\n"
    "  protocols      list protocol names and their state-file texts\n"
    "  defaults       print the default ProtocolConfiguration element of a protocol\n"
    "  generate       compute a waveform into an .ARB, .csv or .sigmf-data file\n"
    "  info           describe a waveform file (.ARB or SigMF)\n"
    "  instruments    list the instruments found and added\n"
    "  download       send a waveform to an instrument\n"
    "  selfcheck      check the signal library on this machine and measure its speed\n"
    "\n"
    "'wavelume-cli COMMAND --help' describes a command; '--version' prints the version.\n"
    "Exit status: 0 done, 1 no waveform, 2 bad usage or unreadable input, 3 instrument failure.\n";

const std::map<std::string, std::string>& command_help() {
  static const std::map<std::string, std::string> help = {
      {"protocols",
       "Usage: wavelume-cli protocols\n"
       "Lists each protocol's command-line name and its state-file text.\n"},
      {"defaults",
       "Usage: wavelume-cli defaults PROTOCOL [-o FILE.xml]\n"
       "Prints (or writes) the ProtocolConfiguration element a new page of PROTOCOL starts with;\n"
       "its element paths are what --set edits.\n"},
      {"generate",
       "Usage: wavelume-cli generate SOURCE [--tab N] [--set PATH=VALUE]... [--strict] [--timing]\n"
       "                             -o OUT\n"
       "SOURCE is a protocol name, a .state or .project file (--tab picks the tab, from 0;\n"
       "default the current one) or an .xml file holding one ProtocolConfiguration element.\n"
       "--set edits an element below ProtocolConfiguration (A/B[k]/C=VALUE) before the\n"
       "configuration is read, so limits and cascades apply; a value that is not taken as\n"
       "given is reported on standard error, and --strict makes that an error (exit 2).\n"
       "OUT ends in .ARB (waveform file), .csv (I,Q per line) or .sigmf-data (with a\n"
       ".sigmf-meta beside it holding the sample rate and the annotations).\n"
       "--timing reports the time and peak memory of computing and of writing.\n"},
      {"info",
       "Usage: wavelume-cli info FILE [--json]\n"
       "FILE is an .ARB waveform file (header fields, samples, duration, rms, peak, PAPR and\n"
       "seal) or a SigMF recording (.sigmf-meta or .sigmf-data: rate, samples and annotations).\n"},
      {"instruments",
       "Usage: wavelume-cli instruments [--add ADDRESS]...\n"
       "Lists the instruments found and added, with their *IDN? answer.\n"},
      {"download",
       "Usage: wavelume-cli download RESOURCE SOURCE [--tab N] [--set PATH=VALUE]... [--strict]\n"
       "Sends the waveform of SOURCE (as for generate, or an .ARB file as it is) to the\n"
       "instrument at RESOURCE as one block; exit 3 when the instrument cannot be reached or\n"
       "does not take the whole block.\n"},
      {"selfcheck",
       "Usage: wavelume-cli selfcheck\n"
       "Checks the signal library on this machine and measures its speed.\n"},
  };
  return help;
}

int run(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  const std::vector<std::string> rest(argv + std::min(argc, 2), argv + argc);
  if (command == "--version" || command == "version") {
    std::cout << "wavelume-cli " << WAVELUME_VERSION << "\n";
    return 0;
  }
  if (command == "help" || command == "--help" || command == "-h") {
    std::cout << usage;
    return 0;
  }
  const auto help = command_help().find(command);
  if (help != command_help().end() &&
      std::any_of(rest.begin(), rest.end(),
                  [](const std::string& word) { return word == "--help" || word == "-h"; })) {
    std::cout << help->second;
    return 0;
  }
  if (command == "selfcheck" && rest.empty()) {
    return wavelume::cli::run_selfcheck(std::cout);
  }
  if (command == "protocols" && rest.empty()) {
    return wavelume::cli::run_protocols(std::cout);
  }
  if (command == "defaults" && !rest.empty()) {
    return wavelume::cli::run_defaults(rest, std::cout, std::cerr);
  }
  if (command == "generate") {
    return wavelume::cli::run_generate(rest, std::cout, std::cerr);
  }
  if (command == "info" && (rest.size() == 1 || (rest.size() == 2 && rest[1] == "--json"))) {
    return wavelume::cli::run_info(rest[0], rest.size() == 2, std::cout, std::cerr);
  }
  if (command == "instruments") {
    return wavelume::cli::run_instruments(rest, std::cout, std::cerr);
  }
  if (command == "download") {
    return wavelume::cli::run_download(rest, std::cout, std::cerr);
  }
  if (help != command_help().end()) {
    std::cerr << "wavelume-cli " << command << ": wrong arguments\n" << help->second;
    return 2;
  }
  std::cerr << (command.empty() ? "wavelume-cli: no command given\n"
                                : "wavelume-cli: unknown command '" + command + "'\n")
            << usage;
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  // No argument, file or value may end the tool abnormally: whatever escapes a command is
  // reported as bad input.
  try {
    return run(argc, argv);
  } catch (const std::bad_alloc&) {
    std::cerr << "wavelume-cli: out of memory; try a shorter waveform\n";
  } catch (const std::exception& error) {
    std::cerr << "wavelume-cli: " << error.what() << "\n";
  }
  return 2;
}

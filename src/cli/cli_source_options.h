#pragma once
// The arguments that `generate` and `download` share: positional words, `--tab N`, repeated
// `--set PATH=VALUE`, `--strict`, and for `generate` also `-o OUT` and `--timing`; and the
// configuration they describe, loaded through its own reader so that limits and cascades apply.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cfg/cfg_protocol_base.h"
#include "cli/cli_setting_report.h"

namespace wavelume::cli {

struct cli_source_options_t {
  std::vector<std::string> positional;
  std::optional<nal::uint64> tab;
  std::vector<std::string> settings;
  std::string output;
  bool timing = false;
  // A --set value the reader did not take as given is an error, not a warning.
  bool strict = false;
};

// Parses `arguments`; `with_output` admits -o and --timing. False with a message in `error` for
// an unknown option, a missing value or a positional count other than `positional_count`.
bool parse_source_options(const std::vector<std::string>& arguments, std::size_t positional_count,
                          bool with_output, cli_source_options_t& options, std::string& error);

// The configuration of `source` after the edits, read by its own loader; null with a message in
// `error` otherwise. `protocol_text` receives the element's ProtocolType, `changes` the edits
// the loader did not take as given.
std::unique_ptr<nal::cfg_protocol_base_t> load_configuration(
    const std::string& source, const cli_source_options_t& options, std::string& protocol_text,
    std::vector<cli_setting_change_t>& changes, std::string& error);

}  // namespace wavelume::cli

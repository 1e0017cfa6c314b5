#pragma once
// The --set values that a configuration's reader did not take as given: an enumeration text it
// does not know (the value stays as it was) or a number it clamped to its limits. The readers'
// rules stay; the tool says what happened, one line per value, and --strict refuses the run.

#include <ostream>
#include <string>
#include <vector>

#include "cfg/cfg_enum_miss_recorder.h"
#include "cfg/cfg_protocol_base.h"

namespace wavelume::cli {

struct cli_setting_change_t {
  std::string path;
  std::string asked;
  std::string taken;
  // The texts the element accepts, for an enumeration.
  std::vector<std::string> accepted;
};

// Compares each "PATH=VALUE" of `settings` with the element as `configuration` saves it now;
// `misses` are the enumeration texts its reader did not know. Numbers compare by value.
std::vector<cli_setting_change_t> settings_not_taken(
    const std::vector<std::string>& settings, const nal::cfg_protocol_base_t& configuration,
    const std::vector<nal::cfg_enum_miss_recorder_t::miss_t>& misses);

// Prints one line per change to `errors`, prefixed with `command`: path, asked, taken and the
// accepted texts. False when `strict` and there was any.
bool report_setting_changes(const std::string& command,
                            const std::vector<cli_setting_change_t>& changes, bool strict,
                            std::ostream& errors);

}  // namespace wavelume::cli

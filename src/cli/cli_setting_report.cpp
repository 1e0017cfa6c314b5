#include "cli/cli_setting_report.h"

#include <cstdlib>

#include "cli/cli_source.h"

namespace wavelume::cli {

namespace {

bool same_value(const std::string& asked, const std::string& taken) {
  if (is_number(asked) && is_number(taken)) {
    return std::strtod(asked.c_str(), nullptr) == std::strtod(taken.c_str(), nullptr);
  }
  return asked == taken;
}

std::string joined(const std::vector<std::string>& texts) {
  std::string line;
  for (const std::string& text : texts) {
    line += (line.empty() ? "" : ", ") + text;
  }
  return line;
}

}  // namespace

std::vector<cli_setting_change_t> settings_not_taken(
    const std::vector<std::string>& settings, const nal::cfg_protocol_base_t& configuration,
    const std::vector<nal::cfg_enum_miss_recorder_t::miss_t>& misses) {
  pugi::xml_document document;
  pugi::xml_node saved = document.append_child("ProtocolConfiguration");
  configuration.save_to_xml(saved);
  std::vector<cli_setting_change_t> changes;
  for (const std::string& setting : settings) {
    cli_setting_change_t change;
    std::string ignored;
    if (!split_setting(setting, change.path, change.asked, ignored)) {
      continue;
    }
    const pugi::xml_node node = find_setting(saved, change.path, ignored);
    if (!node) {
      // Not saved back, as a preset may drop an element: nothing to compare.
      continue;
    }
    change.taken = node.text().get();
    if (same_value(change.asked, change.taken)) {
      continue;
    }
    for (const auto& miss : misses) {
      if (miss.text == change.asked) {
        change.accepted = miss.accepted;
      }
    }
    changes.push_back(std::move(change));
  }
  return changes;
}

bool report_setting_changes(const std::string& command,
                            const std::vector<cli_setting_change_t>& changes, bool strict,
                            std::ostream& errors) {
  for (const cli_setting_change_t& change : changes) {
    errors << command << ": " << (strict ? "error" : "warning") << ": --set " << change.path
           << ": asked '" << change.asked << "', took '" << change.taken << "'";
    if (!change.accepted.empty()) {
      errors << " (accepted: " << joined(change.accepted) << ")";
    } else if (is_number(change.asked)) {
      errors << " (limited to its range)";
    }
    errors << "\n";
  }
  return !(strict && !changes.empty());
}

}  // namespace wavelume::cli

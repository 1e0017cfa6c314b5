#include "cli/cli_source.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "cfg/cfg_protocol_state.h"
#include "cli/cli_protocol_names.h"
#include "cli/cli_text.h"

namespace wavelume::cli {

namespace {

constexpr std::uintmax_t max_xml_bytes = std::uintmax_t{64} << 20;

bool load_protocol(nal::protocol_type_t type, pugi::xml_document& document,
                   pugi::xml_node& configuration, std::string& error) {
  const auto config = preset_configuration(type);
  if (!config) {
    error = "this build has no engine for that protocol yet";
    return false;
  }
  configuration = document.append_child("ProtocolConfiguration");
  return config->save_to_xml(configuration);
}

bool load_state(const std::string& path, std::optional<nal::uint64> tab,
                pugi::xml_document& document, pugi::xml_node& configuration, std::string& error) {
  std::vector<std::unique_ptr<nal::cfg_protocol_base_t>> tabs;
  nal::uint64 current = 0;
  if (!nal::cfg_protocol_state_t::load_protocol_state(path, tabs, current)) {
    error = "cannot read '" + path + "' as a state or project file";
    return false;
  }
  const nal::uint64 index = tab.value_or(current);
  if (index >= tabs.size()) {
    error = "'" + path + "' has " + std::to_string(tabs.size()) + " tab(s); --tab " +
            std::to_string(index) + " is out of range (tabs count from 0)";
    return false;
  }
  if (!tabs[index]) {
    error = "tab " + std::to_string(index) + " of '" + path +
            "' is a Home tab or a protocol this build cannot compute";
    return false;
  }
  configuration = document.append_child("ProtocolConfiguration");
  return tabs[index]->save_to_xml(configuration);
}

bool load_xml(const std::string& path, pugi::xml_document& document, pugi::xml_node& configuration,
              std::string& error) {
  std::error_code size_error;
  const std::uintmax_t size = std::filesystem::file_size(path, size_error);
  if (size_error || size > max_xml_bytes) {
    error = size_error ? "cannot read '" + path + "'" : "'" + path + "' is larger than 64 MiB";
    return false;
  }
  const pugi::xml_parse_result parsed = document.load_file(path.c_str());
  if (!parsed) {
    error = "'" + path + "' is not well-formed XML: " + parsed.description();
    return false;
  }
  configuration = document.find_node([](const pugi::xml_node& node) {
    return std::string(node.name()) == "ProtocolConfiguration";
  });
  if (!configuration) {
    error = "'" + path + "' holds no ProtocolConfiguration element";
    return false;
  }
  return true;
}

std::string child_names(const pugi::xml_node& node) {
  std::string names;
  for (const pugi::xml_node& child : node.children()) {
    if (child.type() == pugi::node_element) {
      names += (names.empty() ? "" : ", ") + std::string(child.name());
    }
  }
  return names.empty() ? "(none)" : names;
}

}  // namespace

bool is_number(const std::string& text) {
  if (text.empty()) {
    return false;
  }
  char* end = nullptr;
  std::strtod(text.c_str(), &end);
  return end != nullptr && *end == '\0';
}

bool is_flag(const std::string& text) {
  return text == "true" || text == "false";
}

bool load_source(const std::string& source, std::optional<nal::uint64> tab,
                 pugi::xml_document& document, pugi::xml_node& configuration, std::string& error) {
  if (const nal::cfg_protocol_row_t* row = protocol_of_name(source)) {
    return load_protocol(row->type, document, configuration, error);
  }
  if (ends_with(source, ".state") || ends_with(source, ".project")) {
    return load_state(source, tab, document, configuration, error);
  }
  if (ends_with(source, ".xml")) {
    return load_xml(source, document, configuration, error);
  }
  error = "'" + source +
          "' is neither a protocol name (see 'wavelume-cli protocols') nor a .state, .project or "
          ".xml file";
  return false;
}

pugi::xml_node find_setting(pugi::xml_node configuration, const std::string& path,
                            std::string& error) {
  pugi::xml_node node = configuration;
  std::string reached = "ProtocolConfiguration";
  std::stringstream steps(path);
  std::string step;
  while (std::getline(steps, step, '/')) {
    std::string name = step;
    long index = 1;
    const std::size_t bracket = step.find('[');
    if (bracket != std::string::npos && step.back() == ']') {
      name = step.substr(0, bracket);
      index = std::strtol(step.c_str() + bracket + 1, nullptr, 10);
    }
    pugi::xml_node found;
    for (pugi::xml_node child = node.child(name.c_str()); child && index > 0;
         child = child.next_sibling(name.c_str())) {
      if (--index == 0) {
        found = child;
      }
    }
    if (!found) {
      error = "--set " + path + ": no element '" + step + "' under " + reached +
              "; available: " + child_names(node);
      return {};
    }
    node = found;
    reached += "/" + step;
  }
  return node;
}

bool split_setting(const std::string& assignment, std::string& path, std::string& value,
                   std::string& error) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string::npos || equals == 0) {
    error = "--set needs PATH=VALUE, got '" + assignment + "'";
    return false;
  }
  path = assignment.substr(0, equals);
  value = assignment.substr(equals + 1);
  return true;
}

bool apply_setting(pugi::xml_node configuration, const std::string& assignment,
                   std::string& error) {
  std::string path;
  std::string value;
  if (!split_setting(assignment, path, value, error)) {
    return false;
  }
  pugi::xml_node node = find_setting(configuration, path, error);
  if (!node) {
    return false;
  }
  const std::string old_value = node.text().get();
  if ((is_number(old_value) && !is_number(value)) || (is_flag(old_value) && !is_flag(value))) {
    error = "--set " + path + ": '" + value + "' is not a " +
            (is_flag(old_value) ? "flag (true or false)" : "number") + " like '" + old_value + "'";
    return false;
  }
  node.text().set(value.c_str());
  return true;
}

}  // namespace wavelume::cli

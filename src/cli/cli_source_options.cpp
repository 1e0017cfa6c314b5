#include "cli/cli_source_options.h"

#include <cerrno>
#include <cstdlib>

#include "cfg/cfg_enum_miss_recorder.h"
#include "cfg/cfg_protocol_factory.h"
#include "cfg/cfg_protocol_type.h"
#include "cfg/lib_xml_common.h"
#include "cli/cli_source.h"

namespace wavelume::cli {

bool parse_source_options(const std::vector<std::string>& arguments, std::size_t positional_count,
                          bool with_output, cli_source_options_t& options, std::string& error) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    const bool takes_value =
        argument == "--tab" || argument == "--set" || (with_output && argument == "-o");
    if (takes_value && i + 1 >= arguments.size()) {
      error = argument + " needs a value";
      return false;
    }
    if (argument == "--tab") {
      const std::string& value = arguments[++i];
      errno = 0;
      const unsigned long long tab = std::strtoull(value.c_str(), nullptr, 10);
      if (value.empty() || value.find_first_not_of("0123456789") != std::string::npos ||
          errno == ERANGE) {
        error = "--tab needs a tab number from 0, got '" + value + "'";
        return false;
      }
      options.tab = tab;
    } else if (argument == "--set") {
      options.settings.push_back(arguments[++i]);
    } else if (with_output && argument == "-o") {
      options.output = arguments[++i];
    } else if (argument == "--strict") {
      options.strict = true;
    } else if (with_output && argument == "--timing") {
      options.timing = true;
    } else if (argument.rfind("-", 0) != 0 && options.positional.size() < positional_count) {
      options.positional.push_back(argument);
    } else {
      error = "unexpected argument '" + argument + "'";
      return false;
    }
  }
  if (options.positional.size() != positional_count || (with_output && options.output.empty())) {
    error = "missing arguments";
    return false;
  }
  return true;
}

std::unique_ptr<nal::cfg_protocol_base_t> load_configuration(
    const std::string& source, const cli_source_options_t& options, std::string& protocol_text,
    std::vector<cli_setting_change_t>& changes, std::string& error) {
  pugi::xml_document document;
  pugi::xml_node node;
  if (!load_source(source, options.tab, document, node, error)) {
    return nullptr;
  }
  for (const std::string& setting : options.settings) {
    if (!apply_setting(node, setting, error)) {
      return nullptr;
    }
  }
  protocol_text = node.attribute("ProtocolType").value();
  const auto type =
      nal::lib_xml_common_t::get_enum_value(nal::protocol_type_state_text_map(), protocol_text);
  auto configuration = nal::cfg_protocol_factory_t::create_protocol_config(type);
  nal::cfg_enum_miss_recorder_t misses;
  if (!configuration || !configuration->load_from_xml(node)) {
    error = "cannot compute the protocol '" + protocol_text + "'";
    return nullptr;
  }
  changes = settings_not_taken(options.settings, *configuration, misses.misses());
  return configuration;
}

}  // namespace wavelume::cli

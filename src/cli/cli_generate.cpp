#include "cli/cli_generate.h"

#include <fstream>
#include <optional>
#include <sstream>

#include "cfg/cfg_protocol_factory.h"
#include "cfg/cfg_protocol_type.h"
#include "cfg/lib_xml_common.h"
#include "cli/cli_output.h"
#include "cli/cli_protocol_names.h"
#include "cli/cli_source.h"

namespace wavelume::cli {

namespace {

struct generate_options_t {
  std::string source;
  std::optional<nal::uint64> tab;
  std::vector<std::string> settings;
  std::string output;
};

bool parse_generate(const std::vector<std::string>& arguments, generate_options_t& options,
                    std::string& error) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    const bool has_value = i + 1 < arguments.size();
    if ((argument == "--tab" || argument == "--set" || argument == "-o") && !has_value) {
      error = argument + " needs a value";
      return false;
    }
    if (argument == "--tab") {
      const std::string& value = arguments[++i];
      if (value.empty() || value.find_first_not_of("0123456789") != std::string::npos) {
        error = "--tab needs a tab number from 0, got '" + value + "'";
        return false;
      }
      options.tab = std::stoull(value);
    } else if (argument == "--set") {
      options.settings.push_back(arguments[++i]);
    } else if (argument == "-o") {
      options.output = arguments[++i];
    } else if (options.source.empty() && argument.rfind("-", 0) != 0) {
      options.source = argument;
    } else {
      error = "unexpected argument '" + argument + "'";
      return false;
    }
  }
  if (options.source.empty() || options.output.empty()) {
    error = "usage: wavelume-cli generate SOURCE [--tab N] [--set PATH=VALUE]... -o OUT";
    return false;
  }
  return true;
}

}  // namespace

int run_protocols(std::ostream& out) {
  for (const auto& [name, type] : protocol_names()) {
    out << name << "\t" << nal::protocol_type_state_text_map().at(type) << "\n";
  }
  return 0;
}

int run_defaults(const std::vector<std::string>& arguments, std::ostream& out,
                 std::ostream& errors) {
  const bool to_file = arguments.size() == 3 && arguments[1] == "-o";
  if (arguments.size() != 1 && !to_file) {
    errors << "wavelume-cli defaults: usage: wavelume-cli defaults PROTOCOL [-o FILE.xml]\n";
    return 2;
  }
  pugi::xml_document document;
  pugi::xml_node configuration;
  std::string error;
  if (!protocol_of_name(arguments[0])) {
    errors << "wavelume-cli defaults: unknown protocol '" << arguments[0]
           << "'; 'wavelume-cli protocols' lists them\n";
    return 2;
  }
  if (!load_source(arguments[0], std::nullopt, document, configuration, error)) {
    errors << "wavelume-cli defaults: " << error << "\n";
    return 2;
  }
  if (!to_file) {
    configuration.print(out, "\t");
    return 0;
  }
  if (!document.save_file(arguments[2].c_str(), "\t")) {
    errors << "wavelume-cli defaults: cannot write '" << arguments[2] << "'\n";
    return 2;
  }
  return 0;
}

int run_generate(const std::vector<std::string>& arguments, std::ostream& out,
                 std::ostream& errors) {
  generate_options_t options;
  std::string error;
  pugi::xml_document document;
  pugi::xml_node node;
  if (!parse_generate(arguments, options, error) ||
      !load_source(options.source, options.tab, document, node, error)) {
    errors << "wavelume-cli generate: " << error << "\n";
    return 2;
  }
  for (const std::string& setting : options.settings) {
    if (!apply_setting(node, setting, error)) {
      errors << "wavelume-cli generate: " << error << "\n";
      return 2;
    }
  }
  const std::string protocol_text = node.attribute("ProtocolType").value();
  const auto type =
      nal::lib_xml_common_t::get_enum_value(nal::protocol_type_state_text_map(), protocol_text);
  auto configuration = nal::cfg_protocol_factory_t::create_protocol_config(type);
  if (!configuration || !configuration->load_from_xml(node)) {
    errors << "wavelume-cli generate: cannot compute the protocol '" << protocol_text << "'\n";
    return 2;
  }
  compute_waveform(*configuration);
  nal::lib_iq_data_arr_t samples;
  if (!configuration->get_waveform_data(samples) || samples.empty()) {
    errors << "wavelume-cli generate: the settings produced no waveform\n";
    return 1;
  }
  if (!write_output(*configuration, samples, sample_rate_of(*configuration), protocol_text,
                    options.output, error)) {
    errors << "wavelume-cli generate: " << error << "\n";
    return 2;
  }
  out << options.output << ": " << samples.size() << " samples at "
      << sample_rate_of(*configuration) << " Hz\n";
  return 0;
}

}  // namespace wavelume::cli

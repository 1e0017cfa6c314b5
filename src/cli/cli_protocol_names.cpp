#include "cli/cli_protocol_names.h"

#include "cfg/cfg_protocol_factory.h"

namespace wavelume::cli {

const nal::cfg_protocol_row_t* protocol_of_name(const std::string& name) {
  return nal::cfg_protocol_registry_t::find(name);
}

std::unique_ptr<nal::cfg_protocol_base_t> preset_configuration(nal::protocol_type_t type) {
  auto configuration = nal::cfg_protocol_factory_t::create_protocol_config(type);
  if (configuration) {
    configuration->preset();
  }
  return configuration;
}

bool compute_waveform(nal::cfg_protocol_base_t& configuration, cli_waveform_t& waveform,
                      std::string& error) {
  const nal::cfg_protocol_row_t* row =
      nal::cfg_protocol_registry_t::find(configuration.protocol_type());
  if (row == nullptr || !row->has_engine()) {
    error = "this build has no engine for that protocol yet";
    return false;
  }
  waveform.samples = &row->compute(configuration, waveform.storage);
  waveform.sample_rate_hz = row->sample_rate(configuration);
  waveform.annotations = row->annotations(configuration, waveform.samples->size());
  return true;
}

}  // namespace wavelume::cli

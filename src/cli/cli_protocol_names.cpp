#include "cli/cli_protocol_names.h"

#include "cfg/cfg_custom_iq.h"
#include "cfg/cfg_protocol_factory.h"

namespace wavelume::cli {

const std::vector<std::pair<std::string, nal::protocol_type_t>>& protocol_names() {
  static const std::vector<std::pair<std::string, nal::protocol_type_t>> names = {
      {"custom-iq", nal::PROTOCOL_CUSTOM_IQ},
      {"custom-ofdm", nal::PROTOCOL_CUSTOM_OFDM},
      {"bluetooth-br-edr", nal::PROTOCOL_BLUETOOTH_BR_EDR},
      {"bluetooth-le", nal::PROTOCOL_BLUETOOTH_LE},
      {"802154-oqpsk-bpsk", nal::PROTOCOL_802154_OQPSK_BPSK},
      {"802154-sun-fsk", nal::PROTOCOL_802154_SUN_FSK},
      {"802154-sun-ofdm", nal::PROTOCOL_802154_SUN_OFDM},
      {"g9959", nal::PROTOCOL_G9959},
      {"toolkit", nal::PROTOCOL_TOOLKIT},
  };
  return names;
}

std::optional<nal::protocol_type_t> protocol_of_name(const std::string& name) {
  for (const auto& [known, type] : protocol_names()) {
    if (known == name) {
      return type;
    }
  }
  return std::nullopt;
}

std::unique_ptr<nal::cfg_protocol_base_t> preset_configuration(nal::protocol_type_t type) {
  auto configuration = nal::cfg_protocol_factory_t::create_protocol_config(type);
  if (configuration) {
    configuration->preset();
  }
  return configuration;
}

void compute_waveform(nal::cfg_protocol_base_t& configuration) {
  // Custom IQ computes on its page's Update; the packet protocols inside get_waveform_data.
  if (auto* custom_iq = dynamic_cast<nal::cfg_custom_iq_t*>(&configuration)) {
    custom_iq->engine().update_waveform();
  }
}

const nal::lib_iq_data_arr_t& computed_samples(nal::cfg_protocol_base_t& configuration,
                                               nal::lib_iq_data_arr_t& storage) {
  if (const auto* custom_iq = dynamic_cast<const nal::cfg_custom_iq_t*>(&configuration)) {
    return custom_iq->engine().get_waveform_data();
  }
  if (!configuration.get_waveform_data(storage)) {
    storage.clear();
  }
  return storage;
}

double sample_rate_of(const nal::cfg_protocol_base_t& configuration) {
  if (const auto* custom_iq = dynamic_cast<const nal::cfg_custom_iq_t*>(&configuration)) {
    return custom_iq->engine().get_sample_rate();
  }
  return 0.0;
}

}  // namespace wavelume::cli

#pragma once
// The protocol names of the command line, and the configuration they make.

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cfg/cfg_protocol_base.h"

namespace wavelume::cli {

// Every protocol name in the order the pages list them, with its type.
const std::vector<std::pair<std::string, nal::protocol_type_t>>& protocol_names();
std::optional<nal::protocol_type_t> protocol_of_name(const std::string& name);
// The configuration a page would show when opened: made by the factory and preset; null (with a
// message from the factory) when this build has no engine for it.
std::unique_ptr<nal::cfg_protocol_base_t> preset_configuration(nal::protocol_type_t type);
// Computes the samples of a configuration as a page's Update does.
void compute_waveform(nal::cfg_protocol_base_t& configuration);
// The computed samples without a copy where the engine holds them; `storage` otherwise. Empty
// when no waveform exists.
const nal::lib_iq_data_arr_t& computed_samples(nal::cfg_protocol_base_t& configuration,
                                               nal::lib_iq_data_arr_t& storage);
// Rate of the computed samples in Hz, 0 when unknown.
double sample_rate_of(const nal::cfg_protocol_base_t& configuration);

}  // namespace wavelume::cli

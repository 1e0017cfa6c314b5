#pragma once
// The protocols as the command line names them, and the waveform a configuration computes
// through its registry row.

#include <memory>
#include <string>

#include "cfg/cfg_protocol_registry.h"

namespace wavelume::cli {

// Null for a name that is no protocol ('wavelume-cli protocols' lists them).
const nal::cfg_protocol_row_t* protocol_of_name(const std::string& name);
// The configuration a page would show when opened: made and preset; null (with a message from
// the factory) when this build has no engine for it.
std::unique_ptr<nal::cfg_protocol_base_t> preset_configuration(nal::protocol_type_t type);

// One computed waveform with what the outputs need. Not copyable: `samples` may point into
// `storage`.
struct cli_waveform_t {
  cli_waveform_t() = default;
  cli_waveform_t(const cli_waveform_t&) = delete;
  cli_waveform_t& operator=(const cli_waveform_t&) = delete;

  // The engine's own array where it keeps one, else `storage`.
  const nal::lib_iq_data_arr_t* samples = &storage;
  nal::lib_iq_data_arr_t storage;
  double sample_rate_hz = 0.0;
  nal::lib_waveform_annotations_t annotations;
};

// Computes as a page's Update does. False with a message in `error` when the configuration's
// protocol has no engine; an empty waveform is no error here.
bool compute_waveform(nal::cfg_protocol_base_t& configuration, cli_waveform_t& waveform,
                      std::string& error);

}  // namespace wavelume::cli

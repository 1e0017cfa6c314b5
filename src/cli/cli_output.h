#pragma once
// Writes computed samples by the output's suffix: `.ARB` (the waveform file), `.csv` ("I,Q" per
// line, full precision), `.sigmf-data` (complex float32 little-endian) with a `.sigmf-meta` JSON
// beside it that holds the sample rate, the protocol and the waveform's annotations. Files appear
// only once complete.

#include <string>

#include "cfg/cfg_protocol_base.h"
#include "cli/cli_protocol_names.h"

namespace wavelume::cli {

// False with a message in `error` for an unknown suffix or a file that cannot be written.
bool write_output(nal::cfg_protocol_base_t& configuration, const cli_waveform_t& waveform,
                  const std::string& protocol, const std::string& path, std::string& error);

}  // namespace wavelume::cli

#include "cli/cli_info.h"

#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <sstream>

#include "cfg/cfg_waveform_file_reader.h"
#include "cli/cli_text.h"
#include "lib/plib.h"

namespace wavelume::cli {

namespace {

using nal::cfg_waveform_file_contents_t;
using nal::common_lib::plib_t;

struct statistics_t {
  std::size_t samples = 0;
  double sample_rate = 0.0;  // Hz; 0 when the header has none
  double duration = 0.0;     // s
  double rms = 0.0;
  double peak = 0.0;
  double papr_db = 0.0;
};

statistics_t statistics_of(const cfg_waveform_file_contents_t& contents) {
  statistics_t result;
  result.samples = contents.samples.size();
  const std::string rate = contents.field("SampleRate");
  char* end = nullptr;
  const double parsed = std::strtod(rate.c_str(), &end);
  if (!rate.empty() && end != nullptr && *end == '\0' && std::isfinite(parsed) && parsed > 0.0) {
    result.sample_rate = parsed;
    result.duration = static_cast<double>(result.samples) / parsed;
  }
  if (!contents.samples.empty()) {
    result.rms = plib_t::get_complex_array_rms(contents.samples);
    result.peak = plib_t::get_data_max_amplitude(contents.samples);
    result.papr_db = plib_t::get_peak_to_rms_ratio(contents.samples);
  }
  return result;
}

const char* seal_text(cfg_waveform_file_contents_t::seal_state_t seal) {
  switch (seal) {
    case cfg_waveform_file_contents_t::SEAL_MATCHES:
      return "ok";
    case cfg_waveform_file_contents_t::SEAL_MISMATCH:
      return "mismatch";
    default:
      return "absent";
  }
}

void print_json(const std::string& path, const cfg_waveform_file_contents_t& contents,
                const statistics_t& stats, std::ostream& out) {
  out << std::setprecision(15) << "{\"file\":" << json_string(path)
      << ",\"seal\":" << json_string(seal_text(contents.seal)) << ",\"header\":{";
  for (std::size_t i = 0; i < contents.fields.size(); ++i) {
    out << (i == 0 ? "" : ",") << json_string(contents.fields[i].first) << ":"
        << json_string(contents.fields[i].second);
  }
  out << "},\"samples\":" << stats.samples << ",\"sample_rate_hz\":" << stats.sample_rate
      << ",\"duration_s\":" << stats.duration << ",\"rms\":" << stats.rms
      << ",\"peak\":" << stats.peak << ",\"papr_db\":" << stats.papr_db << "}\n";
}

void print_text(const std::string& path, const cfg_waveform_file_contents_t& contents,
                const statistics_t& stats, std::ostream& out) {
  const auto line = [&out](const std::string& name, const auto& value) {
    out << std::left << std::setw(17) << (name + ":") << value << "\n";
  };
  line("File", path);
  line("Seal", seal_text(contents.seal));
  for (const auto& [key, value] : contents.fields) {
    line(key, value);
  }
  out << std::setprecision(10);
  line("Samples", stats.samples);
  line("Duration (s)", stats.duration);
  line("Sample RMS", stats.rms);
  line("Sample peak", stats.peak);
  line("PAPR (dB)", stats.papr_db);
}

}  // namespace

int run_info(const std::string& path, bool json, std::ostream& out, std::ostream& errors) {
  cfg_waveform_file_contents_t contents;
  std::string error;
  if (!nal::cfg_waveform_file_reader_t::read(path, contents, error)) {
    errors << "wavelume-cli info: " << error << "\n";
    return 2;
  }
  if (contents.seal == cfg_waveform_file_contents_t::SEAL_MISMATCH) {
    errors << "wavelume-cli info: warning: the seal of '" << path
           << "' does not match its contents; the file was changed after it was written\n";
  }
  const statistics_t stats = statistics_of(contents);
  if (json) {
    print_json(path, contents, stats, out);
  } else {
    print_text(path, contents, stats, out);
  }
  return 0;
}

}  // namespace wavelume::cli

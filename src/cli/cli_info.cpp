#include "cli/cli_info.h"

#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <sstream>

#include "cfg/cfg_sigmf_reader.h"
#include "cfg/cfg_waveform_file_reader.h"
#include "cli/cli_text.h"
#include "lib/plib.h"

namespace wavelume::cli {

namespace {

using nal::cfg_sigmf_recording_t;
using nal::cfg_waveform_file_contents_t;
using nal::common_lib::plib_t;

struct statistics_t {
  std::size_t samples = 0;
  double sample_rate = 0.0;  // Hz; 0 when the file has none
  double duration = 0.0;     // s
  double rms = 0.0;
  double peak = 0.0;
  double papr_db = 0.0;
};

statistics_t statistics_of(const nal::lib_iq_data_arr_t& samples, double sample_rate) {
  statistics_t result;
  result.samples = samples.size();
  if (std::isfinite(sample_rate) && sample_rate > 0.0) {
    result.sample_rate = sample_rate;
    result.duration = static_cast<double>(result.samples) / sample_rate;
  }
  if (!samples.empty()) {
    result.rms = plib_t::get_complex_array_rms(samples);
    result.peak = plib_t::get_data_max_amplitude(samples);
    result.papr_db = plib_t::get_peak_to_rms_ratio(samples);
  }
  return result;
}

double header_sample_rate(const cfg_waveform_file_contents_t& contents) {
  const std::string rate = contents.field("SampleRate");
  char* end = nullptr;
  const double parsed = std::strtod(rate.c_str(), &end);
  return !rate.empty() && end != nullptr && *end == '\0' ? parsed : 0.0;
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

// The header's fixed part follows FileName with SoftwareName; anything else there means that a
// comma inside the name split it, and every later key is shifted by one.
bool file_name_holds_comma(const cfg_waveform_file_contents_t& contents) {
  const auto& fields = contents.fields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].first == "FileName") {
      return i + 1 >= fields.size() || fields[i + 1].first != "SoftwareName";
    }
  }
  return false;
}

void print_statistics_json(const statistics_t& stats, std::ostream& out) {
  out << ",\"samples\":" << stats.samples << ",\"sample_rate_hz\":" << stats.sample_rate
      << ",\"duration_s\":" << stats.duration << ",\"rms\":" << stats.rms
      << ",\"peak\":" << stats.peak << ",\"papr_db\":" << stats.papr_db;
}

void print_line(std::ostream& out, const std::string& name, const std::string& value) {
  out << std::left << std::setw(17) << (name + ":") << value << "\n";
}

void print_statistics_text(const statistics_t& stats, std::ostream& out) {
  const auto number = [](double value) {
    std::ostringstream text;
    text << std::setprecision(10) << value;
    return text.str();
  };
  print_line(out, "Samples", std::to_string(stats.samples));
  print_line(out, "Duration (s)", number(stats.duration));
  print_line(out, "Sample RMS", number(stats.rms));
  print_line(out, "Sample peak", number(stats.peak));
  print_line(out, "PAPR (dB)", number(stats.papr_db));
}

int info_waveform_file(const std::string& path, bool json, std::ostream& out,
                       std::ostream& errors) {
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
  if (file_name_holds_comma(contents)) {
    errors << "wavelume-cli info: warning: the FileName of '" << path
           << "' seems to hold a comma, which splits the header: the keys after it are shifted "
              "and an instrument may misread them\n";
  }
  const statistics_t stats = statistics_of(contents.samples, header_sample_rate(contents));
  if (json) {
    out << std::setprecision(15) << "{\"file\":" << json_string(path)
        << ",\"seal\":" << json_string(seal_text(contents.seal)) << ",\"header\":{";
    for (std::size_t i = 0; i < contents.fields.size(); ++i) {
      out << (i == 0 ? "" : ",") << json_string(contents.fields[i].first) << ":"
          << json_string(contents.fields[i].second);
    }
    out << "}";
    print_statistics_json(stats, out);
    out << "}\n";
    return 0;
  }
  print_line(out, "File", path);
  print_line(out, "Seal", seal_text(contents.seal));
  for (const auto& [key, value] : contents.fields) {
    print_line(out, key, value);
  }
  print_statistics_text(stats, out);
  return 0;
}

int info_sigmf(const std::string& path, bool json, std::ostream& out, std::ostream& errors) {
  cfg_sigmf_recording_t recording;
  std::string error;
  if (!nal::cfg_sigmf_reader_t::read(path, recording, error)) {
    errors << "wavelume-cli info: " << error << "\n";
    return 2;
  }
  const statistics_t stats = statistics_of(recording.samples, recording.sample_rate);
  if (json) {
    out << std::setprecision(15) << "{\"file\":" << json_string(path)
        << ",\"datatype\":" << json_string(recording.datatype)
        << ",\"description\":" << json_string(recording.description);
    print_statistics_json(stats, out);
    out << ",\"annotations\":[";
    for (std::size_t i = 0; i < recording.annotations.size(); ++i) {
      const auto& segment = recording.annotations[i];
      out << (i == 0 ? "" : ",") << "{\"sample_start\":" << segment.start
          << ",\"sample_count\":" << segment.count << ",\"label\":" << json_string(segment.label)
          << "}";
    }
    out << "]}\n";
    return 0;
  }
  print_line(out, "File", path);
  print_line(out, "Data type", recording.datatype);
  print_line(out, "Description", recording.description);
  print_line(out, "Sample rate", engineering(stats.sample_rate, "Hz"));
  print_statistics_text(stats, out);
  print_line(out, "Annotations", std::to_string(recording.annotations.size()));
  for (const auto& segment : recording.annotations) {
    out << "  " << std::right << std::setw(12) << segment.start << " +" << std::left
        << std::setw(11) << segment.count << " " << segment.label << "\n";
  }
  return 0;
}

}  // namespace

int run_info(const std::string& path, bool json, std::ostream& out, std::ostream& errors) {
  if (nal::cfg_sigmf_reader_t::is_sigmf_path(path)) {
    return info_sigmf(path, json, out, errors);
  }
  return info_waveform_file(path, json, out, errors);
}

}  // namespace wavelume::cli

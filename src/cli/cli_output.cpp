#include "cli/cli_output.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <iomanip>

#include "cli/cli_text.h"

namespace wavelume::cli {

namespace {

// Writes through a temporary file beside `path`, renamed into place when complete.
bool write_file(const std::string& path, const std::function<void(std::ofstream&)>& fill,
                std::string& error) {
  const std::string temporary = path + ".partial";
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    if (out) {
      fill(out);
      out.flush();
    }
    if (!out) {
      std::remove(temporary.c_str());
      error = "cannot write '" + path + "': " + std::strerror(errno);
      return false;
    }
  }
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    error = "cannot write '" + path + "': " + std::strerror(errno);
    std::remove(temporary.c_str());
    return false;
  }
  return true;
}

void write_sigmf_meta(std::ofstream& out, const cli_waveform_t& waveform,
                      const std::string& protocol) {
  out << std::setprecision(17) << "{\n  \"global\": {\n"
      << "    \"core:datatype\": \"cf32_le\",\n"
      << "    \"core:sample_rate\": " << waveform.sample_rate_hz << ",\n"
      << "    \"core:version\": \"1.0.0\",\n"
      << "    \"core:description\": " << json_string(protocol) << "\n  },\n"
      << "  \"captures\": [{\"core:sample_start\": 0}],\n"
      << "  \"annotations\": [";
  // SigMF asks for annotations in order of their start sample; ties keep the engine's order.
  std::vector<nal::lib_waveform_segment_t> segments = waveform.annotations;
  std::stable_sort(segments.begin(), segments.end(),
                   [](const auto& a, const auto& b) { return a.start < b.start; });
  for (std::size_t i = 0; i < segments.size(); ++i) {
    out << (i == 0 ? "\n" : ",\n") << "    {\"core:sample_start\": " << segments[i].start
        << ", \"core:sample_count\": " << segments[i].count
        << ", \"core:label\": " << json_string(segments[i].label) << "}";
  }
  out << (segments.empty() ? "]\n}\n" : "\n  ]\n}\n");
}

}  // namespace

bool write_output(nal::cfg_protocol_base_t& configuration, const cli_waveform_t& waveform,
                  const std::string& protocol, const std::string& path, std::string& error) {
  const nal::lib_iq_data_arr_t& samples = *waveform.samples;
  if (ends_with(path, ".ARB")) {
    if (!configuration.save_wavefrom_to_file(path)) {
      error = "cannot write '" + path + "'";
      return false;
    }
    return true;
  }
  if (ends_with(path, ".csv")) {
    return write_file(
        path,
        [&samples](std::ofstream& out) {
          out << std::setprecision(17);
          for (const auto& sample : samples) {
            out << sample.real() << "," << sample.imag() << "\n";
          }
        },
        error);
  }
  if (ends_with(path, ".sigmf-data")) {
    const std::string meta =
        path.substr(0, path.size() - std::strlen(".sigmf-data")) + ".sigmf-meta";
    return write_file(
               path,
               [&samples](std::ofstream& out) {
                 for (const auto& sample : samples) {
                   const float pair[2] = {static_cast<float>(sample.real()),
                                          static_cast<float>(sample.imag())};
                   out.write(reinterpret_cast<const char*>(pair), sizeof(pair));
                 }
               },
               error) &&
           write_file(
               meta, [&](std::ofstream& out) { write_sigmf_meta(out, waveform, protocol); }, error);
  }
  error = "'" + path + "': the output must end in .ARB, .csv or .sigmf-data";
  return false;
}

}  // namespace wavelume::cli

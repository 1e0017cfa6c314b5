#include "cli/cli_output.h"

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

}  // namespace

bool write_output(nal::cfg_protocol_base_t& configuration, const nal::lib_iq_data_arr_t& samples,
                  double sample_rate, const std::string& protocol, const std::string& path,
                  std::string& error) {
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
               meta,
               [&](std::ofstream& out) {
                 out << std::setprecision(17) << "{\n  \"global\": {\n"
                     << "    \"core:datatype\": \"cf32_le\",\n"
                     << "    \"core:sample_rate\": " << sample_rate << ",\n"
                     << "    \"core:version\": \"1.0.0\",\n"
                     << "    \"core:description\": " << json_string(protocol) << "\n  },\n"
                     << "  \"captures\": [{\"core:sample_start\": 0}],\n"
                     << "  \"annotations\": []\n}\n";
               },
               error);
  }
  error = "'" + path + "': the output must end in .ARB, .csv or .sigmf-data";
  return false;
}

}  // namespace wavelume::cli

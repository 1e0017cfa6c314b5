#include "cli/cli_generate.h"

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <optional>
#include <sstream>

#include "cfg/cfg_protocol_type.h"
#include "cli/cli_output.h"
#include "cli/cli_phase.h"
#include "cli/cli_protocol_names.h"
#include "cli/cli_source.h"
#include "cli/cli_source_options.h"
#include "cli/cli_text.h"

namespace wavelume::cli {

namespace {

constexpr double mebibyte = 1024.0 * 1024.0;

// Where a run's time and memory went: the compute stage, then the file.
void report_timing(std::ostream& errors, std::size_t sample_count, const std::string& output,
                   double compute_seconds, double compute_peak, double write_seconds) {
  const double array_bytes = static_cast<double>(sample_count * sizeof(nal::lib_iq_sample_t));
  std::error_code ignored;
  const double file_bytes = static_cast<double>(std::filesystem::file_size(output, ignored));
  errors << std::fixed << std::setprecision(3) << "samples: " << sample_count << " ("
         << array_bytes / mebibyte << " MiB as complex doubles)\n"
         << "compute: " << compute_seconds << " s, peak memory " << compute_peak / mebibyte
         << " MiB (" << compute_peak / array_bytes << " x the samples)\n"
         << "write:   " << write_seconds << " s, " << file_bytes / 1e6 << " MB at "
         << file_bytes / 1e6 / write_seconds << " MB/s, peak memory "
         << cli_phase_t::peak_memory_bytes() / mebibyte << " MiB ("
         << cli_phase_t::peak_memory_bytes() / array_bytes << " x the samples)\n"
         << std::defaultfloat;
}

}  // namespace

int run_protocols(std::ostream& out) {
  for (const nal::cfg_protocol_row_t& row : nal::cfg_protocol_registry_t::rows()) {
    out << row.cli_name << "\t" << nal::protocol_type_state_text_map().at(row.type)
        << (row.has_engine() ? "" : "\t(no engine in this build)") << "\n";
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
  cli_source_options_t options;
  std::string error;
  std::string protocol_text;
  if (!parse_source_options(arguments, 1, true, options, error)) {
    errors << "wavelume-cli generate: " << error
           << "\nusage: wavelume-cli generate SOURCE [--tab N] [--set PATH=VALUE]... [--timing] -o "
              "OUT\n";
    return 2;
  }
  std::vector<cli_setting_change_t> changes;
  auto configuration =
      load_configuration(options.positional[0], options, protocol_text, changes, error);
  if (!configuration) {
    errors << "wavelume-cli generate: " << error << "\n";
    return 2;
  }
  if (!report_setting_changes("wavelume-cli generate", changes, options.strict, errors)) {
    return 2;
  }
  // Live progress only where a person watches; the tests pass string streams.
  const bool live = &errors == &std::cerr && cli_phase_t::errors_on_terminal();
  cli_phase_t computing(errors, "computing the waveform", live);
  cli_waveform_t waveform;
  if (!compute_waveform(*configuration, waveform, error)) {
    errors << "wavelume-cli generate: " << error << "\n";
    return 2;
  }
  const double compute_seconds = computing.finish();
  const double compute_peak = cli_phase_t::peak_memory_bytes();
  const nal::lib_iq_data_arr_t& samples = *waveform.samples;
  if (samples.empty()) {
    errors << "wavelume-cli generate: the settings produced no waveform\n";
    return 1;
  }
  cli_phase_t writing(errors, "writing " + options.output, live);
  if (!write_output(*configuration, waveform, protocol_text, options.output, error)) {
    errors << "wavelume-cli generate: " << error << "\n";
    return 2;
  }
  const double write_seconds = writing.finish();
  if (options.timing) {
    report_timing(errors, samples.size(), options.output, compute_seconds, compute_peak,
                  write_seconds);
  }
  out << options.output << ": " << samples.size() << " samples at "
      << engineering(waveform.sample_rate_hz, "Hz") << ", "
      << engineering(static_cast<double>(samples.size()) / waveform.sample_rate_hz, "s");
  if (!waveform.annotations.empty()) {
    out << ", " << waveform.annotations.size() << " annotated segment"
        << (waveform.annotations.size() == 1 ? "" : "s");
  }
  out << "\n";
  return 0;
}

}  // namespace wavelume::cli

#pragma once
// What the end-to-end tests of `generate` share: a folder per test, a call of the command, a
// reader of the .ARB files it writes (written here, apart from the product's reader) and a root
// raised cosine matched filter for the linear modulations.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "cli/cli_generate.h"
#include "lib/lib_filter.h"
#include "tests/cfg/test_folder_fixture.h"

namespace wavelume_test {

using samples_t = std::vector<std::complex<double>>;

// The samples of an .ARB file: int16 pairs after the first "IQData," key, scaled to 1.
inline samples_t read_arb(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  const std::size_t start = bytes.find(",IQData,") + 8;
  samples_t samples;
  for (std::size_t at = start; at + 3 < bytes.size(); at += 4) {
    const auto word = [&](std::size_t i) {
      return static_cast<std::int16_t>(static_cast<std::uint8_t>(bytes[i]) |
                                       (static_cast<std::uint8_t>(bytes[i + 1]) << 8));
    };
    samples.emplace_back(word(at) / 32767.0, word(at + 2) / 32767.0);
  }
  return samples;
}

// Cyclic root raised cosine matched filter, sampled once per symbol starting at `offset`.
inline samples_t matched_symbols(const samples_t& y, double roll_off, unsigned ratio,
                                 unsigned offset = 0) {
  nal::lib_iq_data_arr_t taps;
  nal::common_lib::lib_filter_t::_root_cosine_filter(roll_off, 32, ratio, taps, true);
  const std::size_t n = y.size();
  const std::size_t centre = taps.size() / 2;
  samples_t symbols;
  for (std::size_t i = offset; i < n; i += ratio) {
    std::complex<double> sum = 0.0;
    for (std::size_t k = 0; k < taps.size(); ++k) {
      sum += taps[k] * y[(i + k + n * taps.size() - centre) % n];
    }
    symbols.push_back(sum);
  }
  return symbols;
}

class cli_generate_fixture_t : public folder_fixture_t {
 protected:
  int generate(const std::vector<std::string>& arguments) {
    _out.str("");
    _errors.str("");
    testing::internal::CaptureStdout();  // the header line the configuration prints
    const int status = wavelume::cli::run_generate(arguments, _out, _errors);
    testing::internal::GetCapturedStdout();
    return status;
  }

  // Generates custom-iq with the given edits into `name` and reads the samples back.
  samples_t generate_arb(const std::string& name, const std::vector<std::string>& edits) {
    std::vector<std::string> arguments{"custom-iq"};
    for (const std::string& edit : edits) {
      arguments.insert(arguments.end(), {"--set", edit});
    }
    const std::filesystem::path path = _folder / name;
    arguments.insert(arguments.end(), {"-o", path.string()});
    EXPECT_EQ(generate(arguments), 0) << _errors.str();
    return read_arb(path);
  }

  std::ostringstream _out;
  std::ostringstream _errors;
};

}  // namespace wavelume_test

// The command-line tool end to end: files it writes are read back by a reader written here and
// judged by a demodulator written here.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "cfg/cfg_custom_iq.h"
#include "cfg/cfg_protocol_state.h"
#include "cli/cli_generate.h"
#include "lib/lib_filter.h"
#include "tests/cfg/test_folder_fixture.h"

namespace {

namespace fs = std::filesystem;
using samples_t = std::vector<std::complex<double>>;

// The samples of an .ARB file: int16 pairs after the first "IQData," key, scaled to 1.
samples_t read_arb(const fs::path& path) {
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

// Root raised cosine matched filter (cyclic), symbol-spaced samples, decisions on a unit-power
// square QAM grid after a power normalisation, and the EVM against those decisions.
double qam_evm(const samples_t& y, int points, double roll_off, unsigned ratio) {
  nal::lib_iq_data_arr_t taps;
  nal::common_lib::lib_filter_t::_root_cosine_filter(roll_off, 32, ratio, taps, true);
  const std::size_t n = y.size();
  const std::size_t centre = taps.size() / 2;
  samples_t symbols;
  for (std::size_t i = 0; i < n; i += ratio) {
    std::complex<double> sum = 0.0;
    for (std::size_t k = 0; k < taps.size(); ++k) {
      sum += taps[k] * y[(i + k + n * taps.size() - centre) % n];
    }
    symbols.push_back(sum);
  }
  const int side = static_cast<int>(std::lround(std::sqrt(points)));
  const double grid_power = 2.0 * (points - 1) / 3.0;  // mean |x|^2 of the odd-integer grid
  double power = 0.0;
  for (const auto& s : symbols) {
    power += std::norm(s);
  }
  const double scale = std::sqrt(grid_power / (power / symbols.size()));
  double error = 0.0;
  double reference = 0.0;
  for (const auto& s : symbols) {
    const std::complex<double> x = s * scale;  // odd-integer grid -(side-1)..(side-1)
    const auto decide = [side](double v) {
      const double level = 2.0 * std::round((v - 1.0) / 2.0) + 1.0;
      return std::clamp(level, 1.0 - side, side - 1.0);
    };
    const std::complex<double> decided(decide(x.real()), decide(x.imag()));
    error += std::norm(x - decided);
    reference += std::norm(decided);
  }
  return std::sqrt(error / reference);
}

class CliGenerate : public wavelume_test::folder_fixture_t {
 protected:
  int generate(const std::vector<std::string>& arguments) {
    _out.str("");
    _errors.str("");
    testing::internal::CaptureStdout();  // the header line the configuration prints
    const int status = wavelume::cli::run_generate(arguments, _out, _errors);
    testing::internal::GetCapturedStdout();
    return status;
  }

  std::ostringstream _out;
  std::ostringstream _errors;
};

TEST_F(CliGenerate, PresetAndEditedQamDemodulateCleanly) {
  const fs::path preset = _folder / "preset.ARB";
  ASSERT_EQ(generate({"custom-iq", "-o", preset.string()}), 0) << _errors.str();
  const samples_t y16 = read_arb(preset);
  ASSERT_EQ(y16.size(), 1024u);  // 512 symbols x 2
  EXPECT_LT(qam_evm(y16, 16, 0.5, 2), 0.01);

  const fs::path edited = _folder / "qam64.ARB";
  ASSERT_EQ(generate({"custom-iq", "--set", "Modulation/ApskQamModulation=64QAM", "--set",
                      "Filter/oversampling=4", "-o", edited.string()}),
            0)
      << _errors.str();
  const samples_t y64 = read_arb(edited);
  ASSERT_EQ(y64.size(), 2048u);
  EXPECT_LT(qam_evm(y64, 64, 0.5, 4), 0.01);
  // The 16QAM decisions do not fit a 64QAM signal: the check can tell them apart.
  EXPECT_GT(qam_evm(y64, 16, 0.5, 4), 0.05);
}

TEST_F(CliGenerate, StateFileTabsAndOtherOutputs) {
  nal::cfg_custom_iq_t qpsk;
  qpsk.preset();
  qpsk.engine().set_apsk_qam_type(nal::MOD_QPSK);
  const fs::path state = _folder / "two.project";
  ASSERT_TRUE(nal::cfg_protocol_state_t::save_protocol_state(state.string(), {nullptr, &qpsk}, 0));

  EXPECT_EQ(generate({state.string(), "-o", (_folder / "home.csv").string()}), 2);
  EXPECT_NE(_errors.str().find("Home tab"), std::string::npos);

  const fs::path csv = _folder / "qpsk.csv";
  ASSERT_EQ(generate({state.string(), "--tab", "1", "-o", csv.string()}), 0) << _errors.str();
  std::ifstream lines(csv);
  std::size_t count = 0;
  double magnitude = 0.0;
  for (std::string line; std::getline(lines, line); ++count) {
    const double i = std::stod(line.substr(0, line.find(',')));
    const double q = std::stod(line.substr(line.find(',') + 1));
    magnitude = std::max({magnitude, std::abs(i), std::abs(q)});
  }
  EXPECT_EQ(count, 1024u);
  EXPECT_EQ(magnitude, 0.89996337890625);

  const fs::path data = _folder / "qpsk.sigmf-data";
  ASSERT_EQ(generate({state.string(), "--tab", "1", "-o", data.string()}), 0);
  EXPECT_EQ(fs::file_size(data), 1024u * 8u);
  const std::string check =
      "/usr/bin/python3 -c \"import json,sys; m=json.load(open(sys.argv[1]))['global']; "
      "sys.exit(0 if m['core:sample_rate'] == 2000000 and m['core:datatype'] == 'cf32_le' else "
      "1)\" '" +
      (_folder / "qpsk.sigmf-meta").string() + "'";
  EXPECT_EQ(std::system(check.c_str()), 0);
}

TEST_F(CliGenerate, BadInputSaysWhatToFix) {
  const std::string out = (_folder / "x.ARB").string();
  EXPECT_EQ(generate({"no-such-protocol", "-o", out}), 2);
  EXPECT_NE(_errors.str().find("wavelume-cli protocols"), std::string::npos);
  EXPECT_EQ(generate({"custom-iq", "--set", "Filter/Nope=1", "-o", out}), 2);
  EXPECT_NE(_errors.str().find("available: filterType, filterAlpha"), std::string::npos);
  EXPECT_EQ(generate({"custom-iq", "--set", "Filter/oversampling=many", "-o", out}), 2);
  EXPECT_NE(_errors.str().find("is not a number"), std::string::npos);
  EXPECT_EQ(generate({"custom-iq", "-o", (_folder / "missing" / "x.ARB").string()}), 2);
  EXPECT_EQ(generate({"custom-iq", "-o", (_folder / "x.wav").string()}), 2);
  EXPECT_NE(_errors.str().find(".ARB, .csv or .sigmf-data"), std::string::npos);
  EXPECT_EQ(generate({"custom-iq"}), 2);
  EXPECT_FALSE(fs::exists(out));
}

}  // namespace

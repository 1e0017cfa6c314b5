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
#include "tests/cli/cli_generate_fixture.h"

namespace {

namespace fs = std::filesystem;
using wavelume_test::read_arb;
using wavelume_test::samples_t;

// Symbol-spaced matched filter outputs, decisions on a unit-power
// square QAM grid after a power normalisation, and the EVM against those decisions.
double qam_evm(const samples_t& y, int points, double roll_off, unsigned ratio) {
  const samples_t symbols = wavelume_test::matched_symbols(y, roll_off, ratio);
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

using CliGenerate = wavelume_test::cli_generate_fixture_t;

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

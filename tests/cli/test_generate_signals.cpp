// Every kind of Custom IQ signal written by the command-line tool and judged by a receiver
// written here: blind-phase 8PSK decisions, staggered OQPSK sampling, FSK and MSK phase
// discrimination checked against the PN9 recurrence, and numpy for tone lines and chirp slope.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>

#include "tests/cli/cli_generate_fixture.h"

namespace {

using wavelume_test::samples_t;
using CliGenerateSignals = wavelume_test::cli_generate_fixture_t;

constexpr double pi = 3.14159265358979323846;

// EVM of M-PSK symbols after an amplitude normalisation and a blind phase estimate (M-th power).
double psk_evm(const samples_t& symbols, int m) {
  double amplitude = 0.0;
  std::complex<double> powered = 0.0;
  for (const auto& s : symbols) {
    amplitude += std::abs(s);
    powered += std::pow(s / std::abs(s), m);
  }
  amplitude /= static_cast<double>(symbols.size());
  const double offset = std::arg(powered) / m;
  const double step = 2.0 * pi / m;
  double error = 0.0;
  for (const auto& s : symbols) {
    const double sector = std::round((std::arg(s) - offset) / step);
    error += std::norm(s / amplitude - std::polar(1.0, offset + sector * step));
  }
  return std::sqrt(error / static_cast<double>(symbols.size()));
}

// EVM of antipodal decisions on one rail.
double rail_evm(const std::vector<double>& rail) {
  const double rms = std::sqrt(std::inner_product(rail.begin(), rail.end(), rail.begin(), 0.0) /
                               static_cast<double>(rail.size()));
  double error = 0.0;
  for (const double v : rail) {
    error += std::pow(v / rms - (v < 0.0 ? -1.0 : 1.0), 2);
  }
  return std::sqrt(error / static_cast<double>(rail.size()));
}

// Phase advance over each symbol, at the sampling phase where the smallest advance is largest
// (the eye is widest), as a non-coherent receiver would time itself.
std::vector<double> phase_advances(const samples_t& y, unsigned ratio) {
  std::vector<double> phase(y.size());
  for (std::size_t k = 0; k < y.size(); ++k) {
    phase[k] = std::arg(y[k]);
  }
  std::vector<double> best;
  double widest = -1.0;
  for (unsigned offset = 0; offset < ratio; ++offset) {
    std::vector<double> advances;
    for (std::size_t k = offset; k + ratio < y.size(); k += ratio) {
      double advance = 0.0;  // unwrapped sample by sample
      for (std::size_t j = k; j < k + ratio; ++j) {
        advance += std::remainder(phase[j + 1] - phase[j], 2.0 * pi);
      }
      advances.push_back(advance);
    }
    double smallest = pi;
    for (const double a : advances) {
      smallest = std::min(smallest, std::abs(a));
    }
    if (smallest > widest) {
      widest = smallest;
      best = advances;
    }
  }
  return best;
}

// PN9 (x^9 + x^5 + 1) bits obey b[n] = b[n-5] xor b[n-9]; so do no other data.
double pn9_recurrence_share(const std::vector<double>& advances) {
  std::size_t hits = 0;
  for (std::size_t n = 9; n < advances.size(); ++n) {
    const auto bit = [&](std::size_t i) { return advances[i] > 0.0; };
    hits += bit(n) == (bit(n - 5) != bit(n - 9)) ? 1 : 0;
  }
  return static_cast<double>(hits) / static_cast<double>(advances.size() - 9);
}

std::string analyse(const std::filesystem::path& arb, const std::string& what) {
  const std::string command = "/usr/bin/python3 '" + std::string(WAVELUME_TESTS_DIR) +
                              "/cli/arb_spectrum.py' '" + arb.string() + "' " + what;
  std::string output;
  if (FILE* pipe = ::popen(command.c_str(), "r")) {
    char buffer[4096];
    while (std::fgets(buffer, sizeof buffer, pipe) != nullptr) {
      output += buffer;
    }
    EXPECT_EQ(::pclose(pipe), 0) << command;
  }
  return output;
}

TEST_F(CliGenerateSignals, EightPskAndOqpskDemodulate) {
  const samples_t psk = generate_arb("8psk.ARB", {"Modulation/ApskQamModulation=8PSK"});
  ASSERT_EQ(psk.size(), 1024u);
  EXPECT_LT(psk_evm(wavelume_test::matched_symbols(psk, 0.5, 2), 8), 0.01);
  EXPECT_GT(psk_evm(wavelume_test::matched_symbols(psk, 0.5, 2), 4), 0.2);

  // Q lags I by half a symbol: each rail is clean at its own instants only.
  const samples_t oqpsk =
      generate_arb("oqpsk.ARB", {"Modulation/ApskQamModulation=OQPSK", "Filter/oversampling=4"});
  ASSERT_EQ(oqpsk.size(), 2048u);
  const samples_t on_time = wavelume_test::matched_symbols(oqpsk, 0.5, 4, 0);
  const samples_t half_late = wavelume_test::matched_symbols(oqpsk, 0.5, 4, 2);
  std::vector<double> i_rail, q_rail, q_on_time;
  for (std::size_t k = 0; k < on_time.size(); ++k) {
    i_rail.push_back(on_time[k].real());
    q_rail.push_back(half_late[k].imag());
    q_on_time.push_back(on_time[k].imag());
  }
  EXPECT_LT(rail_evm(i_rail), 0.01);
  EXPECT_LT(rail_evm(q_rail), 0.01);
  EXPECT_GT(rail_evm(q_on_time), 0.2);
}

TEST_F(CliGenerateSignals, FskAndMskCarryPn9) {
  // 2FSK, deviation 250 kHz at 1 Msym/s: a run of equal symbols advances 2 pi 0.25 per symbol.
  const samples_t fsk =
      generate_arb("2fsk.ARB", {"Modulation/modulationType=MFSK", "Modulation/fskDeviation=250000",
                                "Filter/filterType=None", "Filter/oversampling=8"});
  ASSERT_EQ(fsk.size(), 4096u);
  const std::vector<double> fsk_advances = phase_advances(fsk, 8);
  EXPECT_EQ(pn9_recurrence_share(fsk_advances), 1.0);
  // Two advances only; the modulator may add one common offset that closes the phase for looped
  // replay, so the deviation shows in their half difference.
  const auto [lower, upper] = std::minmax_element(fsk_advances.begin(), fsk_advances.end());
  EXPECT_NEAR((*upper - *lower) / 2.0, 0.5 * pi, 1e-3);
  for (const double advance : fsk_advances) {
    ASSERT_LT(std::min(std::abs(advance - *upper), std::abs(advance - *lower)), 1e-3);
  }

  // MSK: constant envelope, never more than a quarter turn per symbol, PN9 in the turns.
  const samples_t msk = generate_arb(
      "msk.ARB",
      {"Modulation/modulationType=MFSK", "Modulation/MfskModulation=MSK", "Filter/oversampling=8"});
  ASSERT_EQ(msk.size(), 4096u);
  for (const auto& s : msk) {
    ASSERT_NEAR(std::abs(s), 0.9, 1e-3);
  }
  const std::vector<double> msk_advances = phase_advances(msk, 8);
  EXPECT_EQ(pn9_recurrence_share(msk_advances), 1.0);
  for (const double advance : msk_advances) {
    ASSERT_LT(std::abs(advance), 0.5 * pi + 0.01);
    ASSERT_GT(std::abs(advance), 0.2 * pi);
  }
}

TEST_F(CliGenerateSignals, MultitoneLinesAndChirpSlope) {
  // Four tones from 1 to 2.5 MHz at 10 MHz on one side: lines at their frequencies, within one
  // bin (10 MHz / 8192) of rounding.
  const std::filesystem::path tones = _folder / "tones.ARB";
  ASSERT_EQ(
      generate({"custom-iq", "--set", "Modulation/modulationType=Multitone", "--set",
                "Modulation/multitoneMode=true", "--set", "Modulation/multitoneStopFreq=2500000",
                "--set", "Modulation/multitoneStartFreq=1000000", "--set",
                "Modulation/multitoneNumber=4", "--set", "Modulation/multitoneSingleSide=true",
                "-o", tones.string()}),
      0)
      << _errors.str();
  std::istringstream lines(analyse(tones, "tones"));
  std::vector<double> found{std::istream_iterator<double>(lines), std::istream_iterator<double>()};
  const std::vector<double> expected{1.0e6, 1.5e6, 2.0e6, 2.5e6};
  ASSERT_EQ(found.size(), expected.size()) << analyse(tones, "tones");
  for (std::size_t k = 0; k < expected.size(); ++k) {
    EXPECT_NEAR(found[k], expected[k], 1e7 / 8192);
  }

  // Up chirp over 20 MHz in 100 us centred on 5 MHz: slope 2e11 Hz/s from -5 MHz.
  const std::filesystem::path chirp = _folder / "chirp.ARB";
  ASSERT_EQ(generate({"custom-iq", "--set", "Modulation/modulationType=LFM", "--set",
                      "Modulation/lfmSweepTime=0.0001", "--set", "Modulation/lfmBandWidth=20000000",
                      "--set", "Modulation/lfmFreqOffset=5000000", "--set",
                      "Modulation/lfmSweepType=Up", "-o", chirp.string()}),
            0)
      << _errors.str();
  // 10,000 steps of 10 ns; the running time sum may fall one step short of the duration.
  EXPECT_NEAR(wavelume_test::read_arb(chirp).size(), 10000.0, 1.0);
  std::istringstream fit(analyse(chirp, "chirp"));
  double slope = 0.0;
  double start = 0.0;
  fit >> slope >> start;
  EXPECT_NEAR(slope, 2e11, 2e11 * 1e-3);
  EXPECT_NEAR(start, -5e6, 2e4);
}

}  // namespace

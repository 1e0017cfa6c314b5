#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <map>
#include <set>
#include <vector>

#include "lib/lib_fourier_transform.h"
#include "lib/lib_lfm.h"
#include "lib/lib_multitone.h"

namespace {

using nal::fp64;
using nal::lib_iq_data_arr_t;
using nal::uint32;
using nal::common_lib::lib_fourier_transform_t;
using nal::common_lib::lib_lfm_t;
using nal::common_lib::lib_multitone_config_t;
using nal::common_lib::lib_multitone_t;
using sweep_t = nal::common_lib::plib_lfm_custom_sweep_config_t;

constexpr double pi = 3.14159265358979323846;

// Bins of the spectrum of `samples` above 1e-6 of the strongest, with their values.
std::map<std::size_t, std::complex<double>> occupied_bins(const lib_iq_data_arr_t& samples) {
  lib_iq_data_arr_t spectrum;
  lib_fourier_transform_t::deal_fft(samples, spectrum);
  double peak = 0.0;
  for (const auto& value : spectrum) {
    peak = std::max(peak, std::abs(value));
  }
  std::map<std::size_t, std::complex<double>> bins;
  for (std::size_t k = 0; k < spectrum.size(); ++k) {
    if (std::abs(spectrum[k]) > 1e-6 * peak) {
      bins[k] = spectrum[k];
    }
  }
  return bins;
}

std::set<std::size_t> keys(const std::map<std::size_t, std::complex<double>>& bins) {
  std::set<std::size_t> out;
  for (const auto& entry : bins) {
    out.insert(entry.first);
  }
  return out;
}

// Every tone is a phasor of one magnitude at a whole number of radians 0..6, and the output's
// largest |I| or |Q| is 1; the phases themselves are random and not checked.
void expect_equal_tones_of_coarse_phase(const lib_iq_data_arr_t& samples,
                                        const std::map<std::size_t, std::complex<double>>& bins) {
  ASSERT_FALSE(bins.empty());
  const double magnitude = std::abs(bins.begin()->second);
  for (const auto& [bin, value] : bins) {
    EXPECT_NEAR(std::abs(value), magnitude, 1e-9 * magnitude) << "bin " << bin;
    double phase = std::arg(value);
    if (phase < -1e-9) {
      phase += 2.0 * pi;
    }
    EXPECT_NEAR(phase, std::round(phase), 1e-9) << "bin " << bin;
    EXPECT_LE(std::round(phase), 6.0);
  }
  double largest = 0.0;
  for (const auto& s : samples) {
    largest = std::max({largest, std::abs(s.real()), std::abs(s.imag())});
  }
  EXPECT_NEAR(largest, 1.0, 1e-15);
}

// 8.192 MHz over 8192 bins: 1 kHz per bin, so whole-kHz tones land exactly on bins.
lib_multitone_t kilohertz_grid_bank() {
  lib_multitone_t bank;
  bank.set_sample_rate(8192e3);
  bank.set_stop_frequency(2e6);
  bank.set_start_frequency(1e5);
  bank.set_tone_number(20);
  return bank;
}

TEST(Multitone, EquallySpacedTonesDoubleAndSingleSided) {
  lib_multitone_t bank = kilohertz_grid_bank();
  std::set<std::size_t> tones;
  std::set<std::size_t> with_mirrors;
  for (std::size_t i = 1; i <= 20; ++i) {
    tones.insert(100 * i);
    with_mirrors.insert(100 * i);
    with_mirrors.insert(8191 - 100 * i);
  }

  bank.generate();
  ASSERT_EQ(bank.get_samples().size(), 8192u);
  auto bins = occupied_bins(bank.get_samples());
  EXPECT_EQ(keys(bins), with_mirrors);
  expect_equal_tones_of_coarse_phase(bank.get_samples(), bins);
  for (const std::size_t bin : tones) {
    EXPECT_LT(std::abs(bins[bin] - bins[8191 - bin]), 1e-9 * std::abs(bins[bin]));
  }

  bank.set_single_side(true);
  bank.generate();
  bins = occupied_bins(bank.get_samples());
  EXPECT_EQ(keys(bins), tones);
  expect_equal_tones_of_coarse_phase(bank.get_samples(), bins);
}

TEST(Multitone, CustomFrequenciesAndTheirRefusals) {
  lib_multitone_t bank = kilohertz_grid_bank();
  testing::internal::CaptureStdout();
  EXPECT_FALSE(bank.set_custom_frequencies({5e4}));  // custom frequencies disabled
  bank.set_custom_frequency_enable(true);
  ASSERT_TRUE(bank.set_custom_frequencies({150e3, 1234e3, 40e3}));
  const std::vector<nal::lib_fp_data_arr_t> refused = {
      {},
      {-5.0},
      {1e5, std::nan("")},
      {1e5, 7e6},  // 1.2 * 7e6 exceeds 8.192e6
      nal::lib_fp_data_arr_t(10001, 1e5),
  };
  for (const auto& list : refused) {
    EXPECT_FALSE(bank.set_custom_frequencies(list)) << list.size() << " entries";
  }
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(bank.get_custom_frequencies(), (nal::lib_fp_data_arr_t{150e3, 1234e3, 40e3}));
  EXPECT_TRUE(bank.set_custom_frequencies({1e5, 6.8e6}));  // 1.2 * 6.8e6 is within the rate

  ASSERT_TRUE(bank.set_custom_frequencies({150e3, 1234e3, 40e3}));
  bank.set_single_side(true);
  bank.generate();
  const auto bins = occupied_bins(bank.get_samples());
  EXPECT_EQ(keys(bins), (std::set<std::size_t>{40, 150, 1234}));
  expect_equal_tones_of_coarse_phase(bank.get_samples(), bins);

  // A list accepted at a higher rate falls outside the transform after the rate drops.
  bank.set_sample_rate(1e6);
  testing::internal::CaptureStdout();
  bank.generate();
  EXPECT_NE(testing::internal::GetCapturedStdout().find("Tones outside the transform skipped: 1"),
            std::string::npos);
}

// The literal phase recursion, in long double, as the reference for the generator's output.
lib_iq_data_arr_t reference_chirp(double rate, const std::vector<sweep_t>& segments) {
  const long double d = 1.0L / rate;
  long double phase = 0.0L;
  lib_iq_data_arr_t out;
  for (const auto& s : segments) {
    const long double slope =
        (static_cast<long double>(s.stop_frequency) - s.start_frequency) / s.duration;
    long double f = s.start_frequency + 0.5L * d * slope;
    for (long double t = 0.0L; t < s.duration; t += d) {
      out.emplace_back(static_cast<double>(std::cos(phase)), static_cast<double>(std::sin(phase)));
      phase += 2.0L * 3.14159265358979323846264338327950288L * f * d;
      f += d * slope;
    }
  }
  return out;
}

TEST(Lfm, SweepsFollowTheirSlopesAndJoinWithoutPhaseJumps) {
  // Durations of 1000.5, 500.25 and 2000.01 sample periods: 1001, 501 and 2001 samples.
  const double rate = 1e6;
  const std::vector<sweep_t> segments = {
      {-1e5, 2e5, 1.0005e-3}, {2e5, 2e5, 5.0025e-4}, {3e5, -4e5, 2.00001e-3}};
  lib_lfm_t chirp;
  ASSERT_TRUE(chirp.set_config(rate, segments));
  lib_iq_data_arr_t out;
  ASSERT_TRUE(chirp.generate(out));
  ASSERT_EQ(out.size(), 1001u + 501u + 2001u);

  const lib_iq_data_arr_t reference = reference_chirp(rate, segments);
  ASSERT_EQ(reference.size(), out.size());
  for (std::size_t i = 0; i < out.size(); ++i) {
    ASSERT_LT(std::abs(out[i] - reference[i]), 1e-9) << "sample " << i;
  }
  EXPECT_EQ(out[0], std::complex<double>(1.0, 0.0));
}

}  // namespace

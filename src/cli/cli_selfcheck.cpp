#include "cli/cli_selfcheck.h"

#include <fftw3.h>
#include <omp.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <iomanip>
#include <random>
#include <string>

#include "lib/lib_convolution.h"
#include "lib/lib_filter.h"
#include "lib/lib_fourier_transform.h"
#include "lib/plib.h"

namespace wavelume::cli {

namespace {

using nal::fp64;
using nal::lib_iq_data_arr_t;
namespace lib = nal::common_lib;

lib_iq_data_arr_t random_samples(std::size_t count, unsigned seed) {
  std::mt19937 generator(seed);
  std::normal_distribution<fp64> gauss(0.0, 1.0);
  lib_iq_data_arr_t samples(count);
  for (auto& s : samples) {
    s = {gauss(generator), gauss(generator)};
  }
  return samples;
}

fp64 max_difference(const lib_iq_data_arr_t& a, const lib_iq_data_arr_t& b) {
  if (a.size() != b.size()) {
    return INFINITY;
  }
  fp64 worst = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    worst = std::max(worst, std::abs(a[i] - b[i]));
  }
  return worst;
}

// Largest deviation of an FFT from the DFT sum evaluated directly.
fp64 check_fft_against_dft() {
  const lib_iq_data_arr_t x = random_samples(243, 1);
  lib_iq_data_arr_t spectrum;
  lib::lib_fourier_transform_t::deal_fft(x, spectrum);
  lib_iq_data_arr_t direct(x.size());
  const fp64 n = static_cast<fp64>(x.size());
  for (std::size_t k = 0; k < x.size(); ++k) {
    for (std::size_t i = 0; i < x.size(); ++i) {
      const fp64 angle = -2.0 * lib::lib_pi * static_cast<fp64>((k * i) % x.size()) / n;
      direct[k] += x[i] * std::polar(1.0, angle);
    }
  }
  return max_difference(spectrum, direct);
}

fp64 check_fast_convolution() {
  const lib_iq_data_arr_t x = random_samples(5000, 2);
  const lib_iq_data_arr_t taps = random_samples(257, 3);
  lib_iq_data_arr_t fast;
  lib_iq_data_arr_t direct;
  lib::lib_convolution_t::deal_fft_convolution(x, taps, fast, true);
  lib::lib_convolution_t::deal_convolution(x, taps, direct);
  return max_difference(fast, direct);
}

// Inter-symbol interference of a root raised cosine matched pair, relative to its peak.
fp64 check_root_cosine_nyquist() {
  const nal::uint32 ratio = 8;
  lib_iq_data_arr_t taps;
  lib::lib_filter_t::_root_cosine_filter(0.35, 64, ratio, taps, true);
  lib_iq_data_arr_t pulse;
  lib::lib_convolution_t::deal_convolution(taps, taps, pulse);
  const std::size_t centre = pulse.size() / 2;
  fp64 worst = 0.0;
  for (std::size_t k = ratio; k <= 16 * ratio; k += ratio) {
    worst = std::max({worst, std::abs(pulse[centre + k]), std::abs(pulse[centre - k])});
  }
  return worst / std::abs(pulse[centre]);
}

fp64 measure_filter_throughput() {
  const lib_iq_data_arr_t x = random_samples(2'000'000, 4);
  const lib_iq_data_arr_t taps = random_samples(257, 5);
  lib_iq_data_arr_t out;
  lib::lib_convolution_t::deal_fft_convolution(x, taps, out, true);
  const auto start = std::chrono::steady_clock::now();
  lib::lib_convolution_t::deal_fft_convolution(x, taps, out, true);
  const std::chrono::duration<fp64> elapsed = std::chrono::steady_clock::now() - start;
  return static_cast<fp64>(x.size()) / elapsed.count();
}

}  // namespace

int run_selfcheck(std::ostream& report) {
  report << "FFTW " << fftw_version << ", " << omp_get_max_threads() << " OpenMP threads, "
         << lib::plib_t::get_work_thread_number() << " filter worker(s)\n";
  struct check_t {
    const char* name;
    std::function<fp64()> measure;
    fp64 limit;
  };
  const check_t checks[] = {
      {"FFT of 243 samples against direct DFT, max error", check_fft_against_dft, 1e-9},
      {"overlap-add against direct convolution, max error", check_fast_convolution, 1e-9},
      {"root raised cosine pair, worst ISI / peak", check_root_cosine_nyquist, 1e-2},
  };
  int failures = 0;
  for (const auto& check : checks) {
    const fp64 value = check.measure();
    const bool passed = value <= check.limit;
    failures += passed ? 0 : 1;
    report << (passed ? "PASS " : "FAIL ") << check.name << ": " << std::scientific
           << std::setprecision(2) << value << " (limit " << check.limit << ")\n";
  }
  report << std::fixed << std::setprecision(1)
         << "filter throughput, 257 taps: " << measure_filter_throughput() / 1e6
         << " M samples/s\n";
  const int passed = static_cast<int>(std::size(checks)) - failures;
  report << passed << " passed, " << failures << " failed" << std::endl;
  return failures == 0 ? 0 : 1;
}

}  // namespace wavelume::cli

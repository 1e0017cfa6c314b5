#pragma once
// Shared helpers of the signal library tests: seeded random signals and independent references.

#include <algorithm>
#include <cmath>
#include <random>

#include "lib/lib_types.h"

namespace wavelume_test {

inline nal::lib_iq_data_arr_t random_samples(std::size_t count, unsigned seed) {
  std::mt19937 generator(seed);
  std::normal_distribution<double> gauss(0.0, 1.0);
  nal::lib_iq_data_arr_t samples(count);
  for (auto& s : samples) {
    s = {gauss(generator), gauss(generator)};
  }
  return samples;
}

// Largest magnitude of the difference; infinity when the sizes differ.
inline double max_difference(const nal::lib_iq_data_arr_t& a, const nal::lib_iq_data_arr_t& b) {
  if (a.size() != b.size()) {
    return INFINITY;
  }
  double worst = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    worst = std::max(worst, std::abs(a[i] - b[i]));
  }
  return worst;
}

// The DFT sum evaluated term by term, with the sign convention exp(-+ j 2 pi k n / N).
inline nal::lib_iq_data_arr_t direct_dft(const nal::lib_iq_data_arr_t& x, bool inverse) {
  const std::size_t n = x.size();
  const double sign = inverse ? 1.0 : -1.0;
  nal::lib_iq_data_arr_t out(n);
  for (std::size_t k = 0; k < n; ++k) {
    std::complex<long double> sum = 0.0L;
    for (std::size_t i = 0; i < n; ++i) {
      const long double angle = sign * 2.0L * 3.14159265358979323846264338327950288L *
                                static_cast<long double>((k * i) % n) / static_cast<long double>(n);
      sum += std::complex<long double>(x[i].real(), x[i].imag()) *
             std::complex<long double>(std::cos(angle), std::sin(angle));
    }
    out[k] = {static_cast<double>(sum.real()), static_cast<double>(sum.imag())};
  }
  return out;
}

}  // namespace wavelume_test

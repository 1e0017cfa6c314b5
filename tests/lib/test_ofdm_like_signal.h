#pragma once
// An OFDM-like test signal and its quality figures: 52 of 64 subcarriers (+-1..+-26) carry seeded
// QPSK, each symbol is an inverse transform zero-padded to 256 points (oversampling 4), no cyclic
// prefix. The figures read the signal back the receiver's way, symbol by symbol.

#include <cmath>
#include <random>

#include "lib/lib_fourier_transform.h"
#include "lib/lib_types.h"

namespace wavelume_test {

struct ofdm_like_signal_t {
  static constexpr int used_half = 26;
  static constexpr int fft_length = 256;
  nal::lib_iq_data_arr_t samples;
  nal::lib_iq_data_arr_t symbols;  // used_half * 2 per OFDM symbol, lowest subcarrier first

  static std::size_t bin_of(int subcarrier) {
    return static_cast<std::size_t>((subcarrier + fft_length) % fft_length);
  }

  static ofdm_like_signal_t make(int symbol_count, unsigned seed) {
    ofdm_like_signal_t signal;
    std::mt19937 generator(seed);
    const double level = 1.0 / std::sqrt(2.0);
    for (int s = 0; s < symbol_count; ++s) {
      nal::lib_iq_data_arr_t bins(fft_length, 0.0);
      for (int k = -used_half; k <= used_half; ++k) {
        if (k != 0) {
          const nal::lib_iq_sample_t symbol{(generator() & 1) ? level : -level,
                                            (generator() & 1) ? level : -level};
          bins[bin_of(k)] = symbol;
          signal.symbols.push_back(symbol);
        }
      }
      nal::lib_iq_data_arr_t time;
      nal::common_lib::lib_fourier_transform_t::deal_ifft(bins, time, fft_length);
      signal.samples.insert(signal.samples.end(), time.begin(), time.end());
    }
    return signal;
  }

  // Rms error of the subcarriers against the sent symbols, relative to their rms, in percent.
  double evm_percent(const nal::lib_iq_data_arr_t& received) const {
    double error = 0.0;
    double reference = 0.0;
    std::size_t next = 0;
    for (std::size_t start = 0; start + fft_length <= received.size(); start += fft_length) {
      const nal::lib_iq_data_arr_t time(
          received.begin() + static_cast<std::ptrdiff_t>(start),
          received.begin() + static_cast<std::ptrdiff_t>(start + fft_length));
      nal::lib_iq_data_arr_t bins;
      nal::common_lib::lib_fourier_transform_t::deal_fft(time, bins, fft_length);
      for (int k = -used_half; k <= used_half; ++k) {
        if (k != 0) {
          // deal_ifft scales by 1 / length, deal_fft does not.
          error += std::norm(bins[bin_of(k)] - symbols[next]);
          reference += std::norm(symbols[next]);
          ++next;
        }
      }
    }
    return 100.0 * std::sqrt(error / reference);
  }

  // Share of the power, in dB, of the whole signal's spectrum beyond `edge` (a fraction of the
  // sample rate) on either side.
  static double out_of_band_db(const nal::lib_iq_data_arr_t& samples, double edge) {
    nal::lib_iq_data_arr_t spectrum;
    nal::common_lib::lib_fourier_transform_t::deal_fft(samples, spectrum);
    double outside = 0.0;
    double total = 0.0;
    const double count = static_cast<double>(spectrum.size());
    for (std::size_t b = 0; b < spectrum.size(); ++b) {
      const double index = static_cast<double>(b);
      const double frequency = (b < spectrum.size() / 2 ? index : index - count) / count;
      total += std::norm(spectrum[b]);
      outside += std::fabs(frequency) > edge ? std::norm(spectrum[b]) : 0.0;
    }
    return 10.0 * std::log10(outside / total);
  }
};

}  // namespace wavelume_test

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "lib/lib_ofdm_modulator.h"
#include "tests/lib/ofdm_training_data.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_ofdm_cyclic_config_t;
using nal::common_lib::lib_ofdm_cyclic_entry_t;
using nal::common_lib::lib_ofdm_modulator_t;
using wavelume_test::max_difference;
using wavelume_test::random_samples;
using complex_t = std::complex<double>;
using rows_t = std::vector<lib_iq_data_arr_t>;

std::string captured(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

struct frame_setup_t {
  unsigned fft_length;
  unsigned oversampling;
  unsigned symbols;
  unsigned row_length;
  double prefix_ratio;
  double suffix_ratio;
  double window_ratio;
  unsigned method;
  unsigned idle;
};

long rounded(double ratio, unsigned length) {
  return std::lround(ratio * length);
}

// The useful part as the inverse DFT sum: column c of an m-value row sits on bin
// floor((n - m) / 2) + c - ceil(n / 2), so a full row puts column m / 2 on 0 Hz.
lib_iq_data_arr_t reference_useful(const lib_iq_data_arr_t& row, unsigned n, unsigned os) {
  const long m = static_cast<long>(row.size());
  const long long_n = n;
  const long double pi = 3.14159265358979323846264338327950288L;
  lib_iq_data_arr_t out(n);
  for (long t = 0; t < long_n; ++t) {
    std::complex<long double> sum = 0.0L;
    for (long c = 0; c < m; ++c) {
      const long bin = (long_n - m) / 2 + c - (long_n + 1) / 2;
      const long phase_index = ((bin * t) % long_n + long_n) % long_n;
      const long double angle = 2.0L * pi * phase_index / long_n;
      sum += std::complex<long double>(row[c].real(), row[c].imag()) *
             std::complex<long double>(std::cos(angle), std::sin(angle));
    }
    sum *= static_cast<long double>(os) / long_n;
    out[t] = {static_cast<double>(sum.real()), static_cast<double>(sum.imag())};
  }
  return out;
}

double hanning_point(long k, long window_length) {
  return 0.5 * (1.0 - std::cos(2.0 * M_PI * k / (2.0 * window_length + 2.0)));
}

struct reference_frame_t {
  lib_iq_data_arr_t frame, head, tail;
};

// The frame built sample by sample from absolute indices. Symbol j of the extended symbol
// (j from -h) is the periodic useful part before and inside the symbol; past its end the edge
// repeats the symbol from index cp + cs - h on (method 0) or cp + cs on (other methods).
reference_frame_t reference_frame(const frame_setup_t& setup, const rows_t& rows,
                                  const std::vector<long>& prefix,
                                  const std::vector<long>& suffix) {
  const long n = setup.fft_length * setup.oversampling;
  const long window = rounded(setup.window_ratio, n);
  const long half = setup.method == 0 ? (window + 1) / 2 : 0;
  long frame_length = setup.idle * setup.oversampling;
  for (unsigned i = 0; i < setup.symbols; ++i) {
    frame_length += prefix[i] + n + suffix[i];
  }
  std::vector<std::pair<long, complex_t>> placed;
  long start = 0;
  for (unsigned i = 0; i < setup.symbols; ++i) {
    const lib_iq_data_arr_t useful = reference_useful(rows[i], n, setup.oversampling);
    const long cp = prefix[i];
    const long length = cp + n + suffix[i];
    const auto symbol_at = [&](long j) { return useful[((j - cp) % n + n) % n]; };
    for (long j = -half; j < length + window - half; ++j) {
      complex_t value = j < length ? symbol_at(j) : symbol_at(cp + suffix[i] - half + (j - length));
      if (window > 0 && j < window - half && setup.method == 0) {
        value *= hanning_point(j + half + 1, window);
      }
      const long from_end = length + window - half - 1 - j;
      if (window > 0 && from_end < window) {
        value *= hanning_point(2 * window + 1 - from_end, window);
      }
      placed.emplace_back(start + j, value);
    }
    start += length;
  }
  reference_frame_t out;
  out.frame.assign(frame_length, 0.0);
  for (const auto& [index, value] : placed) {
    if (index < 0) {
      if (static_cast<long>(out.head.size()) < -index) {
        out.head.insert(out.head.begin(), -index - out.head.size(), 0.0);
      }
      out.head[out.head.size() + index] += value;
    } else if (index >= frame_length) {
      if (static_cast<long>(out.tail.size()) <= index - frame_length) {
        out.tail.resize(index - frame_length + 1);
      }
      out.tail[index - frame_length] += value;
    } else {
      out.frame[index] += value;
    }
  }
  return out;
}

lib_ofdm_modulator_t configured(const frame_setup_t& setup) {
  lib_ofdm_modulator_t modulator;
  EXPECT_TRUE(modulator.set_fft_length(setup.fft_length));
  EXPECT_TRUE(modulator.set_oversampling_ratio(setup.oversampling));
  EXPECT_TRUE(modulator.set_symbol_number(setup.symbols));
  EXPECT_TRUE(modulator.set_cyclic_prefix(lib_ofdm_cyclic_config_t(setup.prefix_ratio)));
  EXPECT_TRUE(modulator.set_cyclic_suffix(lib_ofdm_cyclic_config_t(setup.suffix_ratio)));
  modulator.set_window_ratio(setup.window_ratio);
  modulator.set_window_method(setup.method);
  modulator.set_idle_length(setup.idle);
  return modulator;
}

rows_t random_rows(const frame_setup_t& setup, unsigned seed) {
  rows_t rows;
  for (unsigned i = 0; i < setup.symbols; ++i) {
    rows.push_back(random_samples(setup.row_length, seed + i));
  }
  return rows;
}

double peak(const lib_iq_data_arr_t& samples) {
  double result = 0.0;
  for (const auto& s : samples) {
    result = std::max(result, std::abs(s));
  }
  return result;
}

TEST(OfdmModulator, FramesMatchInverseDftWithLiteralPrefixWindowsAndFolding) {
  const std::vector<frame_setup_t> setups = {
      {16, 1, 3, 16, 0.25, 0.0, 0.0, 0, 0},      // plain concatenation
      {16, 1, 3, 16, 0.25, 0.0, 0.0625, 0, 0},   // L = 1
      {16, 2, 4, 16, 0.25, 0.125, 0.25, 0, 3},   // centred edges, idle time
      {16, 2, 4, 13, 0.125, 0.0625, 0.5, 0, 0},  // odd short row, widest edge
      {64, 1, 3, 64, 0.25, 0.0, 0.1875, 1, 0},   // edge from the boundary wraps to the start
      {8, 4, 5, 7, 0.5, 0.25, 0.375, 2, 2},      // oversampled, both cyclic parts
      {32, 3, 2, 32, 1.0, 0.0, 0.3125, 0, 1},    // prefix as long as the useful part
      {16, 1, 1, 16, 0.25, 0.0, 0.25, 0, 4},     // one symbol with enough idle time
  };
  unsigned seed = 1;
  for (const frame_setup_t& setup : setups) {
    SCOPED_TRACE("fft " + std::to_string(setup.fft_length) + " os " +
                 std::to_string(setup.oversampling) + " window " +
                 std::to_string(setup.window_ratio) + " method " + std::to_string(setup.method));
    lib_ofdm_modulator_t modulator = configured(setup);
    const rows_t rows = random_rows(setup, seed += 10);
    const long n = setup.fft_length * setup.oversampling;
    const std::vector<long> prefix(setup.symbols, rounded(setup.prefix_ratio, n));
    const std::vector<long> suffix(setup.symbols, rounded(setup.suffix_ratio, n));
    const reference_frame_t expected = reference_frame(setup, rows, prefix, suffix);

    lib_iq_data_arr_t frame, head, tail;
    ASSERT_TRUE(modulator.deal_ofdm_modulation(rows, frame, head, tail));
    const double tolerance = 1e-9 * peak(expected.frame);
    ASSERT_EQ(frame.size(), modulator.get_frame_length());
    EXPECT_LT(max_difference(frame, expected.frame), tolerance);
    EXPECT_LT(max_difference(head, expected.head), tolerance);
    EXPECT_LT(max_difference(tail, expected.tail), tolerance);

    // Folding: what sticks out in front ends with the frame, what sticks out behind starts it.
    lib_iq_data_arr_t folded = expected.frame;
    for (std::size_t k = 0; k < expected.head.size(); ++k) {
      folded[folded.size() - expected.head.size() + k] += expected.head[k];
    }
    for (std::size_t k = 0; k < expected.tail.size(); ++k) {
      folded[k] += expected.tail[k];
    }
    ASSERT_TRUE(modulator.deal_ofdm_frame(rows, frame));
    EXPECT_LT(max_difference(frame, folded), tolerance);
  }
}

TEST(OfdmModulator, PerSymbolCyclicLengthsFollowTheFirstMatchingEntry) {
  const frame_setup_t setup{16, 2, 4, 16, 0.25, 0.0, 0.25, 0, 1};
  lib_ofdm_modulator_t modulator = configured(setup);
  lib_ofdm_cyclic_config_t prefix(0.25);
  prefix.entry_list = {lib_ofdm_cyclic_entry_t({2, 0}, 0.5), lib_ofdm_cyclic_entry_t({3}, 0.0)};
  ASSERT_TRUE(modulator.set_cyclic_prefix(prefix));
  lib_ofdm_cyclic_config_t suffix(0.0);
  suffix.entry_list = {lib_ofdm_cyclic_entry_t({1, 1}, 0.125)};
  ASSERT_TRUE(modulator.set_cyclic_suffix(suffix));

  const rows_t rows = random_rows(setup, 77);
  const reference_frame_t expected = reference_frame(setup, rows, {16, 8, 16, 0}, {0, 4, 0, 0});
  lib_iq_data_arr_t frame, head, tail;
  ASSERT_TRUE(modulator.deal_ofdm_modulation(rows, frame, head, tail));
  EXPECT_EQ(modulator.get_frame_length(), 48u + 44u + 48u + 32u + 2u);
  EXPECT_LT(max_difference(frame, expected.frame), 1e-9 * peak(expected.frame));
  EXPECT_LT(max_difference(head, expected.head), 1e-9 * peak(expected.frame));
}

// The training sequences of clause 17.3.3 through the engine, against the time-domain values
// of Annex G (3 decimals, so half a unit of the last digit per component).
constexpr double table_rounding = 0.0005 + 1e-12;

void expect_matches_table(const lib_iq_data_arr_t& samples, std::size_t first, std::size_t period,
                          const complex_t* table, std::size_t table_offset) {
  for (std::size_t t = first; t < samples.size(); ++t) {
    const complex_t expected = table[(t + table_offset) % period];
    EXPECT_NEAR(samples[t].real(), expected.real(), table_rounding) << "t = " << t;
    EXPECT_NEAR(samples[t].imag(), expected.imag(), table_rounding) << "t = " << t;
  }
}

lib_iq_data_arr_t training_row(const std::array<int, 53>& values, complex_t unit) {
  lib_iq_data_arr_t row(64, 0.0);  // column 32 is subcarrier 0
  for (int k = -26; k <= 26; ++k) {
    row[32 + k] = unit * static_cast<double>(values[k + 26]);
  }
  return row;
}

TEST(OfdmModulator, Ieee80211aShortTrainingSequenceMatchesAnnexG) {
  // 160 samples: a prefix of the whole symbol and a suffix of half of it.
  lib_ofdm_modulator_t modulator = configured({64, 1, 1, 64, 1.0, 0.5, 0.0, 0, 0});
  const complex_t unit = std::sqrt(13.0 / 6.0) * complex_t(1.0, 1.0);
  lib_iq_data_arr_t frame;
  ASSERT_TRUE(modulator.deal_ofdm_frame(
      {training_row(wavelume_test::ieee80211a_short_training_signs, unit)}, frame));
  ASSERT_EQ(frame.size(), 160u);
  expect_matches_table(frame, 0, 16, wavelume_test::ieee80211a_short_period.data(), 0);

  // Oversampling interpolates: every second sample is the table again, at the same level.
  ASSERT_TRUE(modulator.set_oversampling_ratio(2));
  ASSERT_TRUE(modulator.deal_ofdm_frame(
      {training_row(wavelume_test::ieee80211a_short_training_signs, unit)}, frame));
  ASSERT_EQ(frame.size(), 320u);
  lib_iq_data_arr_t even;
  for (std::size_t t = 0; t < frame.size(); t += 2) {
    even.push_back(frame[t]);
  }
  expect_matches_table(even, 0, 16, wavelume_test::ieee80211a_short_period.data(), 0);
}

TEST(OfdmModulator, Ieee80211aLongTrainingSequenceMatchesAnnexG) {
  // GI2 and two long symbols: the first symbol alone carries a half-length prefix.
  lib_ofdm_modulator_t modulator = configured({64, 1, 2, 64, 0.0, 0.0, 0.0, 0, 0});
  lib_ofdm_cyclic_config_t prefix(0.0);
  prefix.entry_list = {lib_ofdm_cyclic_entry_t({0}, 0.5)};
  ASSERT_TRUE(modulator.set_cyclic_prefix(prefix));
  const lib_iq_data_arr_t row = training_row(wavelume_test::ieee80211a_long_training, 1.0);
  lib_iq_data_arr_t frame;
  ASSERT_TRUE(modulator.deal_ofdm_frame({row, row}, frame));
  ASSERT_EQ(frame.size(), 160u);
  // Table G.6 t = 0 is the window overlap with the short sequence; t = 32 is symbol sample 0.
  expect_matches_table(frame, 1, 64, wavelume_test::ieee80211a_long_symbol.data(), 32);
}

TEST(OfdmModulator, EdgeCasesOfTheWindows) {
  const rows_t rows3 = random_rows({16, 1, 3, 16, 0, 0, 0, 0, 0}, 5);
  lib_iq_data_arr_t frame, head, tail;

  // No window: the symbols back to back, then idle zeros; nothing sticks out.
  lib_ofdm_modulator_t plain = configured({16, 1, 3, 16, 0.25, 0.0, 0.0, 0, 2});
  ASSERT_TRUE(plain.deal_ofdm_modulation(rows3, frame, head, tail));
  lib_iq_data_arr_t joined;
  for (unsigned i = 0; i < 3; ++i) {
    const lib_iq_data_arr_t useful = reference_useful(rows3[i], 16, 1);
    joined.insert(joined.end(), useful.end() - 4, useful.end());
    joined.insert(joined.end(), useful.begin(), useful.end());
  }
  joined.resize(joined.size() + 2, 0.0);
  EXPECT_LT(max_difference(frame, joined), 1e-12);
  EXPECT_TRUE(head.empty());
  EXPECT_TRUE(tail.empty());
  EXPECT_TRUE(plain.get_rising_window().empty());

  // L = 1, centred: one sample in front, none appended, both halves of the window on it.
  lib_ofdm_modulator_t single = configured({16, 1, 3, 16, 0.25, 0.0, 0.0625, 0, 0});
  ASSERT_TRUE(single.deal_ofdm_modulation(rows3, frame, head, tail));
  ASSERT_EQ(single.get_window_length(), 1u);
  EXPECT_NEAR(single.get_rising_window().at(0).real(), 0.5, 1e-15);
  EXPECT_NEAR(single.get_falling_window().at(0).real(), 0.5, 1e-15);
  ASSERT_EQ(head.size(), 1u);
  EXPECT_TRUE(tail.empty());
  const lib_iq_data_arr_t first = reference_useful(rows3[0], 16, 1);
  EXPECT_LT(std::abs(head[0] - 0.5 * first[11]), 1e-12);
  const lib_iq_data_arr_t last = reference_useful(rows3[2], 16, 1);
  EXPECT_LT(std::abs(frame.back() - 0.5 * last[15]), 1e-12);

  // Edge from the boundary without idle time: the last symbol's extension opens the frame.
  lib_ofdm_modulator_t late = configured({16, 1, 3, 16, 0.25, 0.0, 0.25, 1, 0});
  ASSERT_TRUE(late.deal_ofdm_modulation(rows3, frame, head, tail));
  EXPECT_TRUE(head.empty());
  ASSERT_EQ(tail.size(), 4u);
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_LT(std::abs(tail[k] - late.get_falling_window()[k] * last[k]), 1e-12);
  }

  // A default prefix of 1.0 doubles each symbol.
  lib_ofdm_modulator_t doubled = configured({16, 1, 1, 16, 1.0, 0.0, 0.0, 0, 0});
  ASSERT_TRUE(doubled.deal_ofdm_frame({rows3[0]}, frame));
  ASSERT_EQ(frame.size(), 32u);
  EXPECT_EQ(lib_iq_data_arr_t(frame.begin(), frame.begin() + 16),
            lib_iq_data_arr_t(frame.begin() + 16, frame.end()));
}

TEST(OfdmModulator, OneSymbolStickingOutOnBothSidesRaisesOutOfRange) {
  lib_ofdm_modulator_t modulator = configured({16, 1, 1, 16, 0.25, 0.0, 0.25, 0, 0});
  lib_iq_data_arr_t frame;
  EXPECT_THROW(modulator.deal_ofdm_frame({random_samples(16, 3)}, frame), std::out_of_range);
}

TEST(OfdmModulator, RefusedRowsAreReportedAndLeaveEmptyOutputs) {
  lib_ofdm_modulator_t modulator = configured({16, 1, 2, 16, 0.0, 0.0, 0.25, 0, 0});
  const std::string line =
      "lib_ofdm_modulator_t::deal_ofdm_modulation Report : Payload Mapping Size Error!\n";
  const std::vector<rows_t> refused = {
      {},
      {random_samples(16, 1)},
      {random_samples(17, 1), random_samples(17, 2)},
      {random_samples(8, 1), random_samples(9, 2)},
      {lib_iq_data_arr_t(), lib_iq_data_arr_t()},
  };
  for (const rows_t& rows : refused) {
    lib_iq_data_arr_t frame(5), head(5), tail(5);
    bool result = true;
    EXPECT_EQ(captured([&] { result = modulator.deal_ofdm_modulation(rows, frame, head, tail); }),
              line);
    EXPECT_FALSE(result);
    EXPECT_TRUE(frame.empty() && head.empty() && tail.empty());
  }
  lib_iq_data_arr_t frame(3);
  EXPECT_EQ(captured([&] { EXPECT_FALSE(modulator.deal_ofdm_frame({}, frame)); }), line);
  EXPECT_TRUE(frame.empty());
}

TEST(OfdmCyclicConfig, AcceptanceFilteringAndClamping) {
  lib_ofdm_modulator_t modulator;
  ASSERT_TRUE(modulator.set_symbol_number(4));
  const auto& generator = modulator.get_symbol_generator();

  lib_ofdm_cyclic_config_t config(0.25);
  config.entry_list = {lib_ofdm_cyclic_entry_t({1, 3, 3}, 0.5)};
  ASSERT_TRUE(modulator.set_cyclic_prefix(config));

  lib_ofdm_cyclic_config_t out_of_range(0.0);
  out_of_range.entry_list = {lib_ofdm_cyclic_entry_t({0, 4}, 0.5)};
  lib_ofdm_cyclic_config_t twice(0.0);
  twice.entry_list = {lib_ofdm_cyclic_entry_t({0, 2}, 0.5), lib_ofdm_cyclic_entry_t({2}, 0.1)};
  captured([&] {
    EXPECT_FALSE(modulator.set_cyclic_prefix(out_of_range));
    EXPECT_FALSE(modulator.set_cyclic_prefix(twice));
  });
  EXPECT_EQ(generator.get_prefix_length(3), 32u);
  EXPECT_EQ(generator.get_prefix_length(2), 16u);

  lib_ofdm_cyclic_config_t empty_list(0.0);
  empty_list.entry_list = {lib_ofdm_cyclic_entry_t({}, 0.5)};
  EXPECT_THROW(modulator.set_cyclic_prefix(empty_list), std::out_of_range);

  // Fewer symbols drop the indices beyond them, and the entries left empty.
  ASSERT_TRUE(modulator.set_symbol_number(3));
  ASSERT_EQ(generator.get_cyclic_prefix().entry_list.size(), 1u);
  EXPECT_EQ(generator.get_cyclic_prefix().entry_list[0].symbol_index_list,
            (std::vector<unsigned>{1}));
  ASSERT_TRUE(modulator.set_symbol_number(1));
  EXPECT_TRUE(generator.get_cyclic_prefix().entry_list.empty());

  EXPECT_EQ(lib_ofdm_cyclic_entry_t({0}, -0.5).ratio, 0.0);
  EXPECT_EQ(lib_ofdm_cyclic_entry_t({0}, std::nan("")).ratio, 0.0);
  EXPECT_EQ(lib_ofdm_cyclic_entry_t({0}, 3.0).ratio, 1.0);
  lib_ofdm_cyclic_config_t reset(2.0);
  EXPECT_EQ(reset.default_ratio, 1.0);
  reset.entry_list = {lib_ofdm_cyclic_entry_t({0}, 0.5)};
  reset.set_default_ratio(0.125);
  EXPECT_EQ(reset.default_ratio, 0.125);
  EXPECT_TRUE(reset.entry_list.empty());
}

}  // namespace

// Modulators judged by demodulators written here: matched filtering and nearest-point decisions
// for the linear families, phase differences for the differential ones, a frequency
// discriminator for FSK. Decisions must give back the source symbols exactly.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "lib/lib_filter.h"
#include "lib/lib_modulation_apsk_qam.h"
#include "lib/lib_modulation_fsk.h"
#include "lib/lib_normalization.h"
#include "lib/lib_oversampling.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::fp64;
using nal::lib_constellation_map_t;
using nal::lib_iq_data_arr_t;
using nal::lib_symbol_arr_t;
using nal::uint32;
using namespace nal::common_lib;

constexpr fp64 pi = 3.14159265358979323846;

lib_modulation_config_t linear_config(nal::modulation_type_t type, nal::filter_type_t filter,
                                      uint32 symbols, bool gray) {
  lib_modulation_config_t config;
  config.modulator_type = nal::MODULATOR_APSK_QAM;
  config.symbol_rate = 100000;
  config.oversampling_ratio = 8;
  config.data_source_code = 1;  // PN9
  config.symbol_length = symbols;
  config.constellation_type = type;
  config.gray_code = gray;
  config.filter_type = filter;
  config.filter_parameter = 0.35;
  config.filter_length = 32;
  return config;
}

// The symbols the data source should have produced: its bits, most significant first.
lib_symbol_arr_t symbols_from_bits(const lib_modulation_base_t& modulator) {
  const auto& bits = modulator.symbol_data().get_bit_arr();
  const uint32 width = modulator.symbol_data().get_bits_per_symbol();
  lib_symbol_arr_t symbols;
  for (std::size_t first = 0; first + width <= bits.size(); first += width) {
    uint32 value = 0;
    for (uint32 b = 0; b < width; ++b) {
      value = value * 2 + bits[first + b];
    }
    symbols.push_back(value);
  }
  symbols.resize(modulator.symbol_data().get_symbol_length());
  return symbols;
}

// Cyclic correlation with the pulse: y[i] = sum_k taps[k] x[(i + k - centre) mod n].
lib_iq_data_arr_t cyclic_matched_filter(const lib_iq_data_arr_t& x, const lib_iq_data_arr_t& taps) {
  const std::size_t n = x.size();
  const std::size_t centre = taps.size() / 2;
  lib_iq_data_arr_t y(n);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t k = 0; k < taps.size(); ++k) {
      y[i] += std::conj(taps[k]) * x[(i + k + n * taps.size() - centre) % n];
    }
  }
  return y;
}

uint32 nearest_symbol(const lib_constellation_map_t& map, std::complex<fp64> point) {
  uint32 best = 0;
  fp64 best_distance = std::numeric_limits<fp64>::infinity();
  for (const auto& [symbol, reference] : map) {
    const fp64 distance = std::norm(point - reference);
    if (distance < best_distance) {
      best_distance = distance;
      best = symbol;
    }
  }
  return best;
}

fp64 largest_component(const lib_iq_data_arr_t& x) {
  fp64 largest = 0.0;
  for (const auto& s : x) {
    largest = std::max({largest, std::abs(s.real()), std::abs(s.imag())});
  }
  return largest;
}

struct linear_case_t {
  nal::modulation_type_t type;
  bool gray;
};

class LinearModulation : public testing::TestWithParam<linear_case_t> {};

TEST_P(LinearModulation, MatchedFilterRecoversEverySymbolWithTinyEvm) {
  const auto [type, gray] = GetParam();
  lib_modulation_apsk_qam_t modulator;
  ASSERT_TRUE(
      modulator.set_modulation_config(linear_config(type, nal::FILTER_ROOT_COSINE, 600, gray)));
  modulator.deal_modulation();
  const lib_iq_data_arr_t& y = modulator.get_modulated_iq_data();
  ASSERT_EQ(y.size(), 600u * 8u);
  EXPECT_EQ(largest_component(y), 0.89996337890625);

  lib_iq_data_arr_t taps;
  lib_filter_t::_root_cosine_filter(0.35, 32, 8, taps, true);
  const lib_iq_data_arr_t matched = cyclic_matched_filter(y, taps);
  const lib_symbol_arr_t sent = symbols_from_bits(modulator);
  const lib_constellation_map_t& map = modulator.get_constellation_map();

  // Data-aided gain, then decisions and the error vector against the ideal points.
  std::complex<fp64> cross = 0.0;
  fp64 power = 0.0;
  for (std::size_t k = 0; k < sent.size(); ++k) {
    cross += matched[k * 8] * std::conj(map.at(sent[k]));
    power += std::norm(map.at(sent[k]));
  }
  const std::complex<fp64> gain = cross / power;
  fp64 error = 0.0;
  for (std::size_t k = 0; k < sent.size(); ++k) {
    const std::complex<fp64> received = matched[k * 8] / gain;
    ASSERT_EQ(nearest_symbol(map, received), sent[k]) << "symbol " << k;
    error += std::norm(received - map.at(sent[k]));
  }
  EXPECT_LT(std::sqrt(error / power), 0.005);
}

INSTANTIATE_TEST_SUITE_P(Families, LinearModulation,
                         testing::Values(linear_case_t{nal::MOD_1024QAM, true},
                                         linear_case_t{nal::MOD_128QAM, false},
                                         linear_case_t{nal::MOD_32APSK, false}));

TEST(LinearModulationArithmetic, EqualsOversamplingCyclicFilteringAndNormalisation) {
  lib_modulation_apsk_qam_t modulator;
  ASSERT_TRUE(modulator.set_modulation_config(
      linear_config(nal::MOD_64QAM, nal::FILTER_RAISED_COSINE, 500, true)));
  modulator.deal_modulation();

  // The literal chain: points, impulses, cyclic filtering, largest component to 0.89996...
  lib_iq_data_arr_t points;
  for (const uint32 symbol : symbols_from_bits(modulator)) {
    points.push_back(modulator.get_constellation_map().at(symbol));
  }
  lib_iq_data_arr_t impulses;
  lib_oversampling_t::_deal_insert_zero_oversampling(points, 8, impulses);
  lib_filter_t filter;
  filter.set_filter_type(nal::FILTER_RAISED_COSINE);
  filter.set_filter_parameter(0.35);
  filter.set_filter_length(32);
  filter.set_oversampling_ratio(8);
  lib_iq_data_arr_t literal;
  ASSERT_TRUE(filter.deal_filter(impulses, literal, true));
  lib_normalization_t::max_normalize(literal);
  for (auto& sample : literal) {
    sample *= 0.89996337890625;
  }
  EXPECT_LT(wavelume_test::max_difference(modulator.get_modulated_iq_data(), literal), 1e-9);
}

TEST(DifferentialModulation, PhaseDifferencesCarryTheSymbols) {
  struct case_t {
    nal::modulation_type_t type;
    fp64 offset;  // extra rotation per symbol, in units of pi / points
    uint32 points;
  };
  for (const case_t c : {case_t{nal::MOD_PI4_DQPSK, 1.0, 4}, case_t{nal::MOD_D8PSK, 0.0, 8},
                         case_t{nal::MOD_PI8_D8PSK, 1.0, 8}}) {
    lib_modulation_apsk_qam_t modulator;
    ASSERT_TRUE(modulator.set_modulation_config(
        linear_config(c.type, nal::FILTER_ROOT_COSINE, 400, false)));
    modulator.deal_modulation();
    lib_iq_data_arr_t taps;
    lib_filter_t::_root_cosine_filter(0.35, 32, 8, taps, true);
    const lib_iq_data_arr_t matched =
        cyclic_matched_filter(modulator.get_modulated_iq_data(), taps);
    const lib_symbol_arr_t sent = symbols_from_bits(modulator);
    for (std::size_t k = 1; k < sent.size(); ++k) {
      const fp64 turn = std::arg(matched[k * 8] * std::conj(matched[(k - 1) * 8]));
      const fp64 steps = turn * c.points / pi - c.offset;  // 2 s + offset, in pi / points
      const long symbol = std::lround(steps / 2.0);
      EXPECT_EQ(static_cast<uint32>((symbol % long(c.points) + c.points) % c.points), sent[k])
          << "type " << c.type << ", symbol " << k;
    }
  }
}

TEST(OffsetModulation, HalfSinePulsesCarryIOnTheSymbolAndQHalfASymbolLater) {
  lib_modulation_apsk_qam_t modulator;
  ASSERT_TRUE(modulator.set_modulation_config(
      linear_config(nal::MOD_OQPSK, nal::FILTER_HALF_SINE, 300, false)));
  modulator.deal_modulation();
  const lib_iq_data_arr_t& y = modulator.get_modulated_iq_data();
  const lib_symbol_arr_t sent = symbols_from_bits(modulator);
  const lib_constellation_map_t& map = modulator.get_constellation_map();
  for (std::size_t k = 0; k < sent.size(); ++k) {
    const std::complex<fp64> decided(y[k * 8].real(), y[k * 8 + 4].imag());
    EXPECT_EQ(nearest_symbol(map, decided), sent[k]) << "symbol " << k;
    // Between its own peaks each branch passes through zero: the pulses do not overlap.
    EXPECT_NEAR(y[k * 8 + 4].real(), 0.0, 1e-12);
  }
}

// Frequency discriminator at the middle of each symbol, in units of the full deviation.
std::vector<fp64> discriminate(const lib_iq_data_arr_t& y, uint32 ratio, fp64 step) {
  std::vector<fp64> deviations;
  for (std::size_t k = 0; (k + 1) * ratio < y.size(); ++k) {
    const std::size_t middle = k * ratio + ratio / 2;
    const fp64 turn = std::arg(y[middle] * std::conj(y[middle - 1])) +
                      std::arg(y[middle + 1] * std::conj(y[middle]));
    deviations.push_back(turn / 2.0 / (step / ratio));
  }
  return deviations;
}

lib_modulation_config_t fsk_config(nal::modulation_type_t type, nal::filter_type_t filter,
                                   uint32 symbols, fp64 deviation) {
  lib_modulation_config_t config = linear_config(type, filter, symbols, false);
  config.modulator_type = nal::MODULATOR_MFSK;
  config.symbol_rate = 10000;
  config.frequency_deviation = deviation;
  config.filter_parameter = 0.5;
  config.filter_length = 4;
  return config;
}

TEST(FskModulation, DiscriminatorRecovers4FskGaussian) {
  lib_modulation_fsk_t modulator;
  ASSERT_TRUE(modulator.set_modulation_config(
      fsk_config(nal::MOD_4FSK, nal::FILTER_GAUSSIAN, 500, 2500.0)));
  modulator.deal_modulation();
  const lib_iq_data_arr_t& y = modulator.get_modulated_iq_data();
  ASSERT_EQ(y.size(), 4000u);
  EXPECT_EQ(largest_component(y), 0.89996337890625);
  for (const auto& s : y) {
    ASSERT_NEAR(std::abs(s), std::abs(y.front()), 1e-12);  // constant envelope
  }
  const fp64 step = 2.0 * pi * 2500.0 / 10000.0;
  const std::vector<fp64> deviations = discriminate(y, 8, step);
  const lib_symbol_arr_t sent = symbols_from_bits(modulator);
  const lib_constellation_map_t& map = modulator.get_constellation_map();
  for (std::size_t k = 0; k < deviations.size(); ++k) {
    EXPECT_EQ(nearest_symbol(map, deviations[k]), sent[k]) << "symbol " << k;
  }
}

TEST(FskModulation, EqualsHoldFilterAndPhaseIntegration) {
  for (const nal::filter_type_t filter : {nal::FILTER_GAUSSIAN, nal::FILTER_ROOT_COSINE}) {
    lib_modulation_fsk_t modulator;
    ASSERT_TRUE(modulator.set_modulation_config(fsk_config(nal::MOD_8FSK, filter, 300, 1500.0)));
    modulator.deal_modulation();

    // The literal chain: deviations held (Gaussian) or as impulses, each over a symbol, cyclic
    // filtering with unit DC gain, phase integration, largest component to 0.89996...
    lib_iq_data_arr_t deviations;
    for (const uint32 symbol : symbols_from_bits(modulator)) {
      deviations.push_back(modulator.get_constellation_map().at(symbol));
    }
    lib_iq_data_arr_t oversampled;
    if (filter == nal::FILTER_GAUSSIAN) {
      lib_oversampling_t::_deal_holder_oversampling(deviations, 8, oversampled);
      for (auto& sample : oversampled) {
        sample *= 1.0 / 8;
      }
    } else {
      lib_oversampling_t::_deal_insert_zero_oversampling(deviations, 8, oversampled);
    }
    lib_filter_t pulse;
    pulse.set_filter_type(filter);
    pulse.set_filter_parameter(0.5);
    pulse.set_filter_length(4);
    pulse.set_oversampling_ratio(8);
    lib_iq_data_arr_t taps;
    ASSERT_TRUE(pulse._generate_filter(taps));
    lib_filter_t::normalize_dc_gain(taps);
    lib_iq_data_arr_t shaped;
    ASSERT_TRUE(lib_filter_t::deal_filter(oversampled, taps, shaped, true));
    lib_iq_data_arr_t literal;
    lib_modulation_fsk_t::integrate_phase(shaped, 2.0 * pi * 1500.0 / 10000.0, literal);
    lib_normalization_t::max_normalize(literal);
    for (auto& sample : literal) {
      sample *= 0.89996337890625;
    }
    EXPECT_LT(wavelume_test::max_difference(modulator.get_modulated_iq_data(), literal), 1e-9)
        << "filter " << filter;
  }
}

TEST(FskModulation, MskTurnsAQuarterCyclePerSymbolWhateverTheDeviation) {
  lib_modulation_fsk_t modulator;
  // The deviation is ignored by MSK.
  ASSERT_TRUE(
      modulator.set_modulation_config(fsk_config(nal::MOD_MSK, nal::FILTER_NONE, 256, 777.0)));
  modulator.deal_modulation();
  const lib_iq_data_arr_t& y = modulator.get_modulated_iq_data();
  const lib_symbol_arr_t sent = symbols_from_bits(modulator);
  const lib_constellation_map_t& map = modulator.get_constellation_map();
  // Sample i carries the phase step of sample i: symbol k spans samples 8k .. 8k + 7.
  const fp64 closure_per_symbol = 8 * pi / (y.size() - 1) + 1e-12;
  for (std::size_t k = 1; k < sent.size(); ++k) {
    const fp64 turn = std::arg(y[k * 8 + 7] * std::conj(y[k * 8 - 1]));
    EXPECT_NEAR(turn, map.at(sent[k]).real() * pi / 2.0, closure_per_symbol) << "symbol " << k;
  }
  // Looping the waveform leaves no phase jump: the last step is a normal one.
  const fp64 wrap_turn = std::arg(y.front() * std::conj(y.back()));
  EXPECT_LT(std::abs(wrap_turn), pi / 2.0 / 8.0 + 1e-9);
}

// Offset modulation needs an even ratio and a half-sine pulse; refusals change nothing.
TEST(ModulatorSettings, OffsetModulationRepairsAndRefusals) {
  lib_modulation_apsk_qam_t modulator;
  ASSERT_TRUE(modulator.set_filter_type(nal::FILTER_GAUSSIAN));
  ASSERT_TRUE(modulator.set_oversampling_ratio(5));
  ASSERT_TRUE(modulator.set_constellation_type(nal::MOD_OQPSK));
  EXPECT_EQ(modulator.get_oversampling_ratio(), 6u);
  EXPECT_EQ(modulator.get_filter_type(), nal::FILTER_HALF_SINE);
  modulator.set_oversampling_ratio(3);
  EXPECT_EQ(modulator.get_oversampling_ratio(), 4u);
  testing::internal::CaptureStdout();
  EXPECT_FALSE(modulator.set_filter_type(nal::FILTER_GAUSSIAN));
  EXPECT_FALSE(modulator.set_oversampling_ratio(1));
  EXPECT_EQ(modulator.get_oversampling_ratio(), 4u);
  ASSERT_TRUE(modulator.set_constellation_type(nal::MOD_QPSK));
  EXPECT_EQ(modulator.get_filter_type(), nal::FILTER_ROOT_COSINE);
  EXPECT_FALSE(modulator.set_filter_type(nal::FILTER_HALF_SINE));
  lib_modulation_fsk_t fsk;
  EXPECT_FALSE(fsk.set_gray_code_enable(true));
  EXPECT_FALSE(fsk.set_modulation_config(lib_modulation_config_t{}));  // an APSK/QAM record
  testing::internal::GetCapturedStdout();
}

}  // namespace

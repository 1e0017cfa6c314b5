// The symbol path of the Custom IQ engine against golden vectors: data sources, default
// constellation maps, and the modulated points they give.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "custom_iq/custom_iq.h"
#include "tests/custom_iq/golden_data.h"

namespace {

using namespace nal;
using wavelume_test::golden_map_t;

// The largest component of every modulated waveform.
constexpr double output_peak = 0.89996337890625;

void quietly(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  action();
  testing::internal::GetCapturedStdout();
}

// Impulses without a pulse filter: sample 2k is symbol k's point, sample 2k + 1 is zero.
struct unshaped_engine_t {
  custom_iq_t engine;

  unshaped_engine_t(modulation_type_t type, bool gray, data_source_type_t source) {
    quietly([&] {
      engine.preset();
      engine.set_apsk_qam_type(type);
      engine.set_gray_code_enable(gray);
      engine.set_filter_type(FILTER_NONE);
      engine.set_oversampling(2);
      engine.set_symbol_length(1024);
      engine.set_data_source_type(source);
    });
  }
  const lib_iq_data_arr_t& run() {
    quietly([&] { engine.update_waveform(); });
    return engine.get_waveform_data();
  }
};

// The map of the generator's definition: raw points scaled to unit mean power.
lib_constellation_map_t normalized(const golden_map_t& golden) {
  double power = 0.0;
  for (const auto& point : golden.raw_points) {
    power += std::norm(point);
  }
  const double rms = std::sqrt(power / golden.raw_points.size());
  lib_constellation_map_t map;
  for (uint32 symbol = 0; symbol < golden.raw_points.size(); ++symbol) {
    map[symbol] = golden.raw_points[symbol] / rms;
  }
  return map;
}

const golden_map_t& golden_map(const std::string& name, bool gray) {
  static const std::vector<golden_map_t> maps = wavelume_test::read_golden_maps();
  static const golden_map_t none;
  const auto found = std::find_if(maps.begin(), maps.end(), [&](const golden_map_t& map) {
    return map.name == name && map.gray == gray;
  });
  return found == maps.end() ? none : *found;
}

// BPSK sends bit 1 at +I and bit 0 at -I, so the sign of each impulse is the source's bit.
TEST(CustomIqGoldenDataSource, EachPrbsSourceSendsItsSequence) {
  const std::vector<std::pair<data_source_type_t, std::string>> sources{{DATA_SOURCE_PN7, "PN7"},
                                                                        {DATA_SOURCE_PN9, "PN9"},
                                                                        {DATA_SOURCE_PN15, "PN15"},
                                                                        {DATA_SOURCE_PN23, "PN23"},
                                                                        {DATA_SOURCE_PN31, "PN31"}};
  for (const auto& [source, name] : sources) {
    const std::vector<int> expected = wavelume_test::golden_prbs(name).bits;
    ASSERT_EQ(expected.size(), 1024u) << name;
    unshaped_engine_t unshaped(MOD_BPSK, false, source);
    const lib_iq_data_arr_t& samples = unshaped.run();
    ASSERT_EQ(samples.size(), 2048u) << name;
    std::size_t wrong = 0;
    for (std::size_t k = 0; k < expected.size(); ++k) {
      const double level = expected[k] == 1 ? output_peak : -output_peak;
      wrong += samples[2 * k] == lib_iq_sample_t(level, 0.0) ? 0 : 1;
      ASSERT_EQ(samples[2 * k + 1], lib_iq_sample_t(0.0, 0.0)) << name << " sample " << 2 * k + 1;
    }
    EXPECT_EQ(wrong, 0u) << name << ": symbols off the golden sequence";
  }
}

class CustomIqGoldenMap : public testing::TestWithParam<golden_map_t> {};

// The engine's display map of each APSK and QAM type, natural and Gray, key by key.
TEST_P(CustomIqGoldenMap, DefaultMapMatchesItsDefinition) {
  const golden_map_t& golden = GetParam();
  custom_iq_t engine;
  quietly([&] {
    engine.set_apsk_qam_type(golden.type);
    engine.set_gray_code_enable(golden.gray);
  });
  const lib_constellation_map_t expected = normalized(golden);
  const lib_constellation_map_t& actual = engine.get_default_constellation();
  ASSERT_EQ(actual.size(), expected.size());
  for (const auto& [symbol, point] : expected) {
    const auto found = actual.find(symbol);
    ASSERT_NE(found, actual.end()) << "symbol " << symbol;
    EXPECT_NEAR(found->second.real(), point.real(), 1e-12) << "symbol " << symbol;
    EXPECT_NEAR(found->second.imag(), point.imag(), 1e-12) << "symbol " << symbol;
  }
}

INSTANTIATE_TEST_SUITE_P(AllApskQam, CustomIqGoldenMap,
                         testing::ValuesIn(wavelume_test::read_golden_maps()),
                         [](const testing::TestParamInfo<golden_map_t>& param) {
                           return wavelume_test::golden_map_label(param.param);
                         });

TEST(CustomIqGoldenMaps, EveryTypeIsCovered) {
  // 13 (16APSK) to 24 (2048QAM), natural and Gray.
  EXPECT_EQ(wavelume_test::read_golden_maps().size(), 24u);
}

// PN9 bits, packed most significant first into symbols, come out as the golden points scaled so
// that the largest component is the output peak.
TEST(CustomIqGoldenModulation, SymbolsLandOnTheirMappedPoints) {
  struct modulation_case_t {
    modulation_type_t type;
    const char* name;
    bool gray;
  };
  const std::vector<modulation_case_t> cases{{MOD_16QAM, "16QAM", true},
                                             {MOD_32QAM, "32QAM", false},
                                             {MOD_32QAM, "32QAM", true},
                                             {MOD_16APSK, "16APSK", true}};
  const std::vector<int> bits = wavelume_test::golden_prbs("PN9").bits;
  const std::size_t pn9_period = 511;
  ASSERT_GE(bits.size(), pn9_period);
  for (const auto& [type, name, gray] : cases) {
    const golden_map_t& golden = golden_map(name, gray);
    const lib_constellation_map_t points = normalized(golden);
    ASSERT_FALSE(points.empty());
    const uint32 width = static_cast<uint32>(std::lround(std::log2(points.size())));
    std::vector<uint32> symbols;
    for (std::size_t k = 0; symbols.size() < 1024; ++k) {
      uint32 symbol = 0;
      for (uint32 b = 0; b < width; ++b) {
        symbol = 2 * symbol + bits[(k * width + b) % pn9_period];
      }
      symbols.push_back(symbol);
    }
    // 1024 symbols of PN9 reach every point, so the scale is that of the whole map.
    double largest = 0.0;
    for (const auto& [symbol, point] : points) {
      largest = std::max({largest, std::abs(point.real()), std::abs(point.imag())});
    }
    const double scale = output_peak / largest;

    unshaped_engine_t unshaped(type, gray, DATA_SOURCE_PN9);
    const lib_iq_data_arr_t& samples = unshaped.run();
    ASSERT_EQ(samples.size(), 2048u);
    for (std::size_t k = 0; k < symbols.size(); ++k) {
      ASSERT_LT(std::abs(samples[2 * k] - scale * points.at(symbols[k])), 1e-12)
          << golden.name << (gray ? " Gray" : "") << " symbol " << k << " = " << symbols[k];
    }
  }
}

}  // namespace

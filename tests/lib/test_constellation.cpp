#include <gtest/gtest.h>

#include <bitset>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "lib/lib_common_type_cast.h"
#include "lib/lib_constellation_apsk.h"
#include "lib/lib_constellation_ask.h"
#include "lib/lib_constellation_custom.h"
#include "lib/lib_constellation_dpsk.h"
#include "lib/lib_constellation_fsk.h"
#include "lib/lib_constellation_generator.h"
#include "lib/lib_constellation_hdpsk.h"
#include "lib/lib_constellation_oqpsk.h"
#include "lib/lib_constellation_pr_ask.h"
#include "lib/lib_constellation_psk.h"
#include "lib/lib_constellation_qam.h"

namespace {

using namespace nal;
using namespace nal::common_lib;

std::string captured(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

// One object of every class; the one whose supported list holds the type.
std::unique_ptr<lib_constellation_base_t> make_constellation(modulation_type_t type) {
  std::vector<std::unique_ptr<lib_constellation_base_t>> all;
  all.emplace_back(new lib_constellation_ask_t);
  all.emplace_back(new lib_constellation_pr_ask_t);
  all.emplace_back(new lib_constellation_psk_t);
  all.emplace_back(new lib_constellation_oqpsk_t);
  all.emplace_back(new lib_constellation_dpsk_t);
  all.emplace_back(new lib_constellation_hdpsk_t);
  all.emplace_back(new lib_constellation_apsk_t);
  all.emplace_back(new lib_constellation_qam_t);
  all.emplace_back(new lib_constellation_fsk_t);
  all.emplace_back(new lib_constellation_custom_t);
  for (auto& candidate : all) {
    if (candidate->is_constellation_type_supported(type)) {
      return std::move(candidate);
    }
  }
  return nullptr;
}

lib_constellation_map_t default_map(modulation_type_t type, bool gray) {
  const auto constellation = make_constellation(type);
  captured([&] {  // PR-ASK reports that it ignores Gray numbering.
    constellation->set_constellation_type(type);
    constellation->set_gray_code_enable(gray);
    EXPECT_TRUE(constellation->generate_constellation()) << type;
  });
  return constellation->get_constellation_map();
}

int bit_difference(uint32 a, uint32 b) {
  return static_cast<int>(std::bitset<32>(a ^ b).count());
}

// Keys of a QAM map by grid position: odd integers 2 I / s, 2 Q / s with s the grid spacing.
struct qam_grid_t {
  explicit qam_grid_t(const lib_constellation_map_t& map) {
    spacing = INFINITY;
    for (const auto& entry : map) {
      spacing = std::min(spacing, 2.0 * std::abs(entry.second.real()));
    }
    for (const auto& entry : map) {
      const std::pair<long, long> cell{std::lround(2.0 * entry.second.real() / spacing),
                                       std::lround(2.0 * entry.second.imag() / spacing)};
      EXPECT_TRUE(keys.emplace(cell, entry.first).second) << "two keys share a grid cell";
    }
  }
  double spacing;
  std::map<std::pair<long, long>, uint32> keys;
};

// Keys 0..N-1 once each; unit mean power, or for FSK a largest deviation of 1 on the I axis.
TEST(ConstellationDefaults, EveryTypeHasEachKeyOnceAndItsScale) {
  for (uint32 type = MOD_2ASK; type <= MOD_16FSK; ++type) {
    const auto modulation = static_cast<modulation_type_t>(type);
    const bool half_step = modulation == MOD_PI4_DQPSK || modulation == MOD_PI8_D8PSK;
    const uint32 points = lib_common_type_cast_t::get_constellation_point(modulation);
    for (const bool gray : {false, true}) {
      const lib_constellation_map_t map = default_map(modulation, gray);
      ASSERT_EQ(map.size(), half_step ? 2 * points : points) << type;
      EXPECT_EQ(map.rbegin()->first, map.size() - 1) << type;  // keys unique, so 0..N-1
      double power = 0.0;
      double largest = 0.0;
      for (const auto& entry : map) {
        power += std::norm(entry.second) / map.size();
        largest = std::max({largest, std::abs(entry.second.real()), std::abs(entry.second.imag())});
      }
      if (type >= MOD_2FSK) {
        EXPECT_EQ(largest, 1.0) << type;
      } else {
        EXPECT_NEAR(power, 1.0, 1e-12) << type;
        EXPECT_EQ(lib_constellation_base_t::check_constellation_map_validity(map), 0) << type;
      }
    }
  }
}

// Grid neighbours differ in one bit, save where a cross cannot be Gray: at the step from its K
// central rows into the rows above and below, all K columns of each edge differ in two bits.
TEST(ConstellationGray, QamGridNeighboursDifferInOneBit) {
  for (uint32 type = MOD_8QAM; type <= MOD_4096QAM; ++type) {
    const qam_grid_t grid(default_map(static_cast<modulation_type_t>(type), true));
    const bool cross = type != MOD_8QAM && (type - MOD_16QAM) % 2 == 1;
    const long side = std::lround(std::sqrt(grid.keys.size() / 2));
    int two_bit_pairs = 0;
    for (const auto& [cell, key] : grid.keys) {
      const auto right = grid.keys.find({cell.first + 2, cell.second});
      if (right != grid.keys.end()) {
        EXPECT_EQ(bit_difference(key, right->second), 1) << type;
      }
      const auto above = grid.keys.find({cell.first, cell.second + 2});
      if (above != grid.keys.end()) {
        const bool central_edge = cross && std::abs(cell.second + 1) == side;
        EXPECT_EQ(bit_difference(key, above->second), central_edge ? 2 : 1) << type;
        two_bit_pairs += central_edge;
      }
    }
    EXPECT_EQ(two_bit_pairs, cross ? 2 * side : 0) << type;
  }
}

TEST(ConstellationValidity, RefusalCodes) {
  auto check = [](const lib_constellation_map_t& map) {
    std::int32_t code = 1;
    captured([&] { code = lib_constellation_base_t::check_constellation_map_validity(map); });
    return code;
  };
  EXPECT_EQ(check({{0, {1, 0}}, {1, {2, 0}}, {2, {3, 0}}}), -1);
  EXPECT_EQ(check({{0, {1, 0}}, {1, {2, 0}}, {2, {3, 0}}, {7, {4, 0}}}), -2);
  EXPECT_EQ(check({{0, {1, 0}}, {1, {2, 0}}, {2, {2, 1e-13}}, {3, {4, 0}}}), -4);
  // Equal points kept apart by a third point of the same magnitude are not seen.
  EXPECT_EQ(check({{0, {1, 0}}, {1, {0, 1}}, {2, {1, 0}}, {3, {4, 0}}}), 0);

  lib_constellation_qam_t qam;
  qam.generate_constellation();
  const lib_constellation_map_t before = qam.get_constellation_map();
  captured([&] { EXPECT_FALSE(qam.set_constellation({{0, {1, 0}}, {3, {2, 0}}}, false)); });
  EXPECT_EQ(qam.get_constellation_map(), before);
}

TEST(ConstellationPrAsk, DepthAndAlternatingSign) {
  lib_constellation_map_t map;
  EXPECT_TRUE(lib_constellation_generator_t::generate_default_pr_ask_constellation(map, 1.0));
  EXPECT_EQ(map.at(0), lib_iq_sample_t(0, 0));
  EXPECT_DOUBLE_EQ(map.at(1).real(), std::sqrt(2.0));
  captured([&] { lib_constellation_generator_t::generate_default_pr_ask_constellation(map, 1.5); });
  EXPECT_LT(map.at(0).real(), 0.0);
  EXPECT_NEAR(map.at(0).real(), -0.5 * map.at(1).real(), 1e-15);

  lib_constellation_pr_ask_t pr_ask;
  pr_ask.set_gray_code_enable(true);  // ignored, with a report
  captured([&] { EXPECT_TRUE(pr_ask.generate_constellation()); });
  const lib_iq_sample_t low = pr_ask.get_constellation_map().at(0);
  const lib_iq_sample_t high = pr_ask.get_constellation_map().at(1);
  EXPECT_NEAR(high.real(), std::sqrt(2.0 / 1.01), 1e-15);
  lib_iq_data_arr_t out;
  captured([&] { pr_ask.get_symbol_iq_data({1, 1, 0, 0, 1, 2, 1}, out); });
  EXPECT_EQ(out, lib_iq_data_arr_t({high, -high, low, -low, high}));
}

// Phase of each step, recovered the way a differential receiver does it; the half-step types
// are decoded through the whole modulator in the modulation tests.
lib_symbol_arr_t differential_decode(const lib_iq_data_arr_t& points, uint32 m) {
  constexpr double pi = 3.14159265358979323846;
  lib_symbol_arr_t symbols;
  for (std::size_t k = 1; k < points.size(); ++k) {
    const long index = std::lround(std::arg(points[k] * std::conj(points[k - 1])) * m / (2 * pi));
    symbols.push_back(static_cast<uint32>((index % static_cast<long>(m) + m) % m));
  }
  return symbols;
}

TEST(ConstellationDifferential, ReceiverRecoversTheSymbols) {
  std::mt19937 generator(0);
  for (const auto type : {MOD_DBPSK, MOD_DQPSK, MOD_D16PSK}) {
    std::unique_ptr<lib_constellation_base_t> c = make_constellation(type);
    c->set_constellation_type(type);
    c->set_gray_code_enable(true);
    c->generate_constellation();
    const uint32 m = c->get_constellation_point();
    std::uniform_int_distribution<uint32> symbol(0, m - 1);
    lib_symbol_arr_t symbols(400);
    for (auto& s : symbols) {
      s = symbol(generator);
    }
    lib_iq_data_arr_t out;
    c->get_symbol_iq_data(symbols, out);
    ASSERT_EQ(out.size(), symbols.size()) << type;
    EXPECT_NEAR(std::abs(out[0] - c->get_constellation_map().at(symbols[0])), 0.0, 1e-12);
    EXPECT_EQ(differential_decode(out, m), lib_symbol_arr_t(symbols.begin() + 1, symbols.end()))
        << type;
  }
}

}  // namespace

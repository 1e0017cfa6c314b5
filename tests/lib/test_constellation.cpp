#include <gtest/gtest.h>

#include <bitset>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <tuple>
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
#include "lib/lib_oversampling.h"
#include "tests/lib/test_signals.h"

namespace {

using namespace nal;
using namespace nal::common_lib;

constexpr double pi = 3.14159265358979323846;

std::string captured(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

// Runs a call that must refuse (return false) and gives what it printed.
std::string refusal_of(const std::function<bool()>& call) {
  bool result = true;
  const std::string printed = captured([&] { result = call(); });
  EXPECT_FALSE(result);
  return printed;
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

TEST(ConstellationDefaults, GeneratorMatchesTheClasses) {
  lib_constellation_map_t map;
  for (uint32 index = 0; index <= 10; ++index) {
    lib_constellation_generator_t::generate_default_qam_constellation(index, map, true);
    EXPECT_EQ(map, default_map(static_cast<modulation_type_t>(MOD_4QAM + index), true));
  }
  using generator_t = bool (*)(uint32, lib_constellation_map_t&, bool);
  using g = lib_constellation_generator_t;
  const std::vector<std::tuple<generator_t, uint32, modulation_type_t>> others = {
      {&g::generate_default_psk_constellation, 9, MOD_8PSK},
      {&g::generate_default_apsk_constellation, 1, MOD_32APSK},
      {&g::generate_default_fsk_constellation, 4, MOD_MSK},
      {&g::generate_default_ask_constellation, 0, MOD_2ASK},
  };
  for (const auto& [generate, index, type] : others) {
    EXPECT_TRUE(generate(index, map, true));
    EXPECT_EQ(map, default_map(type, true)) << type;
  }

  // The first index past each table; FSK keeps the QAM text.
  const std::vector<std::tuple<generator_t, uint32, std::string>> refused = {
      {&g::generate_default_ask_constellation, 4, "ask_constellation Report : Error ASK Type!"},
      {&g::generate_default_psk_constellation, 11, "psk_constellation Report : Error PSK Type!"},
      {&g::generate_default_qam_constellation, 11, "qam_constellation Report : Error QAM Type!"},
      {&g::generate_default_apsk_constellation, 2, "apsk_constellation Report : Error APSK Type!"},
      {&g::generate_default_fsk_constellation, 5, "qam_constellation Report : Error QAM Type!"},
  };
  for (const auto& [generate, index, text] : refused) {
    EXPECT_EQ(refusal_of([&, g = generate, i = index] { return g(i, map, false); }),
              "lib_constellation_generator_t::generate_default_" + text + "\n");
    EXPECT_TRUE(map.empty());
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

TEST(ConstellationGray, PskNeighboursDifferInOneBit) {
  for (const auto type : {MOD_8PSK, MOD_16PSK}) {
    const lib_constellation_map_t map = default_map(type, true);
    const double nearest = 2.0 * std::sin(pi / map.size());
    int pairs = 0;
    for (const auto& a : map) {
      for (const auto& b : map) {
        if (a.first < b.first && std::abs(a.second - b.second) < nearest + 1e-9) {
          EXPECT_EQ(bit_difference(a.first, b.first), 1) << type;
          ++pairs;
        }
      }
    }
    EXPECT_EQ(pairs, static_cast<int>(map.size())) << type;
  }
}

TEST(ConstellationDefaults, GridSpacingMatchesClosedFormEnergy) {
  // Mean energy of a unit-spaced grid: square (M - 1) / 6, cross (31 M / 32 - 1) / 6.
  for (uint32 type = MOD_16QAM; type <= MOD_4096QAM; ++type) {
    const double m =
        lib_common_type_cast_t::get_constellation_point(static_cast<modulation_type_t>(type));
    const bool cross = (type - MOD_16QAM) % 2 == 1;
    const double energy = cross ? (31.0 * m / 32.0 - 1.0) / 6.0 : (m - 1.0) / 6.0;
    for (const bool gray : {false, true}) {
      const qam_grid_t grid(default_map(static_cast<modulation_type_t>(type), gray));
      EXPECT_NEAR(grid.spacing, 1.0 / std::sqrt(energy), 1e-12) << type;
    }
  }
}

TEST(ConstellationDefaults, ExplicitPoints) {
  const lib_constellation_map_t qam4 = default_map(MOD_4QAM, false);
  EXPECT_NEAR(qam4.at(0).real(), -std::sqrt(0.5), 1e-15);
  EXPECT_NEAR(qam4.at(0).imag(), std::sqrt(0.5), 1e-15);
  const lib_constellation_map_t qpsk = default_map(MOD_QPSK, true);
  for (const auto& entry : qam4) {
    EXPECT_NEAR(std::abs(qpsk.at(entry.first) - entry.second), 0.0, 1e-15);
  }

  const lib_constellation_map_t ask = default_map(MOD_2ASK, false);
  EXPECT_DOUBLE_EQ(ask.at(1).real(), 2.0 * ask.at(0).real());
  EXPECT_DOUBLE_EQ(ask.at(0).real(), 1.0 / std::sqrt(2.5));

  const lib_constellation_map_t psk8 = default_map(MOD_8PSK, false);
  for (uint32 i = 0; i < 8; ++i) {
    EXPECT_NEAR(std::abs(psk8.at(i) - std::polar(1.0, i * pi / 4)), 0.0, 1e-15) << i;
  }

  // 32QAM natural, in units of the grid: left wing keys 0..3 at I = -2.5, centre 4..27 within
  // |I| <= 1.5, right wing 28..31 at I = 2.5, each column counted upward.
  const qam_grid_t qam32(default_map(MOD_32QAM, false));
  int centre = 0;
  for (const auto& [cell, key] : qam32.keys) {
    if (key < 4) {
      EXPECT_EQ(cell, std::make_pair(-5L, 2L * key - 3)) << key;
    } else if (key >= 28) {
      EXPECT_EQ(cell, std::make_pair(5L, 2L * (key - 28) - 3)) << key;
    } else {
      EXPECT_LE(std::abs(cell.first), 3) << key;
      ++centre;
    }
  }
  EXPECT_EQ(centre, 24);
  EXPECT_EQ(qam32.keys.at({-3, -5}), 4u);

  // 4FSK natural runs -1.5, -0.5, 1.5, 0.5 before scaling to a largest deviation of 1.
  const lib_constellation_map_t fsk4 = default_map(MOD_4FSK, false);
  const std::vector<double> deviations = {-1.0, -1.0 / 3.0, 1.0, 1.0 / 3.0};
  for (uint32 i = 0; i < 4; ++i) {
    EXPECT_NEAR(fsk4.at(i).real(), deviations[i], 1e-15) << i;
  }
}

TEST(ConstellationDefaults, ApskRingsFollowTheirTables) {
  struct ring_t {
    double radius;
    uint32 count;
  };
  const std::vector<std::pair<modulation_type_t, std::vector<ring_t>>> cases = {
      {MOD_16APSK, {{1.0, 4}, {2.84, 12}}},
      {MOD_32APSK, {{1.0, 4}, {2.84, 12}, {5.27, 16}}},
  };
  for (const auto& [type, rings] : cases) {
    double power = 0.0;
    for (const ring_t& ring : rings) {
      power += ring.count * ring.radius * ring.radius;
    }
    const double scale = std::sqrt(power / (type == MOD_16APSK ? 16 : 32));
    for (const bool gray : {false, true}) {
      std::map<long, uint32> count_by_radius;
      for (const auto& entry : default_map(type, gray)) {
        ++count_by_radius[std::lround(100.0 * std::abs(entry.second) * scale)];
      }
      ASSERT_EQ(count_by_radius.size(), rings.size());
      for (const ring_t& ring : rings) {
        EXPECT_EQ(count_by_radius[std::lround(100.0 * ring.radius)], ring.count) << type;
      }
    }
  }
}

TEST(ConstellationValidity, CodesAndMessages) {
  const std::string head = "lib_constellation_base_t::check_constellation_map_validity Report:\n";
  auto check = [](const lib_constellation_map_t& map) {
    std::int32_t code = 1;
    const std::string printed =
        captured([&] { code = lib_constellation_base_t::check_constellation_map_validity(map); });
    return std::make_pair(code, printed);
  };
  EXPECT_EQ(check({{0, {1, 0}}, {1, {2, 0}}, {2, {3, 0}}}),
            std::make_pair(-1, head + "The number of constellation symbols must be the power of "
                                      "2.\nCurrent symbol number is 3.\n"));
  EXPECT_EQ(check({{0, {1, 0}}, {1, {2, 0}}, {2, {3, 0}}, {7, {4, 0}}}),
            std::make_pair(-2, head + "Error symbol definition: 7.\n"));
  EXPECT_EQ(check({{0, {1, 0}}, {1, {2, 0}}, {2, {2, 1e-13}}, {3, {4, 0}}}),
            std::make_pair(-4, head + "Duplicate IQ value for different symbols!\n"));
  // Equal points kept apart by a third point of the same magnitude are not seen.
  EXPECT_EQ(check({{0, {1, 0}}, {1, {0, 1}}, {2, {1, 0}}, {3, {4, 0}}}),
            std::make_pair(0, std::string()));

  lib_constellation_qam_t qam;
  qam.generate_constellation();
  const lib_constellation_map_t before = qam.get_constellation_map();
  EXPECT_EQ(refusal_of([&] {
              return qam.set_constellation({{0, {1, 0}}, {3, {2, 0}}}, false);
            }),
            head +
                "Error symbol definition: 3.\nlib_constellation_base_t::set_constellation "
                "Report: Constellation data Map is ILLEGAL!\n");
  EXPECT_EQ(qam.get_constellation_map(), before);
}

TEST(ConstellationBase, SetConstellationForms) {
  const std::string head = "lib_constellation_base_t::set_constellation Report: ";
  lib_constellation_psk_t psk(MOD_QPSK);
  EXPECT_EQ(refusal_of([&] {
              return psk.set_constellation(lib_iq_data_arr_t{{1, 0}}, false);
            }),
            head + "Constellation IQ data array or Constellation Map is EMPTY!\n");
  psk.generate_constellation();
  EXPECT_EQ(refusal_of([&] { return psk.set_constellation(lib_iq_data_arr_t(3), false); }),
            head + "Constellation IQ data array size NOT EQUAL!\n");
  EXPECT_EQ(refusal_of([&] {
              return psk.set_constellation(4, {1, 1}, false);
            }),
            head + "Symbol NOT FOUND!\n");

  EXPECT_TRUE(psk.set_constellation(lib_iq_data_arr_t{{3, 0}, {0, 3}, {-3, 0}, {0, -3}}, false));
  EXPECT_EQ(psk.get_constellation_map().at(3), lib_iq_sample_t(0, -3));
  EXPECT_TRUE(psk.set_constellation(2, {0, 0}, true));
  EXPECT_NEAR(std::abs(psk.get_constellation_map().at(0)), 2.0 / std::sqrt(3.0), 1e-15);

  // A valid map replaces the old one; point numbers follow only through update_point_by_map.
  EXPECT_TRUE(psk.set_constellation(default_map(MOD_16QAM, false), false));
  EXPECT_EQ(psk.get_constellation_point(), 4u);
  psk.update_point_by_map();
  EXPECT_EQ(psk.get_constellation_point(), 16u);
  EXPECT_EQ(psk.get_bit_number(), 4u);
}

TEST(ConstellationBase, LookupTypeAndOversamplingRules) {
  lib_constellation_psk_t psk(MOD_8PSK);
  psk.generate_constellation();
  lib_iq_data_arr_t out{{9, 9}};
  EXPECT_EQ(captured([&] {
              psk.get_symbol_iq_data({1, 7, 8, 2}, out);
            }),
            "lib_constellation_base_t::get_symbol_iq_data exception: map::at\n");
  EXPECT_EQ(out, lib_iq_data_arr_t(
                     {psk.get_constellation_map().at(1), psk.get_constellation_map().at(7)}));

  EXPECT_EQ(refusal_of([&] { return psk.set_constellation_type(MOD_16QAM); }),
            "lib_constellation_base_t::set_constellation_type Report: constellation Type 17 Not "
            "supported!\n");
  EXPECT_TRUE(psk.set_constellation_type(MOD_16PSK));
  EXPECT_EQ(psk.get_constellation_point(), 16u);
  EXPECT_EQ(psk.get_bit_number(), 4u);
  EXPECT_EQ(psk.get_constellation_map().size(), 8u);  // kept until the next generate

  lib_constellation_fsk_t fsk;
  lib_constellation_oqpsk_t oqpsk;
  EXPECT_EQ(psk.get_oversampling_type(), OVERSAMPLING_INSERT_ZERO);
  EXPECT_EQ(fsk.get_oversampling_type(), OVERSAMPLING_HOLDER);  // no filter
  psk.set_filter_type(FILTER_GAUSSIAN);
  oqpsk.set_filter_type(FILTER_GAUSSIAN);
  fsk.set_filter_type(FILTER_ROOT_COSINE);
  EXPECT_EQ(psk.get_oversampling_type(), OVERSAMPLING_HOLDER);
  EXPECT_EQ(oqpsk.get_oversampling_type(), OVERSAMPLING_OFFSET);
  EXPECT_EQ(fsk.get_oversampling_type(), OVERSAMPLING_INSERT_ZERO);
  oqpsk.deal_oversampling({{1, -1}}, 2, out);
  EXPECT_EQ(out, lib_iq_data_arr_t({{1, 0}, {0, -1}}));

  // The FSK holder spreads each deviation over the symbol: ratio samples of deviation / ratio.
  fsk.set_filter_type(FILTER_GAUSSIAN);
  fsk.deal_oversampling({{1, 0}, {-0.5, 0}}, 4, out);
  lib_iq_data_arr_t expected(4, {0.25, 0});
  expected.resize(8, {-0.125, 0});
  EXPECT_EQ(out, expected);
}

TEST(ConstellationPrAsk, DepthAndAlternatingSign) {
  const std::string head =
      "lib_constellation_pr_ask_t::generate_default_pr_ask_constellation Report: ";
  lib_constellation_map_t map;
  EXPECT_TRUE(lib_constellation_generator_t::generate_default_pr_ask_constellation(map, 1.0));
  EXPECT_EQ(map.at(0), lib_iq_sample_t(0, 0));
  EXPECT_DOUBLE_EQ(map.at(1).real(), std::sqrt(2.0));
  EXPECT_EQ(captured([&] {
              lib_constellation_generator_t::generate_default_pr_ask_constellation(map, 1.5);
            }),
            head + "Illegal modulation depth!\n");
  EXPECT_LT(map.at(0).real(), 0.0);
  EXPECT_NEAR(map.at(0).real(), -0.5 * map.at(1).real(), 1e-15);

  lib_constellation_pr_ask_t pr_ask;
  pr_ask.set_gray_code_enable(true);
  EXPECT_EQ(captured([&] { EXPECT_TRUE(pr_ask.generate_constellation()); }),
            head + "PR-ASK with Gray Code is NOT supported!\n");
  const lib_iq_sample_t low = pr_ask.get_constellation_map().at(0);
  const lib_iq_sample_t high = pr_ask.get_constellation_map().at(1);
  EXPECT_NEAR(high.real(), std::sqrt(2.0 / 1.01), 1e-15);
  lib_iq_data_arr_t out;
  captured([&] { pr_ask.get_symbol_iq_data({1, 1, 0, 0, 1, 2, 1}, out); });
  EXPECT_EQ(out, lib_iq_data_arr_t({high, -high, low, -low, high}));
}

// Phase of each step, recovered the way a differential receiver does it.
lib_symbol_arr_t differential_decode(const lib_iq_data_arr_t& points, uint32 m, bool half_step) {
  lib_symbol_arr_t symbols;
  for (std::size_t k = 1; k < points.size(); ++k) {
    double step = std::arg(points[k] * std::conj(points[k - 1])) - (half_step ? pi / m : 0.0);
    const long index = std::lround(step * m / (2 * pi));
    symbols.push_back(static_cast<uint32>((index % static_cast<long>(m) + m) % m));
  }
  return symbols;
}

TEST(ConstellationDifferential, ReceiverRecoversTheSymbols) {
  std::mt19937 generator(0);
  for (const auto type :
       {MOD_DBPSK, MOD_DQPSK, MOD_D8PSK, MOD_D16PSK, MOD_PI4_DQPSK, MOD_PI8_D8PSK}) {
    const bool half_step = type == MOD_PI4_DQPSK || type == MOD_PI8_D8PSK;
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
    EXPECT_EQ(differential_decode(out, m, half_step),
              lib_symbol_arr_t(symbols.begin() + 1, symbols.end()))
        << type;
  }
}

TEST(ConstellationDifferential, StartsAndFailures) {
  lib_constellation_dpsk_t dpsk;
  dpsk.generate_constellation();
  lib_iq_data_arr_t out;
  dpsk.get_symbol_iq_data({0, 1, 1, 0}, out);
  const lib_iq_data_arr_t expected = {{-1, 0}, {1, 0}, {-1, 0}, {-1, 0}};  // pi, 2pi, 3pi, 3pi
  EXPECT_LT(wavelume_test::max_difference(out, expected), 1e-15);

  lib_constellation_hdpsk_t hdpsk;  // PI/4-DQPSK: 4 symbols walking an 8-point map
  hdpsk.generate_constellation();
  hdpsk.update_point_by_map();
  EXPECT_EQ(hdpsk.get_constellation_map().size(), 8u);
  EXPECT_EQ(hdpsk.get_constellation_point(), 4u);
  EXPECT_EQ(hdpsk.get_bit_number(), 2u);

  out.assign(3, {1, 1});
  EXPECT_EQ(captured([&] { hdpsk.get_symbol_iq_data({}, out); }),
            "lib_constellation_dpsk_t::get_symbol_iq_data Report: Symbol array is empty!\n");
  EXPECT_TRUE(out.empty());
  EXPECT_EQ(captured([&] {
              dpsk.get_symbol_iq_data({2, 0}, out);
            }),
            "\033[0;31mget_symbol_iq_datamap::at\033[0m\n");
  EXPECT_TRUE(out.empty());
}

TEST(ConstellationCustom, OnlyASetMapIsUsed) {
  lib_constellation_custom_t custom;
  EXPECT_FALSE(custom.generate_constellation());
  EXPECT_TRUE(custom.set_constellation_type(MOD_MULTITONE2));
  EXPECT_EQ(custom.get_constellation_point(), 2u);
  EXPECT_EQ(custom.get_bit_number(), 1u);

  lib_iq_data_arr_t out(2);
  EXPECT_EQ(captured([&] { custom.get_symbol_iq_data({0}, out); }),
            "lib_constellation_base_t::check_constellation_map_validity Report:\nThe number of "
            "constellation symbols must be the power of 2.\nCurrent symbol number is 0.\n"
            "lib_constellation_custom_t::get_symbol_iq_data Report: Try to generate IQ signal "
            "with illegal custom constellation!\n");
  EXPECT_TRUE(out.empty());

  const lib_constellation_map_t map = {{0, {0, 2}}, {1, {0, -2}}, {2, {2, 0}}, {3, {-2, 0}}};
  EXPECT_TRUE(custom.set_constellation(map, true));
  EXPECT_FALSE(custom.generate_constellation());
  custom.update_point_by_map();
  EXPECT_EQ(custom.get_constellation_point(), 4u);
  custom.get_symbol_iq_data({3, 0}, out);
  EXPECT_EQ(out, lib_iq_data_arr_t({{-1, 0}, {0, 1}}));
}

TEST(ConstellationCopy, CopiesContinueIdentically) {
  lib_constellation_qam_t qam(MOD_64QAM);
  qam.set_gray_code_enable(true);
  qam.set_filter_type(FILTER_GAUSSIAN);
  lib_constellation_qam_t copy = qam;
  EXPECT_TRUE(qam.set_constellation_type(MOD_256QAM));
  EXPECT_TRUE(copy.set_constellation_type(MOD_256QAM));
  qam.generate_constellation();
  copy.generate_constellation();
  EXPECT_EQ(copy.get_constellation_map(), qam.get_constellation_map());
  EXPECT_EQ(copy.get_oversampling_type(), OVERSAMPLING_HOLDER);

  // copy_setting takes the Gray flag and the filter, not the type or the map.
  lib_constellation_psk_t psk(MOD_16PSK);
  psk.copy_setting(qam);
  EXPECT_TRUE(psk.get_gray_code_enable());
  EXPECT_EQ(psk.get_filter_type(), FILTER_GAUSSIAN);
  EXPECT_EQ(psk.get_constellation_type(), MOD_16PSK);
  EXPECT_TRUE(psk.get_constellation_map().empty());
}

}  // namespace

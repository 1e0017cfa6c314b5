#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "lib/lib_prbs_code.h"
#include "lib/lib_symbol_data.h"

namespace {

using nal::uint32;
using nal::uint64;
using nal::common_lib::lib_prbs_code_t;
using nal::common_lib::lib_symbol_data_t;
using bit_arr_t = std::vector<std::uint8_t>;

struct prbs_case_t {
  uint32 type;
  uint32 length;
  std::vector<uint32> taps;
};

const std::vector<prbs_case_t>& table_cases() {
  static const std::vector<prbs_case_t> cases = {
      {0, 7, {7, 6}},    {1, 9, {9, 5}},    {2, 11, {11, 9}},
      {3, 15, {15, 14}}, {4, 23, {23, 18}}, {5, 31, {31, 28}},
  };
  return cases;
}

// Textbook Fibonacci register kept as an array of stages, stage 1 first: the output is the last
// stage, the feedback enters stage 1 and every stage moves one place on.
bit_arr_t reference_lfsr(const std::vector<uint32>& taps, uint64 seed, std::size_t count) {
  const uint32 length = *std::max_element(taps.begin(), taps.end());
  std::vector<int> stage(length + 1);
  for (uint32 k = 1; k <= length; ++k) {
    stage[k] = static_cast<int>((seed >> (k - 1)) & 1);
  }
  bit_arr_t out;
  for (std::size_t i = 0; i < count; ++i) {
    int feedback = 0;
    for (const uint32 t : taps) {
      feedback ^= stage[t];
    }
    out.push_back(static_cast<std::uint8_t>(stage[length]));
    for (uint32 k = length; k > 1; --k) {
      stage[k] = stage[k - 1];
    }
    stage[1] = feedback;
  }
  return out;
}

TEST(PrbsCode, TableTypesMatchTextbookRegisterAndKeepTheSeed) {
  for (const auto& c : table_cases()) {
    lib_prbs_code_t prbs;
    prbs.set_prbs_type(c.type);
    const uint64 seed = 0x5A5A5A5Au & ((uint64{1} << c.length) - 1);
    prbs.set_register(seed);
    bit_arr_t bits;
    const uint64 state = prbs.generate(3000, bits);
    EXPECT_EQ(bits, reference_lfsr(c.taps, seed, 3000)) << "type " << c.type;
    EXPECT_EQ(prbs.get_register(), seed);
    bit_arr_t again;
    prbs.generate(3000, again);
    EXPECT_EQ(again, bits);
    // The returned state seeds the continuation of the same sequence.
    prbs.set_register(state);
    prbs.generate(100, again);
    const bit_arr_t longer = reference_lfsr(c.taps, seed, 3100);
    EXPECT_TRUE(std::equal(again.begin(), again.end(), longer.begin() + 3000));
  }
}

TEST(PrbsCode, Pn9FromAllOnesStartsWithTheKnownSequence) {
  // The x^9 + x^5 + 1 pattern from all ones as it is usually printed: bytes, most significant
  // bit first (ITU-T O.150, 2^9 - 1).
  const std::vector<std::uint8_t> bytes = {0xFF, 0x83, 0xDF, 0x17, 0x32, 0x09,
                                           0x4E, 0xD1, 0xE7, 0xCD, 0x8A, 0x91};
  bit_arr_t expected;
  for (const std::uint8_t byte : bytes) {
    for (int b = 7; b >= 0; --b) {
      expected.push_back(static_cast<std::uint8_t>((byte >> b) & 1));
    }
  }
  EXPECT_EQ(reference_lfsr({9, 5}, 0x1FF, expected.size()), expected);
  lib_prbs_code_t prbs;
  prbs.set_prbs_type(1);
  bit_arr_t bits;
  prbs.generate(static_cast<uint32>(expected.size()), bits);
  EXPECT_EQ(bits, expected);
}

// A full period is 2^n - 1 bits of the textbook register, with as many ones as a maximal
// sequence has, and it hands back the register it started from.
TEST(PrbsCode, FullPeriodIsTheTextbookSequenceAndBalanced) {
  for (const auto& c : table_cases()) {
    if (c.length > 15) {
      continue;
    }
    lib_prbs_code_t prbs;
    prbs.set_prbs_type(c.type);
    const uint64 seed = prbs.get_register();
    bit_arr_t period;
    EXPECT_EQ(prbs.generate_full_period(period), seed) << "type " << c.type;
    EXPECT_EQ(period, reference_lfsr(c.taps, seed, (std::size_t{1} << c.length) - 1));
    EXPECT_EQ(static_cast<std::size_t>(std::count(period.begin(), period.end(), 1)),
              std::size_t{1} << (c.length - 1));
  }
}

TEST(PrbsCode, BadTapListsAreRefusedAndChangeNothing) {
  lib_prbs_code_t prbs;
  prbs.set_register(100);
  testing::internal::CaptureStdout();
  EXPECT_FALSE(prbs.set_prbs_primitive_polynomial({5, 3}));  // custom polynomial disabled
  prbs.set_custom_polynomial_enable(true);
  for (const std::vector<uint32>& bad :
       {std::vector<uint32>{}, {9, 5, 9}, {9, 0}, {64, 1}, {3, 1000}}) {
    EXPECT_FALSE(prbs.set_prbs_primitive_polynomial(bad));
  }
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(prbs.get_taps(), (std::vector<uint32>{7, 6}));
  EXPECT_EQ(prbs.get_register(), 100u);
}


TEST(SymbolData, PrbsSourcePacksTheRegisterBitsMostSignificantFirst) {
  lib_symbol_data_t data;
  data.set_data_source_code(3);  // PN15
  data.set_symbol_length(300);
  data.set_bits_per_symbol(5);
  data.prbs().set_register(77);  // generation restarts from all ones whatever the seed
  data.generate();
  const bit_arr_t expected_bits = reference_lfsr({15, 14}, 0x7FFF, 1500);
  EXPECT_EQ(data.get_bit_arr(), expected_bits);
  ASSERT_EQ(data.get_symbol_arr().size(), 300u);
  for (std::size_t i = 0; i < 300; ++i) {
    uint32 value = 0;
    for (std::size_t b = 0; b < 5; ++b) {
      value |= uint32{expected_bits[5 * i + b]} << (4 - b);
    }
    ASSERT_EQ(data.get_symbol_arr()[i], value) << "symbol " << i;
  }
}

TEST(SymbolData, CustomBitsRepeatCyclicallyAcrossSymbols) {
  lib_symbol_data_t data;
  data.set_data_source_code(6);
  data.set_bits_per_symbol(2);
  data.set_symbol_length(7);
  data.set_bit_arr({1, 1, 0});
  data.generate();
  // Bits (0 1), (2 0), (1 2), again: 11, 01, 10, ...
  EXPECT_EQ(data.get_symbol_arr(), (nal::lib_symbol_arr_t{3, 1, 2, 3, 1, 2, 3}));
  EXPECT_EQ(data.get_bit_arr(), (bit_arr_t{1, 1, 0}));

  nal::lib_symbol_arr_t symbols = {42};
  EXPECT_TRUE(
      lib_symbol_data_t::_generate_symbol_arr_by_bit_arr(symbols, {1, 0, 1, 1, 0, 0, 1}, 3, 3, 9));
  // From bit 9 mod 7 = 2: bits 2 3 4, 5 6 0, 1 2 3.
  EXPECT_EQ(symbols, (nal::lib_symbol_arr_t{0b110, 0b011, 0b011}));
}

}  // namespace

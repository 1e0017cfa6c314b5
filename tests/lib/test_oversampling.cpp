#include <gtest/gtest.h>

#include <string>

#include "lib/lib_convolution.h"
#include "lib/lib_oversampling.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::lib_iq_sample_t;
using nal::common_lib::lib_oversampling_t;
using wavelume_test::random_samples;

const lib_iq_sample_t zero(0.0, 0.0);

TEST(Oversampling, InsertZeroPlacesEachPointFirstInItsSymbol) {
  const lib_iq_data_arr_t points = {{1.0, 2.0}, {-3.0, 0.5}};
  lib_iq_data_arr_t out;
  lib_oversampling_t::_deal_insert_zero_oversampling(points, 3, out);
  EXPECT_EQ(out, (lib_iq_data_arr_t{points[0], zero, zero, points[1], zero, zero}));
}

// Holding a point for a symbol is impulse oversampling followed by a box of `ratio` ones.
TEST(Oversampling, HolderEqualsImpulsesThroughABox) {
  const lib_iq_data_arr_t points = random_samples(50, 4);
  for (const nal::uint32 ratio : {2u, 5u}) {
    lib_iq_data_arr_t impulses;
    lib_oversampling_t::_deal_insert_zero_oversampling(points, ratio, impulses);
    lib_iq_data_arr_t boxed;
    nal::common_lib::lib_convolution_t::deal_convolution(impulses, lib_iq_data_arr_t(ratio, 1.0),
                                                         boxed);
    boxed.resize(impulses.size());
    lib_iq_data_arr_t held;
    lib_oversampling_t::_deal_holder_oversampling(points, ratio, held);
    EXPECT_EQ(held, boxed);
  }
}

TEST(Oversampling, RatioOneCopiesAndRatioZeroReportsAndEmpties) {
  const lib_iq_data_arr_t points = random_samples(7, 2);
  lib_iq_data_arr_t out;
  lib_oversampling_t::_deal_insert_zero_oversampling(points, 1, out);
  EXPECT_EQ(out, points);
  lib_oversampling_t::_deal_holder_oversampling(points, 1, out);
  EXPECT_EQ(out, points);

  testing::internal::CaptureStdout();
  lib_oversampling_t::_deal_insert_zero_oversampling(points, 0, out);
  EXPECT_TRUE(out.empty());
  out = points;
  lib_oversampling_t::_deal_holder_oversampling(points, 0, out);
  EXPECT_TRUE(out.empty());
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_oversampling_t::_deal_insert_zero_oversampling Report: Oversample Rate must be "
            "positive!\n"
            "lib_oversampling_t::_deal_holder_oversampling Report: Oversample Rate must be "
            "positive!\n");
}

TEST(Oversampling, OffsetPutsQuadratureHalfASymbolBehind) {
  lib_iq_data_arr_t out;
  lib_oversampling_t::deal_offset_oversampling({{1.0, 1.0}, {-1.0, -1.0}}, 4, out);
  EXPECT_EQ(out, (lib_iq_data_arr_t{{1.0, 0.0}, zero, {0.0, 1.0}, zero, {-1.0, 0.0}, zero,
                                    {0.0, -1.0}, zero}));
}

TEST(Oversampling, OffsetRefusesOddOrZeroRatioWithItsValue) {
  const lib_iq_data_arr_t points = random_samples(3, 1);
  lib_iq_data_arr_t out = points;
  testing::internal::CaptureStdout();
  lib_oversampling_t::deal_offset_oversampling(points, 3, out);
  EXPECT_TRUE(out.empty());
  lib_oversampling_t::deal_offset_oversampling(points, 0, out);
  const std::string prefix =
      "lib_oversampling_t::deal_offset_oversampling Report: Oversampling Ratio must be positive "
      "and even! But current value = ";
  EXPECT_EQ(testing::internal::GetCapturedStdout(), prefix + "3\n" + prefix + "0\n");
}

TEST(Oversampling, DispatchFollowsTheKindAndIgnoresUnknownKinds) {
  const lib_iq_data_arr_t points = random_samples(6, 8);
  lib_iq_data_arr_t expected;
  lib_iq_data_arr_t out;
  lib_oversampling_t::_deal_insert_zero_oversampling(points, 4, expected);
  lib_oversampling_t::deal_oversampling(points, 4, out, nal::common_lib::OVERSAMPLING_INSERT_ZERO);
  EXPECT_EQ(out, expected);
  lib_oversampling_t::_deal_holder_oversampling(points, 4, expected);
  lib_oversampling_t::deal_oversampling(points, 4, out, nal::common_lib::OVERSAMPLING_HOLDER);
  EXPECT_EQ(out, expected);
  lib_oversampling_t::deal_offset_oversampling(points, 4, expected);
  lib_oversampling_t::deal_oversampling(points, 4, out, nal::common_lib::OVERSAMPLING_OFFSET);
  EXPECT_EQ(out, expected);

  const lib_iq_data_arr_t before = out;
  lib_oversampling_t::deal_oversampling(points, 4, out, 3);
  EXPECT_EQ(out, before);
}

}  // namespace

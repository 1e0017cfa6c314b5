#include <gtest/gtest.h>

#include <string>

#include "lib/lib_convolution.h"
#include "lib/lib_oversampling.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_oversampling_t;
using wavelume_test::random_samples;

const nal::lib_iq_sample_t zero(0.0, 0.0);

// Through the dispatch, so that each kind is checked to reach its own form. Holding a point for a
// symbol is impulse oversampling followed by a box of `ratio` ones.
TEST(Oversampling, KindsGiveImpulsesHeldPointsAndOffsetQuadrature) {
  const lib_iq_data_arr_t points = random_samples(20, 4);
  lib_iq_data_arr_t impulses;
  lib_oversampling_t::deal_oversampling(points, 3, impulses, 0);
  ASSERT_EQ(impulses.size(), 60u);
  for (std::size_t k = 0; k < impulses.size(); ++k) {
    EXPECT_EQ(impulses[k], k % 3 == 0 ? points[k / 3] : zero) << k;
  }
  lib_iq_data_arr_t boxed;
  nal::common_lib::lib_convolution_t::deal_convolution(impulses, {1.0, 1.0, 1.0}, boxed);
  boxed.resize(impulses.size());
  lib_iq_data_arr_t held;
  lib_oversampling_t::deal_oversampling(points, 3, held, 1);
  EXPECT_EQ(held, boxed);

  lib_iq_data_arr_t offset;
  lib_oversampling_t::deal_oversampling({{1.0, 1.0}, {-1.0, -1.0}}, 4, offset, 2);
  EXPECT_EQ(offset, (lib_iq_data_arr_t{
                        {1.0, 0.0}, zero, {0.0, 1.0}, zero, {-1.0, 0.0}, zero, {0.0, -1.0}, zero}));
  const lib_iq_data_arr_t before = offset;
  lib_oversampling_t::deal_oversampling(points, 4, offset, 3);
  EXPECT_EQ(offset, before);
}

TEST(Oversampling, RatioOneCopiesAndRefusedRatiosReportAndEmpty) {
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
  out = points;
  lib_oversampling_t::deal_offset_oversampling(points, 3, out);
  EXPECT_TRUE(out.empty());
  lib_oversampling_t::deal_offset_oversampling(points, 0, out);
  const std::string offset_report =
      "lib_oversampling_t::deal_offset_oversampling Report: Oversampling Ratio must be positive "
      "and even! But current value = ";
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "lib_oversampling_t::_deal_insert_zero_oversampling Report: Oversample Rate must be "
            "positive!\n"
            "lib_oversampling_t::_deal_holder_oversampling Report: Oversample Rate must be "
            "positive!\n" +
                offset_report + "3\n" + offset_report + "0\n");
}

}  // namespace

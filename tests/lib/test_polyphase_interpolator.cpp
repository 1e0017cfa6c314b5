#include <gtest/gtest.h>

#include <algorithm>

#include "lib/lib_filter.h"
#include "lib/lib_oversampling.h"
#include "lib/lib_polyphase_interpolator.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_polyphase_interpolator_t;

// The literal form: impulses, then cyclic filtering of the whole oversampled stream.
lib_iq_data_arr_t oversample_and_filter(const lib_iq_data_arr_t& points, nal::uint32 ratio,
                                        const lib_iq_data_arr_t& taps) {
  lib_iq_data_arr_t impulses;
  nal::common_lib::lib_oversampling_t::_deal_insert_zero_oversampling(points, ratio, impulses);
  lib_iq_data_arr_t filtered;
  nal::common_lib::lib_filter_t::deal_filter(impulses, taps, filtered, true);
  return filtered;
}

TEST(PolyphaseInterpolator, EqualsImpulseOversamplingAndCyclicFiltering) {
  unsigned seed = 1;
  for (const nal::uint32 ratio : {2u, 3u, 8u}) {
    for (const std::size_t tap_count : {2u, 5u, 65u, 257u}) {
      for (const std::size_t points : {1u, 3u, 40u, 1000u}) {
        const lib_iq_data_arr_t x = wavelume_test::random_samples(points, ++seed);
        lib_iq_data_arr_t taps = wavelume_test::random_samples(tap_count, ++seed);
        if (seed % 2 == 0) {
          for (auto& tap : taps) {
            tap.imag(0.0);  // the real-tap branch
          }
        }
        lib_iq_data_arr_t fast;
        double largest = 0.0;
        ASSERT_TRUE(lib_polyphase_interpolator_t::deal_cyclic_interpolation(x, ratio, taps, fast,
                                                                            1, largest));
        const lib_iq_data_arr_t literal = oversample_and_filter(x, ratio, taps);
        EXPECT_LT(wavelume_test::max_difference(fast, literal), 1e-11)
            << "ratio " << ratio << ", " << tap_count << " taps, " << points << " points";
        double literal_largest = 0.0;
        for (const auto& s : literal) {
          literal_largest = std::max({literal_largest, std::abs(s.real()), std::abs(s.imag())});
        }
        EXPECT_NEAR(largest, literal_largest, 1e-11);
      }
    }
  }
}

TEST(PolyphaseInterpolator, ThreadCountDoesNotChangeTheResult) {
  const lib_iq_data_arr_t x = wavelume_test::random_samples(5000, 7);
  lib_iq_data_arr_t taps;
  nal::common_lib::lib_filter_t::_root_cosine_filter(0.35, 32, 8, taps, true);
  lib_iq_data_arr_t one;
  lib_iq_data_arr_t two;
  lib_iq_data_arr_t eight;
  double largest[3] = {};
  lib_polyphase_interpolator_t::deal_cyclic_interpolation(x, 8, taps, one, 1, largest[0]);
  lib_polyphase_interpolator_t::deal_cyclic_interpolation(x, 8, taps, two, 2, largest[1]);
  lib_polyphase_interpolator_t::deal_cyclic_interpolation(x, 8, taps, eight, 8, largest[2]);
  EXPECT_EQ(one, two);
  EXPECT_EQ(one, eight);
  EXPECT_EQ(largest[0], largest[1]);
  EXPECT_EQ(largest[0], largest[2]);
}

TEST(PolyphaseInterpolator, RefusesWhatOnlyTheLiteralPathHandles) {
  lib_iq_data_arr_t out = {1.0};
  double largest = 0.0;
  EXPECT_FALSE(lib_polyphase_interpolator_t::deal_cyclic_interpolation({1.0, 2.0}, 4, {1.0}, out,
                                                                       1, largest));
  EXPECT_TRUE(out.empty());
  EXPECT_FALSE(lib_polyphase_interpolator_t::deal_cyclic_interpolation({}, 4, {1.0, 1.0}, out, 1,
                                                                       largest));
  EXPECT_FALSE(lib_polyphase_interpolator_t::deal_cyclic_interpolation({1.0}, 0, {1.0, 1.0}, out,
                                                                       1, largest));
}

}  // namespace

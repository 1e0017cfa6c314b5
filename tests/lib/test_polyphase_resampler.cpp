#include <gtest/gtest.h>

#include <algorithm>

#include "lib/lib_filter.h"
#include "lib/lib_oversampling.h"
#include "lib/lib_polyphase_resampler.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::uint32;
using nal::common_lib::lib_polyphase_resampler_t;

// The literal form: zero stuffing, cyclic filtering of the whole stream, every down-th sample.
lib_iq_data_arr_t stuff_filter_keep(const lib_iq_data_arr_t& input, uint32 up, uint32 down,
                                    const lib_iq_data_arr_t& taps) {
  lib_iq_data_arr_t stuffed;
  nal::common_lib::lib_oversampling_t::_deal_insert_zero_oversampling(input, up, stuffed);
  lib_iq_data_arr_t filtered;
  nal::common_lib::lib_filter_t::deal_filter(stuffed, taps, filtered, true);
  lib_iq_data_arr_t kept;
  for (std::size_t i = 0; i < filtered.size(); i += down) {
    kept.push_back(filtered[i]);
  }
  return kept;
}

double largest_component(const lib_iq_data_arr_t& x) {
  double largest = 0.0;
  for (const auto& s : x) {
    largest = std::max({largest, std::abs(s.real()), std::abs(s.imag())});
  }
  return largest;
}

TEST(PolyphaseResampler, EqualsStuffingCyclicFilteringAndDecimation) {
  unsigned seed = 1;
  struct rates_t {
    uint32 up;
    uint32 down;
  };
  for (const rates_t rates :
       {rates_t{2, 1}, rates_t{8, 1}, rates_t{7, 5}, rates_t{1, 3}}) {
    for (const std::size_t tap_count : {2u, 5u, 257u}) {
      for (const std::size_t points : {1u, 40u, 1000u}) {
        const lib_iq_data_arr_t x = wavelume_test::random_samples(points, ++seed);
        lib_iq_data_arr_t taps = wavelume_test::random_samples(tap_count, ++seed);
        if (seed % 2 == 0) {
          for (auto& tap : taps) {
            tap.imag(0.0);  // the real-tap branch
          }
        }
        const lib_iq_data_arr_t literal = stuff_filter_keep(x, rates.up, rates.down, taps);
        lib_iq_data_arr_t fast;
        double largest = 0.0;
        ASSERT_TRUE(lib_polyphase_resampler_t::deal_cyclic_resampling(
            x, rates.up, rates.down, taps, taps.size() / 2, literal.size(), fast, 1, largest));
        EXPECT_LT(wavelume_test::max_difference(fast, literal), 1e-11)
            << rates.up << "/" << rates.down << ", " << tap_count << " taps, " << points
            << " points";
        EXPECT_NEAR(largest, largest_component(literal), 1e-11);
      }
    }
  }
}

TEST(PolyphaseResampler, ThreadCountDoesNotChangeTheResult) {
  const lib_iq_data_arr_t x = wavelume_test::random_samples(5000, 7);
  lib_iq_data_arr_t taps;
  nal::common_lib::lib_filter_t::_root_cosine_filter(0.35, 32, 8, taps, true);
  lib_iq_data_arr_t reference;
  double reference_largest = 0.0;
  lib_polyphase_resampler_t::deal_cyclic_interpolation(x, 8, taps, taps.size() / 2, reference, 1,
                                                       reference_largest);
  for (const uint32 threads : {2u, 3u, 8u}) {
    lib_iq_data_arr_t out;
    double largest = 0.0;
    lib_polyphase_resampler_t::deal_cyclic_interpolation(x, 8, taps, taps.size() / 2, out, threads,
                                                         largest);
    EXPECT_EQ(out, reference) << threads << " threads";
    EXPECT_EQ(largest, reference_largest);
  }
}

TEST(PolyphaseResampler, RefusesWhatOnlyTheLiteralPathHandles) {
  lib_iq_data_arr_t out = {1.0};
  double largest = 0.0;
  EXPECT_FALSE(lib_polyphase_resampler_t::deal_cyclic_interpolation({1.0, 2.0}, 4, {1.0}, 0, out, 1,
                                                                    largest));
  EXPECT_TRUE(out.empty());
  EXPECT_FALSE(
      lib_polyphase_resampler_t::deal_cyclic_interpolation({}, 4, {1.0, 1.0}, 1, out, 1, largest));
  EXPECT_FALSE(lib_polyphase_resampler_t::deal_cyclic_resampling({1.0}, 2, 0, {1.0, 1.0}, 1, 1, out,
                                                                 1, largest));
}

}  // namespace

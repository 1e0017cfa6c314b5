#include <gtest/gtest.h>

#include "lib/lib_convolution.h"
#include "lib/lib_fourier_transform.h"
#include "lib/plib.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_convolution_t;
using wavelume_test::max_difference;
using wavelume_test::random_samples;

// Overlap-add carried out literally: one result array per block, each block transformed through
// the public transforms, and the blocks summed onto zeros in ascending order.
lib_iq_data_arr_t literal_overlap_add(const lib_iq_data_arr_t& x, const lib_iq_data_arr_t& h) {
  using nal::common_lib::lib_fourier_transform_t;
  const nal::uint32 fft_length =
      nal::common_lib::plib_t::next_power_of_2(2 * static_cast<nal::uint32>(h.size()), 32);
  const std::size_t hop = fft_length / 2;
  lib_iq_data_arr_t taps_spectrum;
  lib_fourier_transform_t::deal_fft(h, taps_spectrum, fft_length);
  std::vector<lib_iq_data_arr_t> blocks;
  for (std::size_t start = 0; start < x.size(); start += hop) {
    lib_iq_data_arr_t block(fft_length);
    for (std::size_t j = 0; j < hop && start + j < x.size(); ++j) {
      block[j] = x[start + j];
    }
    lib_iq_data_arr_t spectrum;
    lib_fourier_transform_t::deal_fft(block, spectrum);
    for (std::size_t k = 0; k < fft_length; ++k) {
      spectrum[k] = nal::common_lib::plib_t::complex_multiply(spectrum[k], taps_spectrum[k]);
    }
    blocks.emplace_back();
    lib_fourier_transform_t::deal_ifft(spectrum, blocks.back());
  }
  lib_iq_data_arr_t y(x.size() + fft_length - 1);
  for (std::size_t b = 0; b < blocks.size(); ++b) {
    for (std::size_t j = 0; j < fft_length; ++j) {
      y[b * hop + j] += blocks[b][j];
    }
  }
  y.resize(x.size() + h.size() - 1);
  return y;
}

TEST(Convolution, OverlapAddEqualsTheLiteralBlockAlgorithmBitForBit) {
  for (const std::size_t taps : {2u, 33u, 257u}) {
    const lib_iq_data_arr_t x = random_samples(20'000, 70 + static_cast<unsigned>(taps));
    const lib_iq_data_arr_t h = random_samples(taps, 80 + static_cast<unsigned>(taps));
    lib_iq_data_arr_t fast;
    ASSERT_TRUE(lib_convolution_t::deal_fft_convolution(x, h, fast, 2u));
    EXPECT_EQ(fast, literal_overlap_add(x, h)) << taps << " taps";
  }
}

TEST(Convolution, OverlapAddMatchesDirectFormForAwkwardSizes) {
  unsigned seed = 10;
  for (const std::size_t taps : {2u, 32u, 33u, 257u}) {
    for (const std::size_t samples : {1u, 64u, 65u, 4097u}) {
      const lib_iq_data_arr_t x = random_samples(samples, ++seed);
      const lib_iq_data_arr_t h = random_samples(taps, ++seed);
      lib_iq_data_arr_t fast;
      lib_iq_data_arr_t direct;
      ASSERT_TRUE(lib_convolution_t::deal_fft_convolution(x, h, fast, true));
      lib_convolution_t::deal_convolution(x, h, direct);
      ASSERT_EQ(fast.size(), samples + taps - 1) << taps << " taps, " << samples << " samples";
      EXPECT_LT(max_difference(fast, direct), 1e-11 * std::sqrt(double(taps)))
          << taps << " taps, " << samples << " samples";
    }
  }
}

TEST(Convolution, ResultIsBitIdenticalForAnyThreadCount) {
  const lib_iq_data_arr_t x = random_samples(100'003, 40);
  const lib_iq_data_arr_t h = random_samples(257, 41);
  lib_iq_data_arr_t one;
  ASSERT_TRUE(lib_convolution_t::deal_fft_convolution(x, h, one, 1u));
  for (const nal::uint32 threads : {2u, 3u, 8u}) {
    lib_iq_data_arr_t many;
    ASSERT_TRUE(lib_convolution_t::deal_fft_convolution(x, h, many, threads));
    EXPECT_EQ(many, one) << threads << " threads";
  }
  lib_iq_data_arr_t direct;
  lib_convolution_t::deal_convolution(lib_iq_data_arr_t(x.begin(), x.begin() + 3000), h, direct);
  EXPECT_LT(max_difference(lib_iq_data_arr_t(one.begin(), one.begin() + 3000),
                           lib_iq_data_arr_t(direct.begin(), direct.begin() + 3000)),
            1e-11);
}

TEST(Convolution, ReusedAndAliasedOutputsAndOneTap) {
  const lib_iq_data_arr_t x = random_samples(500, 50);
  const lib_iq_data_arr_t h = random_samples(20, 51);
  lib_iq_data_arr_t expected;
  ASSERT_TRUE(lib_convolution_t::deal_fft_convolution(x, h, expected, true));

  lib_iq_data_arr_t reused = random_samples(expected.size(), 52);
  ASSERT_TRUE(lib_convolution_t::deal_fft_convolution(x, h, reused, true));
  EXPECT_EQ(reused, expected);

  lib_iq_data_arr_t aliased = x;
  ASSERT_TRUE(lib_convolution_t::deal_fft_convolution(aliased, h, aliased, true));
  EXPECT_EQ(aliased, expected);

  lib_iq_data_arr_t empty_input;
  lib_iq_data_arr_t out = random_samples(4, 53);
  ASSERT_TRUE(lib_convolution_t::deal_fft_convolution(empty_input, h, out, true));
  EXPECT_EQ(out, lib_iq_data_arr_t(h.size() - 1));

  // One tap is refused and copies the input.
  testing::internal::CaptureStdout();
  EXPECT_FALSE(lib_convolution_t::deal_fft_convolution(x, lib_iq_data_arr_t{2.0}, out, true));
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(out, x);
}


}  // namespace

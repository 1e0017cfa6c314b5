#include <gtest/gtest.h>

#include <cstdlib>

#include "lib/lib_fft_plan_manager.h"
#include "lib/lib_fourier_transform.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_fourier_transform_t;
using wavelume_test::direct_dft;
using wavelume_test::max_difference;
using wavelume_test::random_samples;

TEST(FourierTransform, MatchesDirectDftForPowerOfTwoAndOtherLengths) {
  for (const std::size_t n : {1u, 7u, 100u, 1024u}) {
    const lib_iq_data_arr_t x = random_samples(n, static_cast<unsigned>(n));
    lib_iq_data_arr_t spectrum;
    ASSERT_TRUE(lib_fourier_transform_t::deal_fft(x, spectrum));
    EXPECT_LT(max_difference(spectrum, direct_dft(x, false)), 1e-10 * n) << "length " << n;

    lib_iq_data_arr_t back;
    ASSERT_TRUE(lib_fourier_transform_t::deal_ifft(spectrum, back));
    EXPECT_LT(max_difference(back, x), 1e-12 * n) << "round trip, length " << n;

    lib_iq_data_arr_t expected_inverse = direct_dft(x, true);
    for (auto& s : expected_inverse) {
      s /= static_cast<double>(n);
    }
    ASSERT_TRUE(lib_fourier_transform_t::deal_ifft(x, back));
    EXPECT_LT(max_difference(back, expected_inverse), 1e-12 * n) << "inverse, length " << n;
  }
}

TEST(FourierTransform, ForwardLengthZeroPadsButNeverTruncates) {
  const lib_iq_data_arr_t x = random_samples(3, 5);
  lib_iq_data_arr_t spectrum;
  ASSERT_TRUE(lib_fourier_transform_t::deal_fft(x, spectrum, 8));
  ASSERT_EQ(spectrum.size(), 8u);
  lib_iq_data_arr_t padded = x;
  padded.resize(8);
  EXPECT_LT(max_difference(spectrum, direct_dft(padded, false)), 1e-12);

  ASSERT_TRUE(lib_fourier_transform_t::deal_fft(x, spectrum, 2));
  EXPECT_EQ(spectrum.size(), 3u);
  ASSERT_TRUE(lib_fourier_transform_t::deal_fft(x, spectrum, 0));
  EXPECT_EQ(spectrum.size(), 3u);
}

TEST(FourierTransform, InverseLengthFallsBackOrIsRefused) {
  const lib_iq_data_arr_t x = random_samples(8, 6);
  lib_iq_data_arr_t out;
  ASSERT_TRUE(lib_fourier_transform_t::deal_ifft(x, out, 16));
  EXPECT_EQ(out.size(), 8u);

  // This refusal leaves a transform counted as running, so clear_up refuses for the rest of the
  // process: check it in a child process of its own.
  EXPECT_EXIT(
      {
        const lib_iq_data_arr_t untouched = random_samples(2, 7);
        lib_iq_data_arr_t kept = untouched;
        const bool refused = !lib_fourier_transform_t::deal_ifft(x, kept, 4);
        std::exit(refused && kept == untouched ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(FourierTransform, MultiThreadFormsAgreeWithThePlanCache) {
  const lib_iq_data_arr_t x = random_samples(4096, 8);
  lib_iq_data_arr_t cached;
  lib_iq_data_arr_t threaded;
  ASSERT_TRUE(lib_fourier_transform_t::deal_fft(x, cached, 8192));
  ASSERT_TRUE(lib_fourier_transform_t::deal_multi_thread_fft(x, threaded, 2, 8192));
  EXPECT_LT(max_difference(cached, threaded), 1e-9);

  ASSERT_TRUE(lib_fourier_transform_t::deal_ifft(x, cached));
  ASSERT_TRUE(lib_fourier_transform_t::deal_multi_thread_ifft(x, threaded, 2));
  EXPECT_LT(max_difference(cached, threaded), 1e-12);

  const lib_iq_data_arr_t untouched = random_samples(3, 9);
  threaded = untouched;
  testing::internal::CaptureStdout();
  EXPECT_TRUE(lib_fourier_transform_t::deal_multi_thread_fft(x, threaded, 0));
  EXPECT_TRUE(lib_fourier_transform_t::deal_multi_thread_ifft(x, threaded, 0));
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(threaded, untouched);
}

TEST(FourierTransform, SpectrumOfAToneFindsItsBin) {
  // A tone at +1/8 of the sample rate lands 1/8 of the length above the centre bin.
  const std::size_t n = 256;
  lib_iq_data_arr_t tone(n);
  for (std::size_t i = 0; i < n; ++i) {
    tone[i] = std::polar(1.0, 2.0 * nal::common_lib::lib_pi * static_cast<double>(i) / 8.0);
  }
  lib_iq_data_arr_t spectrum;
  lib_fourier_transform_t::deal_spectrum(tone, spectrum, true,
                                         nal::common_lib::WINDOW_BLACKMAN_HARRIS);
  ASSERT_EQ(spectrum.size(), n);
  const auto peak = std::max_element(spectrum.begin(), spectrum.end(),
                                     [](auto a, auto b) { return std::abs(a) < std::abs(b); });
  EXPECT_EQ(peak - spectrum.begin(), static_cast<std::ptrdiff_t>(n / 2 + n / 8));
  EXPECT_NEAR(std::abs(*peak), 1.0, 1e-12);

  lib_fourier_transform_t::deal_spectrum(lib_iq_data_arr_t(5, 1.0), spectrum, false,
                                         nal::common_lib::WINDOW_RECTANGLE);
  EXPECT_EQ(spectrum.size(), 8u);
}

}  // namespace

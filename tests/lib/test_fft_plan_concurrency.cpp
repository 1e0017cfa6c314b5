// The plan cache under concurrent use. Also built and run under ThreadSanitizer.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "lib/lib_fft_plan_manager.h"
#include "lib/lib_fourier_transform.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_fft_plan_manager_t;
using nal::common_lib::lib_fourier_transform_t;
using wavelume_test::random_samples;

TEST(FftPlanConcurrency, ManyThreadsOneLengthWithClearUpRacing) {
  constexpr int workers = 6;
  constexpr int rounds = 300;
  const lib_iq_data_arr_t x = random_samples(256, 11);
  lib_iq_data_arr_t expected;
  ASSERT_TRUE(lib_fourier_transform_t::deal_fft(x, expected));

  std::atomic<int> wrong{0};
  std::atomic<bool> running{true};
  std::vector<std::thread> threads;
  for (int w = 0; w < workers; ++w) {
    threads.emplace_back([&] {
      lib_iq_data_arr_t spectrum;
      for (int r = 0; r < rounds; ++r) {
        const bool inverse = (r % 2) != 0;
        const bool done = inverse ? lib_fourier_transform_t::deal_ifft(expected, spectrum)
                                  : lib_fourier_transform_t::deal_fft(x, spectrum);
        const lib_iq_data_arr_t& reference = inverse ? x : expected;
        if (!done || wavelume_test::max_difference(spectrum, reference) > 1e-9) {
          ++wrong;
        }
      }
    });
  }
  int cleared = 0;
  std::thread cleaner([&] {
    testing::internal::CaptureStdout();
    while (running) {
      cleared += lib_fft_plan_manager_t::instance().clear_up() ? 1 : 0;
      std::this_thread::yield();
    }
    testing::internal::GetCapturedStdout();
  });
  for (auto& t : threads) {
    t.join();
  }
  running = false;
  cleaner.join();
  EXPECT_EQ(wrong.load(), 0);
  // With nothing running any more, clearing must succeed and transforms must rebuild their plans.
  EXPECT_TRUE(lib_fft_plan_manager_t::instance().clear_up());
  lib_iq_data_arr_t again;
  ASSERT_TRUE(lib_fourier_transform_t::deal_fft(x, again));
  EXPECT_EQ(again, expected);
}

TEST(FftPlanConcurrency, ClearUpRefusesWhileAPlanIsInUse) {
  auto& manager = lib_fft_plan_manager_t::instance();
  ASSERT_NE(manager.acquire_plan(128, false), nullptr);
  testing::internal::CaptureStdout();
  EXPECT_FALSE(manager.clear_up());
  EXPECT_EQ(
      testing::internal::GetCapturedStdout(),
      "lib_fftw_plan_manager_t::clear_up Report: Try to clear fftw plan during calculation!\n");
  manager.release_plan();
  EXPECT_TRUE(manager.clear_up());
}

TEST(FftPlanConcurrency, ZeroLengthIsRefusedWithoutBlockingClearUp) {
  lib_iq_data_arr_t out;
  testing::internal::CaptureStdout();
  EXPECT_FALSE(lib_fourier_transform_t::deal_fft(lib_iq_data_arr_t(), out));
  EXPECT_NE(testing::internal::GetCapturedStdout().find("deal_transform Report"),
            std::string::npos);
  EXPECT_TRUE(lib_fft_plan_manager_t::instance().clear_up());
}

}  // namespace

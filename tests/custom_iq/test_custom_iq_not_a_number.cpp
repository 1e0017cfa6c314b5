// A NaN reaching a setter (a state file can hold one) must not slip past the limits: it used to
// be stored as it was, and the sample count cast it to an integer.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "custom_iq/custom_iq.h"

namespace {

using namespace nal;

TEST(CustomIqNotANumber, CountsAsZeroAndClampsIntoTheLimits) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  custom_iq_t engine;
  testing::internal::CaptureStdout();
  engine.preset();
  testing::internal::GetCapturedStdout();

  EXPECT_TRUE(engine.set_lfm_offset(1e6));
  EXPECT_TRUE(engine.set_lfm_offset(nan));
  EXPECT_EQ(engine.get_lfm_offset(), 0.0);
  EXPECT_TRUE(engine.set_lfm_sweep_time(nan));
  EXPECT_EQ(engine.get_lfm_sweep_time(), 1e-8);
  EXPECT_TRUE(engine.set_filter_alpha(nan));
  EXPECT_EQ(engine.get_filter_alpha(), 0.01);

  EXPECT_TRUE(engine.set_modulator_type(MODULATOR_MULTITONE));
  EXPECT_TRUE(engine.set_multitone_sample_rate(nan));
  EXPECT_EQ(engine.get_multitone_sample_rate(), 500.0);
  // The ranges that follow the rate stay numbers too.
  EXPECT_EQ(engine.get_multitone_span_bounds().maximum(), 500.0 / 1.28);
  EXPECT_TRUE(std::isfinite(engine.get_waveform_length()));
  EXPECT_EQ(engine.get_total_sample_points(), 8192u);
}

}  // namespace

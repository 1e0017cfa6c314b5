#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <string>
#include <vector>

#include "custom_iq/custom_iq.h"
#include "custom_iq/plib_func.h"

namespace {

using namespace nal;

constexpr double pi = 3.14159265358979323846;

std::string captured(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

// An engine after preset, with counters on both callbacks and every signal.
struct observed_engine_t {
  custom_iq_t engine;
  int dirty_true = 0;
  int dirty_false = 0;
  int too_large = 0;
  int ui = 0;
  int constellation = 0;
  int waveform = 0;

  observed_engine_t() {
    captured([this] { engine.preset(); });
    engine.set_dirty_callback([this](bool dirty) { ++(dirty ? dirty_true : dirty_false); });
    engine.set_too_large_callback([this] { ++too_large; });
    QObject::connect(&engine, &custom_iq_t::sig_update_ui, [this] { ++ui; });
    QObject::connect(&engine, &custom_iq_t::sig_update_constellation, [this] { ++constellation; });
    QObject::connect(&engine, &custom_iq_t::sig_update_waveform_data, [this] { ++waveform; });
  }
  void reset_counts() { dirty_true = dirty_false = too_large = ui = constellation = waveform = 0; }
  int notifications() const { return dirty_true + dirty_false + too_large + ui + constellation; }
};

// Frequency in Hz between consecutive samples, from the phase step.
double instantaneous_frequency(const lib_iq_data_arr_t& samples, std::size_t k, double rate) {
  return std::arg(samples[k + 1] * std::conj(samples[k])) * rate / (2.0 * pi);
}

TEST(custom_iq_setters, equal_value_is_silent_and_a_change_notifies_once) {
  observed_engine_t observed;
  EXPECT_FALSE(observed.engine.set_symbol_rate(1000000));
  EXPECT_FALSE(observed.engine.set_apsk_qam_type(MOD_16QAM));
  EXPECT_FALSE(observed.engine.set_custom_constellation({}));
  EXPECT_EQ(observed.notifications(), 0);

  EXPECT_TRUE(observed.engine.set_waveform_name("burst"));
  EXPECT_EQ(observed.dirty_true, 1);
  EXPECT_EQ(observed.ui, 1);
}

TEST(custom_iq_rates, symbol_rate_is_capped_by_the_oversampled_output_rate) {
  observed_engine_t observed;
  custom_iq_t& engine = observed.engine;
  EXPECT_TRUE(engine.set_oversampling(32));
  EXPECT_TRUE(engine.set_symbol_rate(300000000));
  EXPECT_EQ(engine.get_symbol_rate(), 250000000u);
  EXPECT_DOUBLE_EQ(engine.get_sample_rate(), 8e9);
  EXPECT_DOUBLE_EQ(engine.get_fsk_deviation_bounds().maximum(), 0.8 * 8e9);

  // Lowering the ratio widens the symbol rate's range again.
  EXPECT_TRUE(engine.set_oversampling(4));
  EXPECT_EQ(engine.get_symbol_rate_bounds().maximum(), 2000000000u);
  EXPECT_TRUE(engine.set_symbol_rate(1500000000));
  // A higher ratio then clamps the rate it cannot carry.
  EXPECT_TRUE(engine.set_oversampling(8));
  EXPECT_EQ(engine.get_symbol_rate(), 1000000000u);
}

TEST(custom_iq_filter, pulse_shapes_follow_the_modulation) {
  observed_engine_t observed;
  custom_iq_t& engine = observed.engine;
  // A refused pulse refreshes the view but leaves the waveform clean.
  EXPECT_FALSE(engine.set_filter_type(FILTER_HALF_SINE));
  EXPECT_EQ(engine.get_filter_type(), FILTER_ROOT_COSINE);
  EXPECT_EQ(observed.ui, 1);
  EXPECT_EQ(observed.dirty_true, 0);

  // OQPSK takes Half Sine, which needs at least 8 samples per symbol, and refuses Gaussian.
  EXPECT_TRUE(engine.set_apsk_qam_type(MOD_OQPSK));
  EXPECT_TRUE(engine.set_filter_type(FILTER_HALF_SINE));
  EXPECT_EQ(engine.get_oversampling(), 8u);
  EXPECT_FALSE(engine.set_filter_type(FILTER_GAUSSIAN));
  EXPECT_TRUE(engine.set_apsk_qam_type(MOD_QPSK));
  EXPECT_EQ(engine.get_filter_type(), FILTER_ROOT_COSINE);

  // Gaussian widens the alpha range to a bandwidth-time product and clamps into it.
  EXPECT_TRUE(engine.set_filter_alpha(0.05));
  EXPECT_TRUE(engine.set_filter_type(FILTER_GAUSSIAN));
  EXPECT_DOUBLE_EQ(engine.get_filter_alpha(), 0.1);
  // Under OQPSK the Gaussian pulse gives way to Root Cosine.
  EXPECT_TRUE(engine.set_apsk_qam_type(MOD_OQPSK));
  EXPECT_EQ(engine.get_filter_type(), FILTER_ROOT_COSINE);
}

TEST(custom_iq_waveform, fsk_tones_sit_at_the_deviation) {
  observed_engine_t observed;
  custom_iq_t& engine = observed.engine;
  EXPECT_TRUE(engine.set_modulator_type(MODULATOR_MFSK));
  EXPECT_TRUE(engine.set_filter_type(FILTER_NONE));
  EXPECT_TRUE(engine.set_oversampling(8));
  EXPECT_TRUE(engine.set_symbol_rate(100000));
  EXPECT_TRUE(engine.set_fsk_deviation(25000.0));
  engine.update_waveform();
  const lib_iq_data_arr_t& samples = engine.get_waveform_data();
  ASSERT_EQ(samples.size(), 512u * 8u);
  // Without a pulse filter every phase step is a whole tone, plus or minus the deviation; the
  // modulator may add one common offset that closes the phase for looped replay.
  std::vector<double> frequencies;
  for (std::size_t k = 0; k + 1 < samples.size(); ++k) {
    frequencies.push_back(instantaneous_frequency(samples, k, 800000.0));
  }
  const auto [lowest, highest] = std::minmax_element(frequencies.begin(), frequencies.end());
  EXPECT_NEAR(*highest - *lowest, 50000.0, 1e-6);
  EXPECT_LT(std::abs(*highest + *lowest), 1000.0);
  std::size_t upper = 0;
  for (const double frequency : frequencies) {
    const bool is_upper = std::abs(frequency - *highest) < 1e-6;
    ASSERT_TRUE(is_upper || std::abs(frequency - *lowest) < 1e-6) << frequency;
    upper += is_upper ? 1 : 0;
  }
  // PN9 data is balanced to within a few symbols.
  EXPECT_NEAR(upper / 8.0, 256.0, 16.0);
}

TEST(custom_iq_waveform, lfm_sweeps_linearly_and_mirror_negates_q) {
  observed_engine_t observed;
  custom_iq_t& engine = observed.engine;
  const double rate = 1e6;
  EXPECT_TRUE(engine.set_modulator_type(MODULATOR_LFM));
  EXPECT_TRUE(engine.set_lfm_sample_rate(rate));
  EXPECT_TRUE(engine.set_lfm_bandwidth(200000.0));
  EXPECT_TRUE(engine.set_lfm_offset(50000.0));
  EXPECT_TRUE(engine.set_lfm_sweep_type(LFM_SWEEP_UP));
  engine.update_waveform();
  const lib_iq_data_arr_t plain = engine.get_waveform_data();
  ASSERT_EQ(plain.size(), 1000u);
  // Up sweep from -50 kHz to 150 kHz over 1 ms: f(k) = -50e3 + (k + 0.5) * 200 Hz.
  for (std::size_t k = 0; k + 1 < plain.size(); k += 111) {
    EXPECT_NEAR(instantaneous_frequency(plain, k, rate), -50e3 + (k + 0.5) * 200.0, 1e-3);
  }

  EXPECT_TRUE(engine.set_mirror_spectrum_enable(true));
  engine.update_waveform();
  const lib_iq_data_arr_t& mirrored = engine.get_waveform_data();
  ASSERT_EQ(mirrored.size(), plain.size());
  for (std::size_t k = 0; k < plain.size(); ++k) {
    ASSERT_EQ(mirrored[k].real(), plain[k].real());
    ASSERT_EQ(mirrored[k].imag(), -plain[k].imag());
  }
}

TEST(custom_iq_waveform, too_large_chirp_is_refused) {
  observed_engine_t observed;
  custom_iq_t& engine = observed.engine;
  EXPECT_TRUE(engine.set_modulator_type(MODULATOR_LFM));
  EXPECT_TRUE(engine.set_lfm_mode(true));
  EXPECT_TRUE(engine.set_lfm_segment_list({{0, 1e6, 0.2}, {1e6, 0, 0.2}}));
  EXPECT_DOUBLE_EQ(engine.get_lfm_total_time(), 0.4);
  // The sample count follows the segments (found by fuzzing: it once kept an older length).
  EXPECT_DOUBLE_EQ(engine.get_waveform_length(), 0.4);
  EXPECT_EQ(engine.get_total_sample_points(), static_cast<nal::uint64>(0.4 * 1e8));
  observed.reset_counts();
  engine.update_waveform();
  EXPECT_EQ(observed.dirty_false, 1);
  EXPECT_EQ(observed.too_large, 1);
  EXPECT_EQ(observed.waveform, 0);
  EXPECT_TRUE(engine.get_waveform_data().empty());

  // The limit is strict: exactly 3.2e7 samples are allowed.
  EXPECT_TRUE(custom_iq_t::is_custom_sweep_size_valid(1e8, {{0, 0, 0.16}, {0, 0, 0.16}}));
  EXPECT_FALSE(custom_iq_t::is_custom_sweep_size_valid(1e8, {{0, 0, 0.16}, {0, 0, 0.1601}}));
}

}  // namespace

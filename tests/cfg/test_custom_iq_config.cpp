#include <gtest/gtest.h>

#include <sstream>

#include <cmath>

#include "cfg/cfg_custom_iq.h"
#include "cfg/cfg_protocol_factory.h"
#include "cfg/cfg_protocol_state.h"
#include "cfg/cfg_waveform_file_reader.h"
#include "lib/plib.h"
#include "tests/cfg/conformance/conformance_xml.h"
#include "tests/cfg/test_folder_fixture.h"

namespace {

using nal::cfg_custom_iq_t;
using nal::custom_iq_t;
using wavelume_test::saved_text;

// Every parameter away from its preset, in an order the cascades allow.
void change_everything(custom_iq_t& e) {
  e.set_waveform_name("Field test");
  e.set_frame_number(3);
  e.set_mirror_spectrum_enable(true);
  e.set_data_source_type(nal::DATA_SOURCE_PN15);
  e.set_symbol_length(777);
  e.set_oversampling(6);
  e.set_symbol_rate(123457);
  e.set_custom_bits("1011001");
  e.set_modulator_type(nal::MODULATOR_MFSK);
  e.set_mfsk_type(nal::MOD_4FSK);
  e.set_fsk_deviation(300000.25);
  e.set_modulator_type(nal::MODULATOR_APSK_QAM);
  e.set_apsk_qam_type(nal::MOD_64QAM);
  e.set_gray_code_enable(true);
  e.set_multitone_mode(true);
  e.set_multitone_sample_rate(2.5e7);
  e.set_multitone_span(3.3e6);
  e.set_multitone_start(1.25e6);
  e.set_multitone_stop(4.5e6);
  e.set_multitone_number(17);
  e.set_multitone_single_side(true);
  e.set_multitone_notch_enable(true);
  e.set_multitone_notch_stop(3e6);
  e.set_multitone_notch_start(2e6);
  e.set_custom_constellation({{0, {std::sqrt(0.5), -1.0 / 3.0}}, {1, {-0.1, 0.2}}});
  e.set_custom_constellation_name("Two points");
  e.set_show_constellation_symbol(true);
  e.set_lfm_mode(true);
  e.set_lfm_sample_rate(2e8);
  e.set_lfm_sweep_time(0.0025);
  e.set_lfm_bandwidth(7e7);
  e.set_lfm_offset(-1.5e6);
  e.set_lfm_sweep_type(nal::LFM_SWEEP_DOWN);
  e.set_lfm_segments(4);
  e.set_frequency(3, 2.2e6, true);
  e.set_duration_time(3, 0.0004);
  e.set_filter_type(nal::FILTER_RAISED_COSINE);
  e.set_filter_alpha(0.27);
  e.set_filter_length(20);
}

using CustomIqConfig = wavelume_test::folder_fixture_t;

TEST_F(CustomIqConfig, EveryParameterSurvivesAStateFile) {
  cfg_custom_iq_t original;
  original.preset();
  change_everything(original.engine());

  const auto path = _folder / "custom.state";
  ASSERT_TRUE(nal::cfg_protocol_state_t::save_protocol_state(path.string(), {&original}, 0));
  std::vector<std::unique_ptr<nal::cfg_protocol_base_t>> loaded;
  nal::uint64 index = 9;
  ASSERT_TRUE(nal::cfg_protocol_state_t::load_protocol_state(path.string(), loaded, index));
  ASSERT_EQ(loaded.size(), 1u);
  auto* recalled = dynamic_cast<cfg_custom_iq_t*>(loaded[0].get());
  ASSERT_NE(recalled, nullptr);
  EXPECT_NE(saved_text(original), saved_text(cfg_custom_iq_t()));
  EXPECT_EQ(saved_text(*recalled), saved_text(original));

  // The same settings give the same waveform, bit for bit.
  original.engine().update_waveform();
  recalled->engine().update_waveform();
  ASSERT_FALSE(original.engine().get_waveform_data().empty());
  EXPECT_EQ(original.engine().get_waveform_data(), recalled->engine().get_waveform_data());
}

// Found by fuzzing: an element whose values read as "-0" was written back as "-0", which a recall
// (-0 equals the preset's 0) did not restore. Every element must survive its own save and recall.
TEST(CustomIqConfigXml, SavedElementRecallsToTheSameText) {
  pugi::xml_document document;
  ASSERT_TRUE(document.load_file(WAVELUME_TESTS_DIR "/cfg/data/custom_iq_negative_zero.xml"));
  cfg_custom_iq_t first;
  ASSERT_TRUE(first.load_from_xml(document.document_element()));
  const std::string text = saved_text(first);
  pugi::xml_document again;
  ASSERT_TRUE(again.load_string(text.c_str()));
  cfg_custom_iq_t recalled;
  ASSERT_TRUE(recalled.load_from_xml(again.document_element()));
  EXPECT_EQ(saved_text(recalled), text);
}

TEST_F(CustomIqConfig, SavedWaveformFileCarriesRateRmsAndSamples) {
  cfg_custom_iq_t config;
  config.preset();
  const auto path = _folder / "preset.ARB";
  testing::internal::CaptureStdout();
  ASSERT_TRUE(config.save_wavefrom_to_file(path.string()));
  EXPECT_EQ(testing::internal::GetCapturedStdout().rfind("file_header = FileType,IQ,", 0), 0u);

  nal::cfg_waveform_file_contents_t contents;
  std::string error;
  ASSERT_TRUE(nal::cfg_waveform_file_reader_t::read(path.string(), contents, error)) << error;
  EXPECT_EQ(contents.seal, nal::cfg_waveform_file_contents_t::SEAL_MATCHES);
  EXPECT_EQ(contents.field("SampleRate"), "2000000");  // 1 Msymbol/s x 2
  EXPECT_EQ(contents.field("FileName"), "preset.ARB");
  const auto& samples = config.engine().get_waveform_data();
  ASSERT_EQ(contents.samples.size(), samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) {
    ASSERT_LE(std::abs(contents.samples[i] - samples[i]), std::sqrt(0.5) / 32767.0 + 1e-12) << i;
  }
  EXPECT_NEAR(std::stod(contents.field("RMS")),
              nal::common_lib::plib_t::get_complex_array_rms(samples), 1e-12);
}

}  // namespace

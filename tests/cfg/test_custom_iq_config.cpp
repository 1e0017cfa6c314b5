#include <gtest/gtest.h>

#include <sstream>

#include <cmath>

#include "cfg/cfg_custom_iq.h"
#include "cfg/cfg_waveform_file_reader.h"
#include "lib/plib.h"
#include "tests/cfg/conformance/conformance_xml.h"
#include "tests/cfg/test_folder_fixture.h"

namespace {

using nal::cfg_custom_iq_t;
using wavelume_test::saved_text;

using CustomIqConfig = wavelume_test::folder_fixture_t;

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

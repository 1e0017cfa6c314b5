#include <gtest/gtest.h>

#include <cmath>

#include "cfg/cfg_waveform_file.h"
#include "cfg/cfg_waveform_file_reader.h"

namespace {

using nal::cfg_waveform_file_contents_t;
using nal::cfg_waveform_file_reader_t;
using nal::cfg_waveform_file_t;
using nal::lib_iq_data_arr_t;

std::string sample_file_bytes(const lib_iq_data_arr_t& samples) {
  const std::string header =
      cfg_waveform_file_t::build_file_header("Tone.ARB", nal::PROTOCOL_CUSTOM_IQ) +
      cfg_waveform_file_t::header_tail(1e6, 0.7);
  const std::string body = header + cfg_waveform_file_t::encode_samples(samples);
  return cfg_waveform_file_t::seal_field(body) + body;
}

TEST(WaveformFileReader, SealIsCheckedButNeverRequired) {
  const std::string sealed = sample_file_bytes({{0.5, 0.25}, {-0.5, 0.0}});
  cfg_waveform_file_contents_t contents;
  std::string error;

  std::string changed = sealed;
  changed.back() ^= 0x01;
  ASSERT_TRUE(cfg_waveform_file_reader_t::parse(changed, contents, error));
  EXPECT_EQ(contents.seal, cfg_waveform_file_contents_t::SEAL_MISMATCH);

  const std::string plain = sealed.substr(sealed.find(",FileType") + 1);
  ASSERT_TRUE(cfg_waveform_file_reader_t::parse(plain, contents, error));
  EXPECT_EQ(contents.seal, cfg_waveform_file_contents_t::SEAL_ABSENT);
  ASSERT_EQ(contents.samples.size(), 2u);
  EXPECT_EQ(contents.samples[0], std::complex<double>(16384 / 32767.0, 8192 / 32767.0));
}

TEST(WaveformFileReader, RefusesWhatIsNoWaveformFile) {
  cfg_waveform_file_contents_t contents;
  std::string error;
  EXPECT_FALSE(cfg_waveform_file_reader_t::parse("hello, world", contents, error));
  EXPECT_NE(error.find("no IQData key"), std::string::npos);
  EXPECT_FALSE(
      cfg_waveform_file_reader_t::parse(std::string(1 << 17, 'x') + ",IQData,", contents, error));
  EXPECT_FALSE(cfg_waveform_file_reader_t::parse("FileType,IQ,IQData,abc", contents, error));
  EXPECT_NE(error.find("3 bytes"), std::string::npos);
  EXPECT_FALSE(cfg_waveform_file_reader_t::parse("CheckCode,abc", contents, error));
  EXPECT_FALSE(cfg_waveform_file_reader_t::read("/nonexistent/wave.ARB", contents, error));
  EXPECT_NE(error.find("cannot open"), std::string::npos);

  ASSERT_TRUE(cfg_waveform_file_reader_t::parse("IQData,", contents, error));
  EXPECT_TRUE(contents.samples.empty());
}

}  // namespace

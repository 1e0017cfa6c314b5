#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>

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

TEST(WaveformFileReader, ReadsBackWhatWasWritten) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                     ("wavelume_reader_" + std::to_string(::getpid()) + ".ARB");
  lib_iq_data_arr_t samples;
  for (int i = 0; i < 500; ++i) {
    samples.emplace_back(0.7 * std::cos(0.1 * i), -0.7 * std::sin(0.1 * i));
  }
  const std::string header =
      cfg_waveform_file_t::build_file_header("Tone.ARB", nal::PROTOCOL_CUSTOM_IQ) +
      cfg_waveform_file_t::header_tail(1e6, 0.7);
  ASSERT_TRUE(cfg_waveform_file_t::save_iq_waveform_file(header, samples, path.string()));

  cfg_waveform_file_contents_t contents;
  std::string error;
  ASSERT_TRUE(cfg_waveform_file_reader_t::read(path.string(), contents, error)) << error;
  std::filesystem::remove(path);
  EXPECT_EQ(contents.seal, cfg_waveform_file_contents_t::SEAL_MATCHES);
  EXPECT_EQ(contents.field("FileType"), "IQ");
  EXPECT_EQ(contents.field("FileName"), path.filename().string());
  EXPECT_EQ(contents.field("ProtocolType"), "CustomIq");
  EXPECT_EQ(contents.field("SampleRate"), "1000000");
  EXPECT_EQ(contents.field("RMS"), "0.7");
  ASSERT_EQ(contents.samples.size(), samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) {
    ASSERT_LE(std::abs(contents.samples[i] - samples[i]), 1.0 / 32767.0) << i;
  }
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

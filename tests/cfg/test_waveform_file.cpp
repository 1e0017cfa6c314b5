#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "cfg/cfg_waveform_file.h"
#include "tests/cfg/test_folder_fixture.h"

namespace {

using nal::cfg_waveform_file_t;
using nal::lib_iq_data_arr_t;
namespace fs = std::filesystem;

std::string read_file(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The MD5 of everything after the seal field, computed by coreutils' md5sum.
std::string md5sum_after_seal(const fs::path& path) {
  const std::string file = read_file(path);
  const std::size_t seal_end = file.find(',', std::string("CheckCode,").size());
  const fs::path body = path.string() + ".body";
  std::ofstream(body, std::ios::binary) << file.substr(seal_end + 1);
  const std::string command = "md5sum '" + body.string() + "'";
  FILE* pipe = popen(command.c_str(), "r");
  char digest[33] = {};
  const std::size_t read = pipe == nullptr ? 0 : std::fread(digest, 1, 32, pipe);
  if (pipe != nullptr) {
    pclose(pipe);
  }
  fs::remove(body);
  return std::string(digest, read);
}

using WaveformFile = wavelume_test::folder_fixture_t;

TEST(WaveformHeader, TextIsExactForEachProtocol) {
  EXPECT_EQ(cfg_waveform_file_t::build_file_header(cfg_waveform_file_t::header_file_name("Wave1"),
                                                   nal::PROTOCOL_CUSTOM_IQ) +
                cfg_waveform_file_t::header_tail(2e6, 0.5),
            "FileType,IQ,Version,3.0,FileName,Wave1.ARB,SoftwareName,Wavelume,SoftwareVersion,"
            "2.0.0.1.2,ProtocolType,CustomIq,ProtocolVersion,Undefined,SampleRate,2000000,RMS,0.5,"
            "IQData,");
  EXPECT_EQ(cfg_waveform_file_t::build_file_header(cfg_waveform_file_t::header_file_name(""),
                                                   nal::PROTOCOL_BLUETOOTH_LE) +
                cfg_waveform_file_t::header_tail(8e6, std::nullopt),
            "FileType,IQ,Version,3.0,FileName,CurrentSettings,SoftwareName,Wavelume,"
            "SoftwareVersion,2.0.0.1.2,ProtocolType,BluetoothLowEnergy,ProtocolVersion,V5.2,"
            "SampleRate,8000000,IQData,");
  EXPECT_NE(cfg_waveform_file_t::build_file_header("x", nal::PROTOCOL_G9959)
                .find("ProtocolType,IotItuTG9959,ProtocolVersion,ITU-2015,"),
            std::string::npos);
  EXPECT_NE(cfg_waveform_file_t::build_file_header("x", nal::PROTOCOL_TOOLKIT)
                .find("ProtocolType,CustomIq,ProtocolVersion,Undefined,"),
            std::string::npos);

  testing::internal::CaptureStdout();
  const std::string home = cfg_waveform_file_t::build_file_header("x", nal::PROTOCOL_HOME);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "error\n");
  EXPECT_NE(home.find(",ProtocolType,,ProtocolVersion,,"), std::string::npos);

  // Fifteen significant digits, exponent form where the stream picks it.
  EXPECT_EQ(cfg_waveform_file_t::header_tail(1.0 / 3.0, 1e20),
            "SampleRate,0.333333333333333,RMS,1e+20,IQData,");
}

TEST(WaveformEncoding, RoundsHalfAwayAndWrapsAboveFullScale) {
  const std::string bytes =
      cfg_waveform_file_t::encode_samples({{1.0, -1.0}, {0.5, -0.5}, {1.5, NAN}, {0.0, 1e300}});
  ASSERT_EQ(bytes.size(), 16u);
  const auto word = [&](std::size_t i) {
    return static_cast<std::int16_t>(static_cast<std::uint8_t>(bytes[2 * i]) |
                                     (static_cast<std::uint8_t>(bytes[2 * i + 1]) << 8));
  };
  EXPECT_EQ(word(0), 32767);
  EXPECT_EQ(word(1), -32767);
  EXPECT_EQ(word(2), 16384);  // 16383.5 rounds away from zero
  EXPECT_EQ(word(3), -16384);
  EXPECT_EQ(word(4), -16385);  // 49151 wraps
  EXPECT_EQ(word(5), 0);       // not a number
  EXPECT_EQ(word(6), 0);
  EXPECT_EQ(word(7), 0);                                 // too large to round
  EXPECT_EQ(static_cast<std::uint8_t>(bytes[0]), 0xFF);  // low byte first
  EXPECT_EQ(static_cast<std::uint8_t>(bytes[1]), 0x7F);
}

TEST(WaveformEncoding, AgreesWithTheCLibraryRounding) {
  // Exact halves of a step, their neighbours, and values above full scale.
  lib_iq_data_arr_t samples;
  for (int k = -40000; k <= 40000; k += 7) {
    const double half = (k + 0.5) / 32767.0;
    samples.emplace_back(half, std::nextafter(half, 0.0));
    samples.emplace_back(std::nextafter(half, 2.0), -half);
  }
  const std::string bytes = cfg_waveform_file_t::encode_samples(samples);
  for (std::size_t i = 0; i < samples.size() * 2; ++i) {
    const double value = i % 2 == 0 ? samples[i / 2].real() : samples[i / 2].imag();
    const auto expected =
        static_cast<std::uint16_t>(static_cast<std::int64_t>(std::round(value * 32767.0)) & 0xFFFF);
    const auto word =
        static_cast<std::uint16_t>(static_cast<std::uint8_t>(bytes[2 * i]) |
                                   (static_cast<std::uint8_t>(bytes[2 * i + 1]) << 8));
    ASSERT_EQ(word, expected) << "value " << value;
  }
}

// The seal is hashed on a thread of its own from a ring of slots; enough samples to go round the
// ring several times (and to run under ThreadSanitizer, which picks tests by this name).
class WaveformFileConcurrency : public WaveformFile {};

TEST_F(WaveformFileConcurrency, SealIsTheMd5OfEverythingAfterIt) {
  lib_iq_data_arr_t samples;
  for (int i = 0; i < 1'000'000; ++i) {
    samples.emplace_back(std::cos(i * 0.01) * 0.9, std::sin(i * 0.01) * 0.9);
  }
  const std::string header =
      cfg_waveform_file_t::build_file_header("Page.ARB", nal::PROTOCOL_CUSTOM_IQ) +
      cfg_waveform_file_t::header_tail(1e6, 0.9);
  const fs::path path = _folder / "saved.ARB";
  ASSERT_TRUE(cfg_waveform_file_t::save_iq_waveform_file(header, samples, path.string()));

  const std::string file = read_file(path);
  ASSERT_EQ(file.compare(0, 10, "CheckCode,"), 0);
  EXPECT_EQ(file.substr(10, 32), md5sum_after_seal(path));
  // The file names itself, whatever the page called the waveform.
  const std::string expected_header = cfg_waveform_file_t::replace_file_name(header, "saved.ARB");
  EXPECT_EQ(file.substr(43, expected_header.size()), expected_header);
  EXPECT_EQ(file.substr(43 + expected_header.size()), cfg_waveform_file_t::encode_samples(samples));
  EXPECT_EQ(fs::directory_iterator(_folder)->path(), path);  // no temporary left behind
}

TEST_F(WaveformFile, EmptyWaveformEndsAtTheDataKey) {
  const fs::path path = _folder / "empty.ARB";
  ASSERT_TRUE(cfg_waveform_file_t::save_iq_waveform_file(
      cfg_waveform_file_t::build_file_header("CurrentSettings", nal::PROTOCOL_CUSTOM_OFDM) +
          cfg_waveform_file_t::header_tail(1e6, std::nullopt),
      {}, path.string()));
  const std::string file = read_file(path);
  EXPECT_EQ(file.substr(file.size() - 7), "IQData,");
  EXPECT_EQ(file.substr(10, 32), md5sum_after_seal(path));
}

TEST_F(WaveformFile, MissingFolderIsReportedAndWritesNothing) {
  const fs::path path = _folder / "missing" / "wave.ARB";
  testing::internal::CaptureStdout();
  EXPECT_FALSE(cfg_waveform_file_t::save_iq_waveform_file("IQData,", {{0.1, 0.1}}, path.string()));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "error can't open the file " + path.string() + "\n");
  EXPECT_FALSE(fs::exists(path));
}

// Saves a waveform larger than a file size limit of 4 KiB, which makes the write fail after a
// good open, as a full disk would. True when the save failed with a report and left the earlier
// content of `path`. Run in a child process, so that the limit cannot touch other tests.
bool save_beyond_file_size_limit(const fs::path& path) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  limit.rlim_cur = 4096;
  limit.rlim_max = 4096;
  setrlimit(RLIMIT_FSIZE, &limit);
  const std::string earlier = read_file(path);
  testing::internal::CaptureStdout();
  const lib_iq_data_arr_t samples(100000, std::complex<double>(0.5, 0.5));
  const bool saved = cfg_waveform_file_t::save_iq_waveform_file("IQData,", samples, path.string());
  const bool reported =
      testing::internal::GetCapturedStdout().find("error can't write the file") == 0;
  return !saved && reported && read_file(path) == earlier;
}

TEST_F(WaveformFile, FailedWriteKeepsTheEarlierFile) {
  const fs::path path = _folder / "kept.ARB";
  std::ofstream(path, std::ios::binary) << "earlier waveform";
  EXPECT_EXIT(std::exit(save_beyond_file_size_limit(path) ? 0 : 1), testing::ExitedWithCode(0), "");
  EXPECT_EQ(std::distance(fs::directory_iterator(_folder), fs::directory_iterator()), 1);
}

}  // namespace

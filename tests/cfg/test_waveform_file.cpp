#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "cfg/cfg_sample_encoder.h"
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
  // Not a number, and values too large to round, become zero.
  EXPECT_EQ(cfg_waveform_file_t::encode_samples({{NAN, 1e300}}), std::string(4, '\0'));
}

TEST(WaveformEncoding, BothLoopsGiveTheSameBytes) {
  if (!nal::cfg_sample_encoder_t::uses_vector_lanes()) {
    GTEST_SKIP() << "this processor has no AVX-512; only the general loop runs";
  }
#if defined(__x86_64__)
  // Halves of a step and their neighbours, full scale, wrapping values, NaN and infinities mixed
  // into groups of four samples, and every tail length.
  lib_iq_data_arr_t samples;
  std::mt19937 generator(9);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  const double specials[] = {1.0,       -1.0, 0.5 / 32767.0, -0.5 / 32767.0,
                             1.0000001, -3.5, NAN,           INFINITY};
  for (int i = 0; i < 4000; ++i) {
    const double half = (std::floor(uniform(generator) * 32767.0) + 0.5) / 32767.0;
    samples.emplace_back(half, std::nextafter(half, 0.0));
    samples.emplace_back(i % 7 == 0 ? specials[i % 8] : uniform(generator), -half);
  }
  for (std::size_t count = samples.size() - 9; count <= samples.size(); ++count) {
    std::string general(4 * count, '\0');
    std::string vector(4 * count, '\0');
    nal::encode_samples_general(samples.data(), count,
                                reinterpret_cast<unsigned char*>(general.data()));
    nal::encode_samples_avx512(samples.data(), count,
                               reinterpret_cast<unsigned char*>(vector.data()));
    ASSERT_EQ(general, vector) << count << " samples";
  }
#endif
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

// The header's RMS is summed by two threads over fixed blocks.
TEST(WaveformHeaderConcurrency, RmsIsTheLiteralSumWithinRounding) {
  std::mt19937 generator(5);
  std::normal_distribution<double> normal(0.0, 0.3);
  lib_iq_data_arr_t samples(1'000'003);  // not a whole number of blocks
  double literal = 0.0;
  for (auto& sample : samples) {
    sample = {normal(generator), normal(generator)};
    literal += sample.real() * sample.real() + sample.imag() * sample.imag();
  }
  EXPECT_NEAR(cfg_waveform_file_t::header_rms(samples),
              std::sqrt(literal / static_cast<double>(samples.size())), 1e-14);

  // Unit magnitudes sum exactly, whichever thread adds them.
  lib_iq_data_arr_t unit(200'000);
  for (std::size_t i = 0; i < unit.size(); ++i) {
    unit[i] = i % 3 == 0 ? nal::lib_iq_sample_t(1.0, 0.0) : nal::lib_iq_sample_t(0.0, -1.0);
  }
  EXPECT_EQ(cfg_waveform_file_t::header_rms(unit), 1.0);
  EXPECT_EQ(cfg_waveform_file_t::header_rms({{0.5, 0.5}}), std::sqrt(0.5));
  EXPECT_EQ(cfg_waveform_file_t::header_rms({}), 0.0);
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

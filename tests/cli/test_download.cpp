// `instruments` and `download` against the loopback instrument simulator: what reaches the
// instrument is checked byte for byte against the file, and the seal of a computed block
// against coreutils' md5sum.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "cli/cli_download.h"
#include "tests/cli/cli_generate_fixture.h"
#include "tools/instrument_sim/sim_instrument.h"

namespace {

namespace fs = std::filesystem;

class CliDownload : public wavelume_test::cli_generate_fixture_t {
 protected:
  void SetUp() override {
    cli_generate_fixture_t::SetUp();
    wavelume_sim::sim_instrument_options_t options;
    options.set_keeping(wavelume_sim::sim_block_keeping_t::bytes);
    ASSERT_TRUE(_instrument.start(options));
    ::setenv("WAVELUME_VXI11_PORTMAPPER_PORT",
             std::to_string(_instrument.portmapper_port()).c_str(), 1);
  }

  int download(const std::vector<std::string>& arguments) {
    _out.str("");
    _errors.str("");
    testing::internal::CaptureStdout();  // the configuration's own report lines
    const int status = wavelume::cli::run_download(arguments, _out, _errors);
    testing::internal::GetCapturedStdout();
    return status;
  }

  std::string last_block(std::size_t count) {
    EXPECT_TRUE(_instrument.record().wait_for_blocks(count, std::chrono::seconds(5)));
    const auto blocks = _instrument.record().blocks();
    return blocks.empty() ? std::string() : blocks.back().bytes;
  }

  std::string md5sum(const std::string& bytes) {
    const fs::path path = _folder / "md5.bin";
    std::ofstream(path, std::ios::binary) << bytes;
    const std::string command = "md5sum '" + path.string() + "'";
    std::string line(32, '\0');
    if (FILE* pipe = ::popen(command.c_str(), "r")) {
      EXPECT_EQ(std::fread(line.data(), 1, 32, pipe), 32u);
      ::pclose(pipe);
    }
    return line;
  }

  wavelume_sim::sim_instrument_t _instrument;
};

std::string file_bytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

TEST_F(CliDownload, FilesAndComputedWaveformsArriveWholeOverEachTransport) {
  const fs::path arb = _folder / "qam64.ARB";
  ASSERT_EQ(
      generate({"custom-iq", "--set", "Modulation/ApskQamModulation=64QAM", "-o", arb.string()}),
      0);
  const std::string file = file_bytes(arb);

  // A file goes unchanged behind "IQDA ", over the raw socket and over VXI-11.
  ASSERT_EQ(download({_instrument.socket_resource(), arb.string()}), 0) << _errors.str();
  EXPECT_NE(_out.str().find("Loopback Instrument Simulator"), std::string::npos);
  const std::string first = last_block(1);
  EXPECT_EQ(first.size(), file.size() + 5);
  EXPECT_TRUE(first == "IQDA " + file);
  ASSERT_EQ(download({_instrument.vxi11_resource(), arb.string()}), 0) << _errors.str();
  EXPECT_EQ(last_block(2), "IQDA " + file);

  // The current settings over HiSLIP: sealed like the file, named "CurrentSettings" instead of
  // the file, with the same samples.
  ASSERT_EQ(download({_instrument.hislip_resource(), "custom-iq", "--set",
                      "Modulation/ApskQamModulation=64QAM"}),
            0)
      << _errors.str();
  const std::string block = last_block(3);
  ASSERT_EQ(block.compare(0, 15, "IQDA CheckCode,"), 0);
  EXPECT_EQ(block.substr(15, 32), md5sum(block.substr(48)));
  EXPECT_NE(block.find("FileName,CurrentSettings,"), std::string::npos);
  const std::string samples_marker = ",IQData,";
  EXPECT_EQ(block.substr(block.find(samples_marker)), file.substr(file.find(samples_marker)));
}

TEST_F(CliDownload, FailuresSayWhatIsWrong) {
  const fs::path arb = _folder / "x.ARB";
  ASSERT_EQ(generate({"custom-iq", "-o", arb.string()}), 0);
  testing::internal::CaptureStderr();  // the link's own debug lines
  EXPECT_EQ(download({"TCPIP0::127.0.0.1::1::SOCKET", arb.string()}), 3);
  EXPECT_NE(_errors.str().find("cannot reach 'TCPIP0::127.0.0.1::1::SOCKET'"), std::string::npos);
  EXPECT_EQ(download({"TCPIP0::no::such::thing", "custom-iq"}), 3);
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(download({_instrument.socket_resource(), (_folder / "missing.ARB").string()}), 2);
  EXPECT_NE(_errors.str().find("cannot read"), std::string::npos);
  EXPECT_EQ(download({_instrument.socket_resource()}), 2);
  EXPECT_EQ(download({_instrument.socket_resource(), "custom-iq", "--set", "Nope=1"}), 2);
  EXPECT_TRUE(_instrument.record().blocks().empty());

  std::ostringstream out;
  std::ostringstream errors;
  EXPECT_EQ(wavelume::cli::run_instruments({"--add", _instrument.socket_resource()}, out, errors),
            0);
  EXPECT_NE(out.str().find(_instrument.socket_resource() + "\tWavelume,Loopback"),
            std::string::npos)
      << out.str();
  EXPECT_EQ(wavelume::cli::run_instruments({"--add"}, out, errors), 2);
}

}  // namespace

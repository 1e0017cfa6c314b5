#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cfg/cfg_waveform_file.h"
#include "cli/cli_info.h"

namespace {

namespace fs = std::filesystem;
using nal::cfg_waveform_file_t;

class CliInfo : public testing::Test {
 protected:
  void SetUp() override {
    _path = fs::temp_directory_path() / ("wavelume_info_" + std::to_string(::getpid()) + ".ARB");
    nal::lib_iq_data_arr_t samples;
    for (int i = 0; i < 1000; ++i) {  // a unit tone at half scale: rms 0.5, peak 0.5, PAPR 0 dB
      samples.push_back(std::polar(0.5, 0.01 * i));
    }
    const std::string header =
        cfg_waveform_file_t::build_file_header("Tone \"A\".ARB", nal::PROTOCOL_CUSTOM_IQ) +
        cfg_waveform_file_t::header_tail(2e6, 0.5);
    ASSERT_TRUE(cfg_waveform_file_t::save_iq_waveform_file(header, samples, _path.string()));
  }
  void TearDown() override { fs::remove(_path); }

  int run(bool json) {
    _out.str("");
    _errors.str("");
    return wavelume::cli::run_info(_path.string(), json, _out, _errors);
  }

  fs::path _path;
  std::ostringstream _out;
  std::ostringstream _errors;
};

TEST_F(CliInfo, JsonReportIsValidJson) {
  ASSERT_EQ(run(true), 0);
  // Python's own parser is the judge of the JSON, and reads back the figures.
  const fs::path json = _path.string() + ".json";
  std::ofstream(json) << _out.str();
  const std::string command =
      "/usr/bin/python3 -c \"import json,sys; d=json.load(open(sys.argv[1])); "
      "print(d['samples'], d['seal'], d['header']['ProtocolType'], round(d['rms'], 3), "
      "round(d['papr_db'], 2), d['duration_s'])\" '" +
      json.string() + "'";
  FILE* pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  char line[256] = {};
  const bool got = std::fgets(line, sizeof(line), pipe) != nullptr;
  pclose(pipe);
  fs::remove(json);
  ASSERT_TRUE(got) << _out.str();
  EXPECT_EQ(std::string(line), "1000 ok CustomIq 0.5 0.0 0.0005\n");
}

TEST_F(CliInfo, ChangedFileIsAWarningAndMissingFileAnError) {
  {
    std::fstream file(_path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(-1, std::ios::end);
    file.put('\x7f');
  }
  ASSERT_EQ(run(false), 0);
  EXPECT_NE(_errors.str().find("warning: the seal"), std::string::npos);
  EXPECT_NE(_out.str().find("Seal:            mismatch"), std::string::npos);

  fs::remove(_path);
  EXPECT_EQ(run(false), 2);
  EXPECT_NE(_errors.str().find("cannot open"), std::string::npos);
}

}  // namespace

// What the tool says about its input: values it did not take, arguments it cannot use, and the
// annotations and names it writes. Where a file is judged, Python's json module reads it.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "cfg/cfg_protocol_registry.h"
#include "cfg/cfg_waveform_file_reader.h"
#include "cli/cli_info.h"
#include "tests/cli/cli_generate_fixture.h"

namespace {

namespace fs = std::filesystem;
using CliBoundary = wavelume_test::cli_generate_fixture_t;

struct run_result_t {
  int status = -1;
  std::string output;
};

// Runs a shell command, standard error joined to standard output.
run_result_t run_shell(const std::string& command) {
  run_result_t result;
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) {
    return result;
  }
  char buffer[4096];
  for (std::size_t got; (got = std::fread(buffer, 1, sizeof(buffer), pipe)) > 0;) {
    result.output.append(buffer, got);
  }
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

run_result_t run_tool(const std::string& arguments) {
  return run_shell(std::string("'") + WAVELUME_CLI + "' " + arguments);
}

// `expression` of the JSON document `path` as Python prints it, `d` being the document.
std::string python_json(const fs::path& path, const std::string& expression) {
  return run_shell(
             "/usr/bin/python3 -c \"import json,sys; d=json.load(open(sys.argv[1])); "
             "print(" +
             expression + ")\" '" + path.string() + "'")
      .output;
}

TEST_F(CliBoundary, NoArgumentEndsTheProcessAbnormally) {
  const std::string out = "'" + (_folder / "x.ARB").string() + "'";
  for (const std::string& arguments : std::vector<std::string>{
           "generate custom-iq --tab 99999999999999999999999 -o " + out,
           "generate custom-iq --tab -1 -o " + out, "generate custom-iq --set =1 -o " + out,
           "generate custom-iq --set 'Basic[99999999999999999999]/x=1' -o " + out,
           std::string("info /dev/null"), std::string("info"), std::string("frobnicate"),
           std::string("defaults no-such-protocol"), std::string("download"),
           "generate '" + _folder.string() + "' -o " + out}) {
    const run_result_t result = run_tool(arguments);
    EXPECT_EQ(result.status, 2) << arguments << "\n" << result.output;
    EXPECT_FALSE(result.output.empty()) << arguments;
  }
  EXPECT_FALSE(fs::exists(_folder / "x.ARB"));
}

TEST_F(CliBoundary, VersionAndEveryCommandsHelp) {
  const run_result_t version = run_tool("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.output.rfind("wavelume-cli ", 0), 0u) << version.output;
  for (const char* command :
       {"protocols", "defaults", "generate", "info", "instruments", "download", "selfcheck"}) {
    const run_result_t help = run_tool(std::string(command) + " --help");
    EXPECT_EQ(help.status, 0) << command;
    EXPECT_NE(help.output.find(std::string("Usage: wavelume-cli ") + command), std::string::npos)
        << help.output;
  }
}

TEST_F(CliBoundary, ValuesNotTakenAsGivenAreReportedAndStrictRefusesThem) {
  const fs::path out = _folder / "x.ARB";
  ASSERT_EQ(generate({"custom-iq", "--set", "Modulation/ApskQamModulation=999QAM", "--set",
                      "Filter/oversampling=-5", "--set", "DataSource/symbolLength=100000000",
                      "--set", "Modulation/grayEnable=true", "-o", out.string()}),
            0);
  const std::string report = _errors.str();
  EXPECT_NE(report.find("Modulation/ApskQamModulation: asked '999QAM', took '"), std::string::npos)
      << report;
  EXPECT_NE(report.find("64QAM"), std::string::npos) << "the accepted texts are listed";
  EXPECT_NE(report.find("Filter/oversampling: asked '-5', took '2'"), std::string::npos) << report;
  EXPECT_NE(report.find("DataSource/symbolLength: asked '100000000', took '100000'"),
            std::string::npos)
      << report;
  EXPECT_EQ(report.find("grayEnable"), std::string::npos) << "a value taken is not reported";

  // Numbers compare by value: 5e-1 is the 0.5 it asks for.
  ASSERT_EQ(
      generate({"custom-iq", "--set", "Filter/filterAlpha=5e-1", "--strict", "-o", out.string()}),
      0)
      << _errors.str();
  EXPECT_EQ(_errors.str(), "");

  fs::remove(out);
  EXPECT_EQ(
      generate({"custom-iq", "--strict", "--set", "Filter/oversampling=-5", "-o", out.string()}),
      2);
  EXPECT_NE(_errors.str().find("error: --set Filter/oversampling"), std::string::npos);
  EXPECT_FALSE(fs::exists(out));
}

TEST_F(CliBoundary, FileNameDoesNotDependOnHowThePathIsSpelled) {
  const fs::path previous = fs::current_path();
  fs::current_path(_folder);
  ASSERT_EQ(generate({"custom-iq", "-o", "d.ARB"}), 0) << _errors.str();
  ASSERT_EQ(generate({"custom-iq", "-o", "./e.ARB"}), 0) << _errors.str();
  ASSERT_EQ(generate({"custom-iq", "-o", (_folder / "f.ARB").string()}), 0) << _errors.str();
  fs::current_path(previous);
  for (const char* name : {"d.ARB", "e.ARB", "f.ARB"}) {
    nal::cfg_waveform_file_contents_t contents;
    std::string error;
    ASSERT_TRUE(nal::cfg_waveform_file_reader_t::read((_folder / name).string(), contents, error));
    EXPECT_EQ(contents.field("FileName"), name);
  }
  // The result line is a plain sentence with plain numbers.
  EXPECT_NE(_out.str().find("1024 samples at 2 MHz, 512 us"), std::string::npos) << _out.str();
}

TEST_F(CliBoundary, SigmfAnnotationsCoverTheFramesAndInfoListsThem) {
  const fs::path data = _folder / "frames.sigmf-data";
  ASSERT_EQ(generate({"custom-iq", "--set", "Basic/WaveformFrameNumber=3", "--set",
                      "DataSource/symbolLength=101", "-o", data.string()}),
            0)
      << _errors.str();
  const fs::path meta = _folder / "frames.sigmf-meta";
  // Three frames of 101 symbols at 2 samples each, back to back over the whole file.
  EXPECT_EQ(python_json(meta,
                        "[(a['core:sample_start'], a['core:sample_count'], a['core:label']) "
                        "for a in d['annotations']]"),
            "[(0, 202, 'frame 1'), (202, 202, 'frame 2'), (404, 202, 'frame 3')]\n");
  EXPECT_EQ(fs::file_size(data), 606u * 8u);

  std::ostringstream out;
  std::ostringstream errors;
  ASSERT_EQ(wavelume::cli::run_info(meta.string(), false, out, errors), 0) << errors.str();
  EXPECT_NE(out.str().find("Annotations:     3"), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("404 +202         frame 3"), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("Sample rate:     2 MHz"), std::string::npos) << out.str();
}

TEST_F(CliBoundary, EveryEngineReportsAPositiveSampleRateThroughTheTool) {
  int engines = 0;
  for (const nal::cfg_protocol_row_t& row : nal::cfg_protocol_registry_t::rows()) {
    if (!row.has_engine()) {
      continue;
    }
    ++engines;
    const fs::path data = _folder / (row.cli_name + ".sigmf-data");
    ASSERT_EQ(generate({row.cli_name, "-o", data.string()}), 0) << row.cli_name << _errors.str();
    const fs::path meta = _folder / (row.cli_name + ".sigmf-meta");
    EXPECT_EQ(python_json(meta, "d['global']['core:sample_rate'] > 0"), "True\n") << row.cli_name;
    // No segment claims samples the file does not have.
    const std::string samples = std::to_string(fs::file_size(data) / 8);
    EXPECT_EQ(python_json(meta, "all(a['core:sample_start'] + a['core:sample_count'] <= " +
                                    samples + " for a in d['annotations'])"),
              "True\n")
        << row.cli_name;
  }
  EXPECT_GE(engines, 1);
}

TEST_F(CliBoundary, InfoWarnsWhenACommaSplitsTheFileName) {
  const auto info_errors = [](const fs::path& path) {
    std::ostringstream out;
    std::ostringstream errors;
    EXPECT_EQ(wavelume::cli::run_info(path.string(), false, out, errors), 0);
    return errors.str();
  };
  const fs::path plain = _folder / "plain.ARB";
  ASSERT_EQ(generate({"custom-iq", "-o", plain.string()}), 0);
  EXPECT_EQ(info_errors(plain), "");

  const fs::path named = _folder / "named.ARB";
  ASSERT_EQ(generate({"custom-iq", "--set", "Basic/WaveformName=left,right", "-o", named.string()}),
            0);
  EXPECT_NE(info_errors(named).find("FileName of '" + named.string() + "' seems to hold a comma"),
            std::string::npos);
}

}  // namespace

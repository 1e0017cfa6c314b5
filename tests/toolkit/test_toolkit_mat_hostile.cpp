// Damaged and hostile MAT-files: each gives a message naming the file and the element, the
// intact elements still read, and nothing crashes (run these under the sanitizers too).

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "test_toolkit_fixture.h"
#include "toolkit/toolkit_mat_inflate.h"
#include "toolkit/toolkit_waveform_import.h"

namespace {

using namespace nal;
using toolkit_test::data_path;

std::string read_printing(toolkit_waveform_import_t& importer, const std::string& path) {
  testing::internal::CaptureStdout();
  importer.set_mat_file_path(path);
  return testing::internal::GetCapturedStdout();
}

TEST(ToolkitMatHostile, DamagedElementsLeaveEmptyRecordsWithMessages) {
  toolkit_waveform_import_t importer;
  const std::string output = read_printing(importer, data_path("hostile.mat"));
  const auto& list = importer.get_variable_list();
  ASSERT_EQ(list.size(), 6u) << output;
  // Values that do not match their dimensions are kept, in file order, with a warning.
  EXPECT_EQ(list[0].real_data.size(), 6u);
  for (std::size_t k = 1; k < 5; ++k) {
    EXPECT_FALSE(list[k].has_data()) << k;
  }
  EXPECT_EQ(list[5].real_data.size(), 6u);
  for (const char* message :
       {"the dimensions 1x7 do not match the 6 values stored; they are read in file order (",
        "variable 'mismatch'", "the variable is a cell array",
        "Error uncompressing data: the compressed data is damaged",
        "would inflate to 2147483656 bytes, beyond the limit",
        "inflates to more bytes than its tag declares", "the element declares 4096 bytes",
        "element 6 at byte"}) {
    EXPECT_NE(output.find(message), std::string::npos) << message << "\n" << output;
  }
  EXPECT_NE(output.find(data_path("hostile.mat")), std::string::npos);
}

TEST(ToolkitMatHostile, InflateLimitIsAGibibyteAtMostAndCanBeLowered) {
  EXPECT_LE(toolkit_mat_inflate_t::default_limit_bytes(), std::size_t{1} << 30);
  EXPECT_GT(toolkit_mat_inflate_t::default_limit_bytes(), 0u);
  toolkit_waveform_import_t importer;
  importer.set_inflate_limit_bytes(64);
  const std::string output = read_printing(importer, data_path("compressed.mat"));
  EXPECT_NE(output.find("beyond the limit of 64 bytes"), std::string::npos) << output;
  for (const toolkit_mat_variable_t& variable : importer.get_variable_list()) {
    EXPECT_FALSE(variable.has_data());
  }
}

// Prefixes of a file, and bytes replaced by 0xFF in turn (every one in the small hand-made files,
// every seventh in savemat's): a message at most, no crash.
TEST(ToolkitMatHostile, TruncatedAndCorruptedFilesNeverCrash) {
  for (const char* name : {"plain.mat", "compressed.mat", "big.mat", "quirks.mat"}) {
    std::ifstream file(data_path(name), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), {});
    const std::string damaged_path = data_path(std::string("damaged_") + name);
    toolkit_waveform_import_t importer;
    importer.set_i_data_index(1);
    importer.set_q_data_index(1);
    testing::internal::CaptureStdout();
    const std::size_t step = bytes.size() < 1000 ? 1 : 7;
    for (std::size_t n = 0; n < bytes.size(); n += step) {
      std::string damaged = bytes;
      damaged[n] = '\xFF';
      for (const std::string& content : {bytes.substr(0, n), damaged}) {
        std::ofstream(damaged_path, std::ios::binary | std::ios::trunc) << content;
        importer.set_mat_file_path(damaged_path);
        importer.import_waveform();
      }
    }
    testing::internal::GetCapturedStdout();
  }
}

TEST(ToolkitMatHostile, PathsThatAreNotFilesAreRefused) {
  for (const auto& [path, problem] :
       {std::pair<std::string, std::string>{toolkit_test::data_folder(), "is a directory"},
        {"/dev/zero", "is a device"},
        {data_path("missing.mat"), "no such file"}}) {
    toolkit_waveform_import_t importer;
    const std::string output = read_printing(importer, path);
    EXPECT_EQ(output, "toolkit_mat_file_reader_t::read Report: Error: Failed to open .mat file. " +
                          path + ": " + problem +
                          (problem == "is a directory" ? ", not a file\n"
                           : problem == "is a device"  ? ", pipe or socket, not a regular file\n"
                                                       : "\n"));
    testing::internal::CaptureStdout();
    EXPECT_FALSE(importer.import_waveform());
    EXPECT_NE(testing::internal::GetCapturedStdout().find("does not exist or holds no values"),
              std::string::npos);
  }
}

}  // namespace

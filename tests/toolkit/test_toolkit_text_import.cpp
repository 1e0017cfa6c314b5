// Text files written by numpy and by hand: columns, separators, hexadecimal words, separate Q
// files, and the messages for lines that do not parse.

#include <gtest/gtest.h>

#include <fstream>

#include "test_toolkit_fixture.h"
#include "toolkit/toolkit_waveform_import.h"

namespace {

using namespace nal;
using toolkit_test::data_path;
using toolkit_test::write_text_file;

toolkit_waveform_import_t text_importer(const std::string& path) {
  toolkit_waveform_import_t importer;
  importer.set_source_file_type(toolkit_waveform_import_t::source_text_file);
  importer.set_ascii_file_path(path);
  return importer;
}

// Imports and returns the samples scaled back by `peak`, with the printed reports.
lib_iq_data_arr_t import_printing(toolkit_waveform_import_t& importer, std::string& output,
                                  double peak = 1.0) {
  testing::internal::CaptureStdout();
  importer.import_waveform();
  output = testing::internal::GetCapturedStdout();
  lib_iq_data_arr_t samples = importer.get_iq_data();
  for (lib_iq_sample_t& sample : samples) {
    sample *= peak;
  }
  return samples;
}

void expect_samples_near(const lib_iq_data_arr_t& actual, const lib_iq_data_arr_t& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t n = 0; n < actual.size(); ++n) {
    EXPECT_NEAR(std::abs(actual[n] - expected[n]), 0.0, 1e-9) << n;
  }
}

std::vector<std::pair<double, double>> numpy_columns() {
  std::vector<std::pair<double, double>> rows;
  std::ifstream file(data_path("columns.expected"));
  for (double i, q; file >> i >> q;) {
    rows.emplace_back(i, q);
  }
  return rows;
}

TEST(ToolkitTextImport, ReadsNumpyColumnsInEveryLayout) {
  const auto rows = numpy_columns();
  ASSERT_EQ(rows.size(), 50u);
  double peak = 0;
  for (const auto& [i, q] : rows) {
    peak = std::max({peak, std::fabs(i), std::fabs(q)});
  }
  struct layout_t {
    const char* first;
    const char* second;
    bool swap;
    bool mirror;
  };
  for (const layout_t& layout : {layout_t{"columns_comma.csv", nullptr, false, false},
                                 layout_t{"columns_space.txt", nullptr, true, false},
                                 layout_t{"i_only.txt", "q_only.txt", false, true},
                                 layout_t{"i_only.txt", "q_only.txt", true, true}}) {
    SCOPED_TRACE(layout.first);
    toolkit_waveform_import_t importer = text_importer(data_path(layout.first));
    EXPECT_EQ(importer.get_number_of_points(), 50u);
    importer.set_separate_q_file_enable(layout.second != nullptr);
    importer.set_q_source_file_path(layout.second ? data_path(layout.second) : "");
    importer.set_swap_iq_enable(layout.swap);
    importer.set_mirror_spectrum_enable(layout.mirror);
    std::string output;
    const lib_iq_data_arr_t samples = import_printing(importer, output, peak);
    ASSERT_EQ(samples.size(), rows.size()) << output;
    const double sign = layout.mirror ? -1.0 : 1.0;
    for (std::size_t n = 0; n < rows.size(); ++n) {
      const auto [i, q] = layout.swap ? std::pair(rows[n].second, rows[n].first) : rows[n];
      EXPECT_NEAR(samples[n].real(), i, 1.0 / 32767) << n;
      EXPECT_NEAR(samples[n].imag(), sign * q, 1.0 / 32767) << n;
    }
  }
}

TEST(ToolkitTextImport, HexadecimalWordsKeepTheirLow16Bits) {
  // Columns: I, Q. The last row mixes white space; "12345" keeps 0x2345.
  const std::string path = write_text_file("words.txt", "7FFF,8000\n0x0102 , FFFF\n12345 1\n");
  toolkit_waveform_import_t importer = text_importer(path);
  importer.set_hexadecimal_enable(true);
  std::string output;
  expect_samples_near(import_printing(importer, output, 32768),
                      {{32767, -32768}, {0x102, -1}, {0x2345, 1}});
  importer.set_unsigned_number_enable(true);
  expect_samples_near(import_printing(importer, output, 65535),
                      {{32767, 32768}, {0x102, 65535}, {0x2345, 1}});
  importer.set_unsigned_number_enable(false);
  importer.set_little_endian_enable(true);
  expect_samples_near(import_printing(importer, output, 0x4523),
                      {{-129, 128}, {0x201, -1}, {0x4523, 0x100}});
  // Separate files: the I file is never swapped, the Q file is.
  importer.set_separate_q_file_enable(true);
  importer.set_q_source_file_path(write_text_file("q_words.txt", "0102\n"));
  importer.set_ascii_file_path(write_text_file("i_words.txt", "0102\n"));
  expect_samples_near(import_printing(importer, output, 0x201), {{0x102, 0x201}});
}

TEST(ToolkitTextImport, EmptyLinesContributeNothing) {
  const std::string path = write_text_file("gaps.txt", "1 2\n\n  \r\n3,4\n\n5\t6\r\n");
  toolkit_waveform_import_t importer = text_importer(path);
  EXPECT_EQ(importer.get_ascii_line_number(), 6u);
  std::string output;
  expect_samples_near(import_printing(importer, output, 6), {{1, 2}, {3, 4}, {5, 6}});
}

TEST(ToolkitTextImport, ReportsNameTheFileTheLineAndItsText) {
  struct case_t {
    std::string text;
    std::string message;
  };
  const std::string bad = data_path("bad.txt");
  for (const case_t& c : {
           case_t{"1 2\n3 4V\n", bad + ", line 2: field 2 \"4V\" is not a finite decimal number "
                                       "in \"3 4V\""},
           case_t{"1,2\n3,,4\n", bad + ", line 2: field 2 \"\" is not a finite"},
           case_t{"nan 1\n", "field 1 \"nan\" is not a finite decimal number"},
           case_t{"1e999 1\n", "field 1 \"1e999\""},
           case_t{"1 2\n3\n", bad + " gives 2 I values but 1 Q values"},
           case_t{"1,2\n3,\n", bad + " gives 2 I values but 1 Q values"},
           case_t{"", bad + " holds no values"},
       }) {
    SCOPED_TRACE(c.text);
    write_text_file("bad.txt", c.text);
    toolkit_waveform_import_t importer = text_importer(bad);
    std::string output;
    EXPECT_TRUE(import_printing(importer, output).empty());
    EXPECT_NE(output.find(c.message), std::string::npos) << output;
  }
}

TEST(ToolkitTextImport, ShortOrMissingFilesGiveNoSamples) {
  toolkit_waveform_import_t importer = text_importer(data_path("i_only.txt"));
  importer.set_separate_q_file_enable(true);
  importer.set_q_source_file_path(data_path("q_short.txt"));
  std::string output;
  EXPECT_TRUE(import_printing(importer, output).empty());
  EXPECT_NE(output.find("gives 50 I values but 49 Q values"), std::string::npos) << output;
  for (const std::string& path : {toolkit_test::data_folder(), std::string("/dev/null")}) {
    importer.set_q_source_file_path(path);
    EXPECT_TRUE(import_printing(importer, output).empty());
    EXPECT_NE(output.find("toolkit_text_column_reader_t::read_columns Report: Error: Failed to "
                          "open ascii/txt/dat file. " +
                          path + ": is a "),
              std::string::npos)
        << output;
  }
  testing::internal::CaptureStdout();
  EXPECT_FALSE(importer.set_ascii_file_path(toolkit_test::data_folder()));
  EXPECT_NE(testing::internal::GetCapturedStdout().find("count_lines Report"), std::string::npos);
  EXPECT_EQ(importer.get_number_of_points(), 0u);
}

}  // namespace

// MAT-files written by SciPy's savemat (plain and compressed) and hand-assembled ones: the
// variable list a page shows, and the imported samples after scaling.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "test_toolkit_fixture.h"
#include "toolkit/toolkit_waveform_import.h"

namespace {

using namespace nal;
using toolkit_test::data_path;

constexpr double quantum = 1.0 / 32767;

toolkit_waveform_import_t importer_of(const std::string& name, std::string* output = nullptr) {
  toolkit_waveform_import_t importer;
  testing::internal::CaptureStdout();
  importer.set_mat_file_path(data_path(name));
  const std::string printed = testing::internal::GetCapturedStdout();
  if (output != nullptr) {
    *output = printed;
  }
  return importer;
}

class ToolkitSavematFile : public testing::TestWithParam<const char*> {};

TEST_P(ToolkitSavematFile, ListsEveryVariableWithItsValues) {
  const toolkit_waveform_import_t importer = importer_of(GetParam());
  const auto expected = toolkit_test::expected_variables();
  const auto& list = importer.get_variable_list();
  ASSERT_EQ(list.size(), expected.size());
  for (std::size_t k = 0; k < list.size(); ++k) {
    SCOPED_TRACE(expected[k].name);
    EXPECT_EQ(list[k].name, expected[k].name);
    EXPECT_EQ(list[k].get_size_text(), expected[k].size_text);
    EXPECT_STREQ(list[k].get_kind_text(), expected[k].kind.c_str());
    lib_fp_data_arr_t values = list[k].real_data;
    for (const lib_iq_sample_t& sample : list[k].complex_data) {
      values.push_back(sample.real());
      values.push_back(sample.imag());
    }
    // Every type converts exactly: single to double included.
    EXPECT_EQ(values, expected[k].values);
  }
  // Row vectors count, the column vector and the 2x5 matrix do not.
  EXPECT_EQ(importer.get_number_of_points(), 20u);
}

TEST_P(ToolkitSavematFile, ImportsEachVariableScaledToAPeakOfOne) {
  toolkit_waveform_import_t importer = importer_of(GetParam());
  const auto expected = toolkit_test::expected_variables();
  for (uint32 k = 0; k < expected.size(); ++k) {
    SCOPED_TRACE(expected[k].name);
    importer.set_i_data_index(k);
    importer.set_q_data_index(k);
    testing::internal::CaptureStdout();
    ASSERT_TRUE(importer.import_waveform());
    testing::internal::GetCapturedStdout();
    const lib_fp_data_arr_t& values = expected[k].values;
    double peak = 0;
    for (const double value : values) {
      peak = std::max(peak, std::fabs(value));
    }
    const bool is_complex = expected[k].kind == "complex";
    const lib_iq_data_arr_t& samples = importer.get_iq_data();
    ASSERT_EQ(samples.size(), is_complex ? values.size() / 2 : values.size());
    for (std::size_t n = 0; n < samples.size(); ++n) {
      // A complex variable gives I and Q by itself; a real one chosen twice gives I = Q.
      const double i = is_complex ? values[2 * n] : values[n];
      const double q = is_complex ? values[2 * n + 1] : values[n];
      EXPECT_NEAR(samples[n].real(), i / peak, quantum) << n;
      EXPECT_NEAR(samples[n].imag(), q / peak, quantum) << n;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(PlainAndCompressed, ToolkitSavematFile,
                         testing::Values("plain.mat", "compressed.mat"));

TEST(ToolkitMatImport, ReadsBigEndianFilesAsLittleEndianOnes) {
  const toolkit_waveform_import_t little = importer_of("little.mat");
  const toolkit_waveform_import_t big = importer_of("big.mat");
  ASSERT_EQ(little.get_variable_list().size(), 3u);
  ASSERT_EQ(big.get_variable_list().size(), 3u);
  for (std::size_t k = 0; k < 3; ++k) {
    const toolkit_mat_variable_t& a = little.get_variable_list()[k];
    const toolkit_mat_variable_t& b = big.get_variable_list()[k];
    EXPECT_EQ(a.name, b.name);
    EXPECT_EQ(a.dimension_list, b.dimension_list);
    EXPECT_EQ(a.real_data, b.real_data);
    EXPECT_EQ(a.complex_data, b.complex_data);
  }
  EXPECT_EQ(big.get_variable_list()[1].name, "zipped");
  EXPECT_EQ(big.get_variable_list()[0].real_data,
            (lib_fp_data_arr_t{0.5, -1.25, 3.0, -0.125, 2.5, 1.0}));
  EXPECT_EQ(big.get_variable_list()[2].complex_data,
            (lib_iq_data_arr_t{{0.5, -0.125}, {-1.25, 2.5}, {3.0, 1.0}}));
}

TEST(ToolkitMatImport, KeepsTheSmallFormAndUnknownElementRules) {
  toolkit_waveform_import_t importer = importer_of("quirks.mat");
  const auto& list = importer.get_variable_list();
  ASSERT_EQ(list.size(), 4u);
  // 1.5f is 0x3FC00000; its small-form tag reads as type 4, two unsigned 16-bit values, which
  // no longer match the 1x1 dimensions (reported, kept).
  EXPECT_EQ(list[0].name, "one");
  EXPECT_EQ(list[0].real_data, (lib_fp_data_arr_t{0, 0x3FC0}));
  // The unknown element keeps its place as an empty record.
  EXPECT_FALSE(list[1].has_data());
  EXPECT_EQ(list[2].name, "after");
  EXPECT_EQ(importer.get_number_of_points(), 6u);
  // A column vector does not count towards the points but imports.
  importer.set_i_data_index(3);
  importer.set_q_data_index(2);
  testing::internal::CaptureStdout();
  ASSERT_TRUE(importer.import_waveform());
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(importer.get_sample_number(), 6u);
  EXPECT_NEAR(importer.get_iq_data()[2].real(), 1.0, 1e-12);
  // Choosing the empty record gives a message and no samples.
  importer.set_i_data_index(1);
  testing::internal::CaptureStdout();
  EXPECT_FALSE(importer.import_waveform());
  EXPECT_NE(testing::internal::GetCapturedStdout().find("holds no values"), std::string::npos);
  EXPECT_TRUE(importer.get_iq_data().empty());
}

TEST(ToolkitMatImport, ComplexVariableTakesBothPartsOrIsRefusedWithAMessage) {
  toolkit_waveform_import_t importer = importer_of("little.mat");
  std::vector<double> progress;
  importer.set_progress_callback([&progress](double percent) { progress.push_back(percent); });
  importer.set_i_data_index(2);
  // No variable at Q's index: the imaginary part gives Q.
  importer.set_q_data_index(7);
  ASSERT_TRUE(importer.import_waveform());
  const lib_iq_data_arr_t expected{{0.5 / 3, -0.125 / 3}, {-1.25 / 3, 2.5 / 3}, {1.0, 1.0 / 3}};
  ASSERT_EQ(importer.get_iq_data().size(), expected.size());
  for (std::size_t n = 0; n < expected.size(); ++n) {
    EXPECT_NEAR(std::abs(importer.get_iq_data()[n] - expected[n]), 0.0, 1e-12) << n;
  }
  EXPECT_EQ(progress, (std::vector<double>{33, 100}));
  // A complex I with another variable for Q is ambiguous; so is a complex Q.
  for (const auto& [i, q] : {std::pair<uint32, uint32>{2, 0}, {0, 2}}) {
    importer.set_i_data_index(i);
    importer.set_q_data_index(q);
    testing::internal::CaptureStdout();
    EXPECT_FALSE(importer.import_waveform());
    EXPECT_NE(testing::internal::GetCapturedStdout().find("'iq') of "), std::string::npos);
    EXPECT_TRUE(importer.get_iq_data().empty());
  }
  EXPECT_EQ(progress, (std::vector<double>{33, 100, 33, 33}));
}

TEST(ToolkitMatImport, OversamplesMirrorsAndTimesTheResult) {
  toolkit_waveform_import_t importer = importer_of("little.mat");
  importer.set_sample_rate(1e6);
  importer.set_oversampling_ratio(4);
  importer.set_mirror_spectrum_enable(true);
  importer.set_i_data_index(0);
  importer.set_q_data_index(1);
  ASSERT_TRUE(importer.import_waveform());
  EXPECT_EQ(importer.get_sample_number(), 24u);
  EXPECT_DOUBLE_EQ(importer.get_output_sample_rate(), 4e6);
  EXPECT_DOUBLE_EQ(importer.get_waveform_duration(), 6e-6);
  double peak = 0;
  for (const lib_iq_sample_t& sample : importer.get_iq_data()) {
    peak = std::max({peak, std::fabs(sample.real()), std::fabs(sample.imag())});
  }
  EXPECT_DOUBLE_EQ(peak, 1.0);
  // Mirrored: Q, reversed I, is negated. At sample 8 (input 2), I is 3.0 and Q -0.125.
  EXPECT_GT(importer.get_iq_data()[8].real(), 0.5);
  EXPECT_GT(importer.get_iq_data()[8].imag(), 0.0);
}

TEST(ToolkitMatImport, RefusesVersion73AndNonMatFilesNamingTheProblem) {
  for (const char* name : {"v73.mat", "hdf5.mat"}) {
    std::string output;
    const toolkit_waveform_import_t importer = importer_of(name, &output);
    EXPECT_TRUE(importer.get_variable_list().empty());
    EXPECT_NE(output.find("version 7.3 MAT-file (HDF5)"), std::string::npos) << output;
    EXPECT_NE(output.find("'-v7'"), std::string::npos) << output;
    EXPECT_NE(output.find(data_path(name)), std::string::npos) << output;
  }
  std::string output;
  importer_of("not_mat.mat", &output);
  EXPECT_NE(output.find("toolkit_mat_file_reader_t::read Report: 文件不是MATLAB文件\n"),
            std::string::npos);
  EXPECT_NE(output.find("Error: Failed to read .mat file."), std::string::npos);
}

}  // namespace

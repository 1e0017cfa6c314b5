#pragma once
// The files the import tests read, written once per test run by the generator script beside the
// tests (SciPy's savemat, numpy and hand-assembled MAT-files) into a fresh temporary folder.

#include <string>
#include <vector>

#include "lib/lib_types.h"

namespace toolkit_test {

// Folder holding the generated files; generates them on first use.
const std::string& data_folder();
std::string data_path(const std::string& name);
// Writes `text` into a new file of the data folder and returns its path.
std::string write_text_file(const std::string& name, const std::string& text);

// One variable as savemat was given it.
struct expected_variable_t {
  std::string name;
  std::string size_text;
  std::string kind;
  // Flat, column-major; complex values as real and imaginary pairs.
  nal::lib_fp_data_arr_t values;
};
std::vector<expected_variable_t> expected_variables();

}  // namespace toolkit_test

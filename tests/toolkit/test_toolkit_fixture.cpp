#include "test_toolkit_fixture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace toolkit_test {

namespace {

std::string created_folder;

void remove_created_folder() {
  std::error_code ignored;
  std::filesystem::remove_all(created_folder, ignored);
}

}  // namespace

const std::string& data_folder() {
  static const std::string folder = [] {
    char pattern[] = "/tmp/wavelume_toolkit_XXXXXX";
    const char* created = mkdtemp(pattern);
    if (created == nullptr) {
      ADD_FAILURE() << "cannot create a temporary folder";
      return std::string("/nonexistent");
    }
    created_folder = created;
    std::atexit(remove_created_folder);
    const std::string command =
        std::string("/usr/bin/python3 ") + WAVELUME_TOOLKIT_GENERATOR + " " + created;
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return std::string(created);
  }();
  return folder;
}

std::string data_path(const std::string& name) {
  return data_folder() + "/" + name;
}

std::string write_text_file(const std::string& name, const std::string& text) {
  const std::string path = data_path(name);
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

std::vector<expected_variable_t> expected_variables() {
  std::vector<expected_variable_t> variables;
  std::ifstream file(data_path("expected.txt"));
  for (std::string line; std::getline(file, line);) {
    std::istringstream fields(line);
    expected_variable_t variable;
    fields >> variable.name >> variable.size_text >> variable.kind;
    for (double value; fields >> value;) {
      variable.values.push_back(value);
    }
    variables.push_back(variable);
  }
  return variables;
}

}  // namespace toolkit_test

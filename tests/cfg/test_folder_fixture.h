#pragma once
// A fixture that gives each test an empty folder of its own, removed afterwards.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace wavelume_test {

class folder_fixture_t : public testing::Test {
 protected:
  void SetUp() override {
    _folder = std::filesystem::temp_directory_path() /
              ("wavelume_" + std::to_string(::getpid()) + "_" +
               testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() + "_" +
               testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(_folder);
  }
  void TearDown() override { std::filesystem::remove_all(_folder); }

  std::filesystem::path _folder;
};

}  // namespace wavelume_test

#pragma once
// The QtTest suites of this executable, run one after the other by test_main.cpp; each returns
// its count of failures.

namespace test_ui_download {

int run_add_new_resource_tests(int argc, char** argv);
int run_device_rows_tests(int argc, char** argv);
int run_download_to_simulator_tests(int argc, char** argv);

}  // namespace test_ui_download

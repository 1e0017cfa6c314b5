#include <QApplication>

#include "tests/ui/download/test_suites.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  int failures = 0;
  failures += test_ui_download::run_add_new_resource_tests(argc, argv);
  failures += test_ui_download::run_device_rows_tests(argc, argv);
  failures += test_ui_download::run_download_to_simulator_tests(argc, argv);
  return failures == 0 ? 0 : 1;
}

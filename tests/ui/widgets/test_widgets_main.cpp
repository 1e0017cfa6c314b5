// Runs every widget test class of this folder in one process.

#include <QApplication>
#include <QtTest>

#include "test_widget_classes.h"

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  int failures = 0;
  {
    test_double_spin_box_t test;
    failures += QTest::qExec(&test, argc, argv);
  }
  {
    test_pattern_editors_t test;
    failures += QTest::qExec(&test, argc, argv);
  }
  return failures == 0 ? 0 : 1;
}

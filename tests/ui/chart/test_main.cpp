// One executable for the chart tests: each group is a QtTest class of its own.

#include <QApplication>

int run_annotation_span_tests(int argc, char** argv);
int run_minmax_pyramid_tests(int argc, char** argv);
int run_plot_interaction_tests(int argc, char** argv);
int run_signal_view_tests(int argc, char** argv);

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  int failures = 0;
  failures += run_minmax_pyramid_tests(argc, argv);
  failures += run_plot_interaction_tests(argc, argv);
  failures += run_signal_view_tests(argc, argv);
  failures += run_annotation_span_tests(argc, argv);
  return failures == 0 ? 0 : 1;
}

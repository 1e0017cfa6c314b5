#pragma once
// A console reporter that also remembers each benchmark's items per second, so that a program
// can print the ratio of two benchmarks measured in the same run.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace wavelume_bench {

class bench_ratio_reporter_t : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const auto& run : runs) {
      const auto found = run.counters.find("items_per_second");
      if (found != run.counters.end()) {
        _rates[run.benchmark_name()] = found->second.value;
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }

  // Items per second of the first benchmark whose name begins with `prefix`, or 0. With
  // --benchmark_repetitions its median, the figure least moved by a noisy machine.
  double rate(const std::string& prefix) const {
    double first = 0.0;
    bool found = false;
    for (const auto& [name, value] : _rates) {
      if (name.rfind(prefix, 0) != 0) {
        continue;
      }
      if (ends_with(name, "_median")) {
        return value;
      }
      if (!found && !ends_with(name, "_mean") && !ends_with(name, "_stddev") &&
          !ends_with(name, "_cv")) {
        first = value;
        found = true;
      }
    }
    return first;
  }

 private:
  static bool ends_with(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
  }

  std::map<std::string, double> _rates;
};

// A line of the closing summary: numerator / denominator, both benchmark name prefixes.
struct bench_ratio_t {
  const char* label;
  const char* numerator;
  const char* denominator;
};

// Runs the registered benchmarks, then prints each rate in millions per second and the ratios.
inline int run_benchmarks_with_ratios(int argc, char** argv,
                                      const std::vector<bench_ratio_t>& ratios) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 1;
  }
  bench_ratio_reporter_t reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\nSummary (same process, same data):\n");
  for (const auto& ratio : ratios) {
    const double numerator = reporter.rate(ratio.numerator);
    const double denominator = reporter.rate(ratio.denominator);
    std::printf("  %-58s %9.2f M/s / %9.2f M/s = %6.2fx\n", ratio.label, numerator / 1e6,
                denominator / 1e6, denominator > 0.0 ? numerator / denominator : 0.0);
  }
  benchmark::Shutdown();
  return 0;
}

}  // namespace wavelume_bench

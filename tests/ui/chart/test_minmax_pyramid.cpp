// The min/max reduction against a brute-force scan of the same samples.

#include <QtTest>
#include <cmath>
#include <limits>
#include <random>

#include "ui/chart/ui_vchart_minmax_pyramid.h"

using nal::fp64;
using nal::ui_vchart_minmax_pyramid_t;

namespace {

struct reference_extent_t {
  fp64 min = std::numeric_limits<fp64>::infinity();
  fp64 max = -std::numeric_limits<fp64>::infinity();
};

reference_extent_t brute_force(const std::vector<fp64>& values, std::size_t begin,
                               std::size_t end) {
  reference_extent_t extent;
  for (std::size_t i = begin; i < end && i < values.size(); ++i) {
    if (std::isfinite(values[i])) {
      extent.min = std::min(extent.min, values[i]);
      extent.max = std::max(extent.max, values[i]);
    }
  }
  return extent;
}

// Noise with isolated spikes, NaN and infinities at random places.
std::vector<fp64> noisy_samples(std::size_t count, std::mt19937& random) {
  std::normal_distribution<fp64> noise(0.0, 1.0);
  std::uniform_int_distribution<std::size_t> place(0, count - 1);
  std::vector<fp64> values(count);
  for (fp64& v : values) {
    v = noise(random);
  }
  for (int k = 0; k < 40; ++k) {
    values[place(random)] = (k % 2 == 0 ? 1.0 : -1.0) * (50.0 + k);
  }
  values[place(random)] = std::nan("");
  values[place(random)] = std::numeric_limits<fp64>::infinity();
  values[place(random)] = -std::numeric_limits<fp64>::infinity();
  return values;
}

std::size_t clamp_ceil(fp64 position, std::size_t size) {
  const fp64 c = std::ceil(position);
  return c <= 0.0 ? 0 : std::min(size, static_cast<std::size_t>(c));
}

}  // namespace

class test_minmax_pyramid_t : public QObject {
  Q_OBJECT

 private slots:
  void extent_matches_brute_force();
  void columns_partition_and_match_brute_force();
  void single_spike_survives_every_zoom();
  void empty_and_non_finite_arrays();
};

void test_minmax_pyramid_t::extent_matches_brute_force() {
  std::mt19937 random(0);
  const std::vector<fp64> values = noisy_samples(300007, random);
  ui_vchart_minmax_pyramid_t pyramid;
  pyramid.assign(values);
  std::uniform_int_distribution<std::size_t> place(0, values.size());
  std::uniform_real_distribution<fp64> log_length(0.0, std::log(static_cast<fp64>(values.size())));
  for (int n = 0; n < 3000; ++n) {
    const std::size_t begin = place(random);
    const std::size_t end = begin + static_cast<std::size_t>(std::exp(log_length(random)));
    const reference_extent_t expected = brute_force(values, begin, end);
    const ui_vchart_minmax_pyramid_t::extent_t got = pyramid.extent(begin, end);
    QCOMPARE(got.min, expected.min);
    QCOMPARE(got.max, expected.max);
  }
}

void test_minmax_pyramid_t::columns_partition_and_match_brute_force() {
  std::mt19937 random(1);
  const std::vector<fp64> values = noisy_samples(1000003, random);
  ui_vchart_minmax_pyramid_t pyramid;
  pyramid.assign(values);
  const fp64 size = static_cast<fp64>(values.size());
  std::uniform_real_distribution<fp64> position(-0.1 * size, 1.1 * size);
  std::uniform_int_distribution<int> width(1, 1920);
  std::vector<ui_vchart_minmax_pyramid_t::column_t> columns;
  for (int n = 0; n < 60; ++n) {
    fp64 first = position(random);
    fp64 last = position(random);
    if (first > last) {
      std::swap(first, last);
    }
    if (n % 3 == 0) {  // zoomed in to a few samples per column
      last = first + width(random) * 3.7;
    }
    const int count = width(random);
    pyramid.reduce_columns(first, last, count, columns);
    QCOMPARE(static_cast<int>(columns.size()), count);
    QCOMPARE(columns.front().begin, clamp_ceil(first, values.size()));
    QCOMPARE(columns.back().end, clamp_ceil(last, values.size()));
    const fp64 w = (last - first) / count;
    for (int c = 0; c < count; ++c) {
      const auto& column = columns[static_cast<std::size_t>(c)];
      if (c > 0) {
        QCOMPARE(column.begin, columns[static_cast<std::size_t>(c - 1)].end);
      }
      // The samples of a column are the ones whose position falls within its pixel.
      if (column.end > column.begin) {
        QVERIFY(static_cast<fp64>(column.begin) >= first + c * w - 1e-6 * std::fabs(w));
        QVERIFY(static_cast<fp64>(column.end - 1) < first + (c + 1) * w + 1e-6 * std::fabs(w));
      }
      const reference_extent_t expected = brute_force(values, column.begin, column.end);
      QCOMPARE(column.extent.min, expected.min);
      QCOMPARE(column.extent.max, expected.max);
    }
  }
}

void test_minmax_pyramid_t::single_spike_survives_every_zoom() {
  std::vector<fp64> values(2000000, 0.0);
  const std::size_t spike = 1234567;
  values[spike] = 1.0;
  ui_vchart_minmax_pyramid_t pyramid;
  pyramid.assign(values);
  std::vector<ui_vchart_minmax_pyramid_t::column_t> columns;
  for (fp64 span = 10.0; span <= 4e6; span *= 1.7) {
    for (const fp64 offset : {0.0, 0.31, 0.5, 0.77}) {
      const fp64 first = static_cast<fp64>(spike) - span * offset - 0.25;
      pyramid.reduce_columns(first, first + span, 1600, columns);
      int hits = 0;
      for (const auto& column : columns) {
        if (column.begin <= spike && spike < column.end) {
          QCOMPARE(column.extent.max, 1.0);
          ++hits;
        } else if (column.end > column.begin) {
          QCOMPARE(column.extent.max, 0.0);
        }
      }
      QCOMPARE(hits, 1);
    }
  }
}

void test_minmax_pyramid_t::empty_and_non_finite_arrays() {
  ui_vchart_minmax_pyramid_t pyramid;
  std::vector<ui_vchart_minmax_pyramid_t::column_t> columns;
  pyramid.assign({});
  QVERIFY(pyramid.total().empty());
  pyramid.reduce_columns(0.0, 100.0, 10, columns);
  QCOMPARE(columns.size(), std::size_t{10});
  for (const auto& column : columns) {
    QVERIFY(column.extent.empty());
  }
  pyramid.assign(std::vector<fp64>(1000, std::nan("")));
  QVERIFY(pyramid.total().empty());
  pyramid.reduce_columns(5.0, 5.0, 10, columns);
  QVERIFY(columns.empty());
  pyramid.reduce_columns(0.0, std::nan(""), 10, columns);
  QVERIFY(columns.empty());
}

int run_minmax_pyramid_tests(int argc, char** argv) {
  test_minmax_pyramid_t tests;
  return QTest::qExec(&tests, argc, argv);
}

#include "test_minmax_pyramid.moc"

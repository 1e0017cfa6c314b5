#include "ui/chart/ui_vchart_minmax_pyramid.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace nal {
namespace {

constexpr std::size_t k_first_bucket = 16;
constexpr std::size_t k_level_factor = 4;
constexpr std::size_t k_coarsest_buckets = 2048;

ui_vchart_minmax_pyramid_t::extent_t empty_extent() {
  return {std::numeric_limits<fp64>::infinity(), -std::numeric_limits<fp64>::infinity()};
}

void merge(ui_vchart_minmax_pyramid_t::extent_t& into,
           const ui_vchart_minmax_pyramid_t::extent_t& other) {
  into.min = std::min(into.min, other.min);
  into.max = std::max(into.max, other.max);
}

std::size_t clamp_index(fp64 position, std::size_t size) {
  if (!(position > 0.0)) {
    return 0;
  }
  return position >= static_cast<fp64>(size) ? size : static_cast<std::size_t>(position);
}

}  // namespace

void ui_vchart_minmax_pyramid_t::assign(std::vector<fp64> values) {
  _values = std::move(values);
  _levels.clear();
  _bucket_sizes.clear();
  const std::size_t count = _values.size();
  if (count < 2 * k_first_bucket) {
    return;
  }
  std::vector<extent_t> level((count + k_first_bucket - 1) / k_first_bucket, empty_extent());
  for (std::size_t i = 0; i < count; ++i) {
    const fp64 v = _values[i];
    if (std::isfinite(v)) {
      extent_t& bucket = level[i / k_first_bucket];
      bucket.min = std::min(bucket.min, v);
      bucket.max = std::max(bucket.max, v);
    }
  }
  std::size_t bucket_size = k_first_bucket;
  while (true) {
    const std::size_t buckets = level.size();
    _levels.push_back(std::move(level));
    _bucket_sizes.push_back(bucket_size);
    if (buckets <= k_coarsest_buckets) {
      break;
    }
    const std::vector<extent_t>& finer = _levels.back();
    level.assign((buckets + k_level_factor - 1) / k_level_factor, empty_extent());
    for (std::size_t b = 0; b < buckets; ++b) {
      merge(level[b / k_level_factor], finer[b]);
    }
    bucket_size *= k_level_factor;
  }
}

ui_vchart_minmax_pyramid_t::extent_t ui_vchart_minmax_pyramid_t::extent(std::size_t begin,
                                                                        std::size_t end) const {
  extent_t result = empty_extent();
  end = std::min(end, _values.size());
  if (begin >= end) {
    return result;
  }
  int level = static_cast<int>(_levels.size()) - 1;
  while (level >= 0 && _bucket_sizes[level] > end - begin) {
    --level;
  }
  _extend(level, begin, end, result);
  return result;
}

// Whole buckets of `level` inside the range, the two ragged ends from the level below.
void ui_vchart_minmax_pyramid_t::_extend(int level, std::size_t begin, std::size_t end,
                                         extent_t& extent) const {
  if (begin >= end) {
    return;
  }
  if (level < 0) {
    for (std::size_t i = begin; i < end; ++i) {
      const fp64 v = _values[i];
      if (std::isfinite(v)) {
        extent.min = std::min(extent.min, v);
        extent.max = std::max(extent.max, v);
      }
    }
    return;
  }
  const std::size_t size = _bucket_sizes[level];
  const std::size_t first_whole = (begin + size - 1) / size;
  const std::size_t end_whole = end / size;
  if (first_whole >= end_whole) {
    _extend(level - 1, begin, end, extent);
    return;
  }
  _extend(level - 1, begin, first_whole * size, extent);
  const std::vector<extent_t>& buckets = _levels[level];
  for (std::size_t b = first_whole; b < end_whole; ++b) {
    merge(extent, buckets[b]);
  }
  _extend(level - 1, end_whole * size, end, extent);
}

void ui_vchart_minmax_pyramid_t::reduce_columns(fp64 first, fp64 last, int columns,
                                                std::vector<column_t>& out) const {
  out.clear();
  if (columns < 1 || !(last > first) || !std::isfinite(first) || !std::isfinite(last)) {
    return;
  }
  out.reserve(static_cast<std::size_t>(columns));
  const fp64 width = (last - first) / columns;
  // Sample i lies in column c when ceil(first + c w) <= i < ceil(first + (c + 1) w).
  std::size_t begin = clamp_index(std::ceil(first), _values.size());
  for (int c = 0; c < columns; ++c) {
    const fp64 edge = (c + 1 == columns) ? last : first + (c + 1) * width;
    const std::size_t end = std::max(begin, clamp_index(std::ceil(edge), _values.size()));
    out.push_back({begin, end, extent(begin, end)});
    begin = end;
  }
}

}  // namespace nal

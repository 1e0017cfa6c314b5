#pragma once
// The annotations of a waveform laid out on rows for drawing: each segment on the first row where
// it overlaps nothing placed before it, taken by start and, at equal starts, the longer first. A
// frame thus sits on the row above the fields it holds, and the fields of one frame share a row.
// No Qt; built on any thread, read by any number of readers.

#include <cstddef>
#include <string>
#include <vector>

#include "lib/lib_waveform_segment.h"

namespace nal {

class ui_vchart_span_rows_t {
 public:
  // Samples [begin, end) of the waveform, as sample positions.
  struct span_t {
    fp64 begin;
    fp64 end;
    std::string label;
  };
  // Nesting deeper than this is left out: a fifth row would hide too much of the signal.
  static constexpr int k_max_rows = 4;

  // Empty segments are left out.
  void assign(const lib_waveform_annotations_t& segments);

  bool empty() const { return _rows.empty(); }
  int row_count() const { return static_cast<int>(_rows.size()); }
  // Disjoint spans in ascending order, so their ends ascend too. `row` in [0, row_count()).
  const std::vector<span_t>& row(int row) const { return _rows[static_cast<std::size_t>(row)]; }
  // The first span of `row` that ends after `position`; the row's size when none does.
  std::size_t first_ending_after(int row, fp64 position) const;

 private:
  std::vector<std::vector<span_t>> _rows;
};

}  // namespace nal

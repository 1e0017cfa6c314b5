#include "ui/chart/ui_vchart_span_rows.h"

#include <algorithm>
#include <numeric>

namespace nal {

void ui_vchart_span_rows_t::assign(const lib_waveform_annotations_t& segments) {
  _rows.clear();
  std::vector<std::size_t> order(segments.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&segments](std::size_t a, std::size_t b) {
    const lib_waveform_segment_t& first = segments[a];
    const lib_waveform_segment_t& second = segments[b];
    return first.start != second.start ? first.start < second.start : first.count > second.count;
  });
  std::vector<uint64> row_ends;
  for (const std::size_t index : order) {
    const lib_waveform_segment_t& segment = segments[index];
    if (segment.count == 0) {
      continue;
    }
    const auto free_row = std::find_if(row_ends.begin(), row_ends.end(),
                                       [&segment](uint64 end) { return end <= segment.start; });
    const std::size_t row = static_cast<std::size_t>(free_row - row_ends.begin());
    if (row == static_cast<std::size_t>(k_max_rows)) {
      continue;
    }
    if (row == row_ends.size()) {
      row_ends.push_back(0);
      _rows.emplace_back();
    }
    // Saturated: a count reaching past the last index must not wrap round.
    const uint64 end = segment.start + std::min(segment.count, ~uint64{0} - segment.start);
    row_ends[row] = end;
    _rows[row].push_back({static_cast<fp64>(segment.start), static_cast<fp64>(end), segment.label});
  }
}

std::size_t ui_vchart_span_rows_t::first_ending_after(int row, fp64 position) const {
  const std::vector<span_t>& spans = this->row(row);
  return static_cast<std::size_t>(
      std::upper_bound(spans.begin(), spans.end(), position,
                       [](fp64 value, const span_t& span) { return value < span.end; }) -
      spans.begin());
}

}  // namespace nal

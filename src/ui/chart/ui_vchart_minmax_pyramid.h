#pragma once
// Minimum and maximum of a long real array over any index range, fast enough to reduce ten
// million samples to one segment per pixel column on every repaint. No Qt; not thread-safe for
// a writer, any number of readers may share a built pyramid.

#include <cstddef>
#include <vector>

#include "lib/lib_types.h"

namespace nal {

class ui_vchart_minmax_pyramid_t {
 public:
  // Finite values of one index range; min > max when the range holds none.
  struct extent_t {
    fp64 min;
    fp64 max;
    bool empty() const { return min > max; }
  };
  // One pixel column: samples [begin, end) and their extent.
  struct column_t {
    std::size_t begin;
    std::size_t end;
    extent_t extent;
  };

  // Takes the values and builds the levels: buckets of 16 samples, then each level 4 times
  // coarser, down to about 2048 buckets. Costs one pass and a sixth of the array's memory for
  // ten million values. NaN and infinities are kept in values() but never enter an extent.
  void assign(std::vector<fp64> values);

  const std::vector<fp64>& values() const { return _values; }
  std::size_t size() const { return _values.size(); }
  // The extent of all values.
  extent_t total() const { return extent(0, _values.size()); }

  // The exact extent of [begin, end), clipped to the array.
  extent_t extent(std::size_t begin, std::size_t end) const;

  // Splits the continuous index interval [first, last) into `columns` equal columns; column c
  // holds the samples i with first + c w <= i < first + (c + 1) w, w = (last - first) / columns,
  // so every sample in the interval belongs to exactly one column. Columns outside the array
  // come out empty. `out` is cleared first; nothing is produced for columns < 1 or last <= first.
  void reduce_columns(fp64 first, fp64 last, int columns, std::vector<column_t>& out) const;

 private:
  void _extend(int level, std::size_t begin, std::size_t end, extent_t& extent) const;

  std::vector<fp64> _values;
  // _levels[l][b] is the extent of samples [b B, (b + 1) B) with B = _bucket_sizes[l]; the last
  // bucket of a level may be partial.
  std::vector<std::vector<extent_t>> _levels;
  std::vector<std::size_t> _bucket_sizes;
};

}  // namespace nal

#pragma once
// A polyline through a few thousand points at most, with x ascending; non-finite points, and
// points at or below 0 on a logarithmic axis, break the line.

#include <vector>

#include "ui/chart/ui_vchart_item.h"

namespace nal {

class ui_vchart_xy_curve_item_t : public ui_vchart_item_t {
 public:
  // Pairs (x[i], y[i]); the longer array is cut to the shorter.
  void set_points(std::vector<fp64> x, std::vector<fp64> y);
  void set_dashed(bool dashed) { _dashed = dashed; }

  // See base class.
  bool data_bounds(ui_vchart_range_t& bounds) const override;
  void paint(QPainter& painter, const ui_vchart_view_box_t& box) const override;
  // The curve interpolated linearly at x.
  QString read_out(fp64 x, fp64 y, const ui_vchart_view_box_t& box) const override;

 private:
  std::vector<fp64> _x;
  std::vector<fp64> _y;
  bool _dashed = false;
};

}  // namespace nal

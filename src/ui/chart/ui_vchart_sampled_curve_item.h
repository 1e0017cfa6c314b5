#pragma once
// A curve of evenly spaced samples, x = x0 + i dx, of any length. Where a pixel column holds
// more than two samples it is drawn as one vertical bar from the column's minimum to its
// maximum, so every sample shows and painting costs the width of the plot, not the length.

#include "ui/chart/ui_vchart_item.h"
#include "ui/chart/ui_vchart_minmax_pyramid.h"

namespace nal {

class ui_vchart_sampled_curve_item_t : public ui_vchart_item_t {
 public:
  // Takes the samples with their reduction already built (it may be built on any thread).
  // `dx` must be positive; a bad spacing keeps 1.
  void set_samples(ui_vchart_minmax_pyramid_t samples, fp64 x0, fp64 dx);
  // Places the samples anew on the x axis, keeping them.
  void set_spacing(fp64 x0, fp64 dx);
  const ui_vchart_minmax_pyramid_t& samples() const { return _samples; }
  fp64 x_of(std::size_t index) const { return _x0 + static_cast<fp64>(index) * _dx; }

  // See base class.
  bool data_bounds(ui_vchart_range_t& bounds) const override;
  void paint(QPainter& painter, const ui_vchart_view_box_t& box) const override;
  QString read_out(fp64 x, fp64 y, const ui_vchart_view_box_t& box) const override;

 private:
  void _paint_polyline(QPainter& painter, const ui_vchart_view_box_t& box, fp64 first,
                       fp64 last) const;
  void _paint_columns(QPainter& painter, const ui_vchart_view_box_t& box, fp64 first, fp64 last,
                      int columns) const;

  ui_vchart_minmax_pyramid_t _samples;
  fp64 _x0 = 0.0;
  fp64 _dx = 1.0;
};

}  // namespace nal

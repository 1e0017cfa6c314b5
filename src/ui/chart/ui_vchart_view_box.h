#pragma once
// The data rectangle of a plot: its place in pixels, its two axes, the visible range and the full
// range that a reset returns to. Zoom and pan work in axis coordinates (log10 on a logarithmic
// axis), so both scales behave alike. No painting, no events: the plot widget drives it.

#include <QPointF>
#include <QRectF>
#include <algorithm>

#include "ui/chart/ui_vchart_axis.h"

namespace nal {

// A rectangle of axis coordinates.
struct ui_vchart_range_t {
  fp64 x_min = 0.0;
  fp64 x_max = 1.0;
  fp64 y_min = 0.0;
  fp64 y_max = 1.0;
  bool operator==(const ui_vchart_range_t& other) const {
    return x_min == other.x_min && x_max == other.x_max && y_min == other.y_min &&
           y_max == other.y_max;
  }
  bool operator!=(const ui_vchart_range_t& other) const { return !(*this == other); }
  // Grows to hold another range; the first one taken after `started` is false replaces it.
  void include(const ui_vchart_range_t& other, bool& started) {
    if (!started) {
      *this = other;
      started = true;
      return;
    }
    x_min = std::min(x_min, other.x_min);
    x_max = std::max(x_max, other.x_max);
    y_min = std::min(y_min, other.y_min);
    y_max = std::max(y_max, other.y_max);
  }
  void include(fp64 x, fp64 y, bool& started) { include({x, x, y, y}, started); }
};

class ui_vchart_view_box_t {
 public:
  ui_vchart_axis_t& x_axis() { return _x_axis; }
  const ui_vchart_axis_t& x_axis() const { return _x_axis; }
  ui_vchart_axis_t& y_axis() { return _y_axis; }
  const ui_vchart_axis_t& y_axis() const { return _y_axis; }

  void set_pixel_rect(const QRectF& rect);
  const QRectF& pixel_rect() const { return _pixels; }

  // With an equal aspect one unit spans as many pixels on x as on y; the visible range grows
  // on one axis to keep it (a constellation stays round).
  void set_equal_aspect(bool equal) { _equal_aspect = equal; }
  bool equal_aspect() const { return _equal_aspect; }

  // Data values (not axis coordinates); a degenerate or non-finite side is widened around its
  // centre. The visible range follows.
  void set_full_range(fp64 x_min, fp64 x_max, fp64 y_min, fp64 y_max);
  const ui_vchart_range_t& full() const { return _full; }
  // Axis coordinates. Refused (false) when not finite or narrower than the zoom limit.
  bool set_visible(const ui_vchart_range_t& range);
  const ui_vchart_range_t& visible() const { return _visible; }
  void reset() { set_visible(_full); }
  bool is_reset() const { return _visible == _full; }

  // Factors above 1 zoom in, around the data point under `anchor` (pixels).
  bool zoom(const QPointF& anchor, fp64 factor_x, fp64 factor_y);
  // Moves the content by a pixel offset, as a drag does.
  bool pan(const QPointF& offset);
  // Shows the data under a pixel rectangle; refused for a rectangle under 4 pixels a side.
  bool zoom_to(const QRectF& pixels);

  // Data values to pixels and back.
  QPointF to_pixel(fp64 x, fp64 y) const;
  fp64 x_to_pixel(fp64 x) const;
  fp64 y_to_pixel(fp64 y) const;
  fp64 x_at(fp64 pixel_x) const;
  fp64 y_at(fp64 pixel_y) const;
  // Data values at the two edges of the visible x range.
  fp64 visible_x_min() const { return _x_axis.from_axis(_visible.x_min); }
  fp64 visible_x_max() const { return _x_axis.from_axis(_visible.x_max); }

 private:
  ui_vchart_range_t _with_equal_aspect(ui_vchart_range_t range) const;

  ui_vchart_axis_t _x_axis;
  ui_vchart_axis_t _y_axis;
  QRectF _pixels{0.0, 0.0, 1.0, 1.0};
  bool _equal_aspect = false;
  ui_vchart_range_t _full;
  ui_vchart_range_t _visible;
};

}  // namespace nal

#include "ui/chart/ui_vchart_view_box.h"

#include <algorithm>
#include <cmath>

namespace nal {
namespace {

// Zooming stops where the span would lose relative precision, and zooming out far past the
// data serves no one.
constexpr fp64 k_min_relative_span = 1e-12;
constexpr fp64 k_max_zoom_out = 1000.0;

void widen_if_degenerate(fp64& min, fp64& max) {
  if (!std::isfinite(min) || !std::isfinite(max) || min > max) {
    min = 0.0;
    max = 1.0;
  } else if (max - min <= std::max(std::fabs(min), std::fabs(max)) * k_min_relative_span) {
    const fp64 half = std::max(std::fabs(min) * 0.5, 0.5);
    min -= half;
    max += half;
  }
}

bool span_allowed(fp64 min, fp64 max, fp64 full_span) {
  const fp64 span = max - min;
  return std::isfinite(min) && std::isfinite(max) && std::isfinite(span) &&
         span > std::max(std::fabs(min), std::fabs(max)) * k_min_relative_span && span > 1e-300 &&
         span <= full_span * k_max_zoom_out;
}

}  // namespace

void ui_vchart_view_box_t::set_pixel_rect(const QRectF& rect) {
  _pixels = rect.normalized();
  if (_pixels.width() < 1.0) {
    _pixels.setWidth(1.0);
  }
  if (_pixels.height() < 1.0) {
    _pixels.setHeight(1.0);
  }
  if (_equal_aspect) {
    _full = _with_equal_aspect(_full);
    _visible = _with_equal_aspect(_visible);
  }
}

void ui_vchart_view_box_t::set_full_range(fp64 x_min, fp64 x_max, fp64 y_min, fp64 y_max) {
  ui_vchart_range_t range{_x_axis.to_axis(x_min), _x_axis.to_axis(x_max), _y_axis.to_axis(y_min),
                          _y_axis.to_axis(y_max)};
  widen_if_degenerate(range.x_min, range.x_max);
  widen_if_degenerate(range.y_min, range.y_max);
  _full = _with_equal_aspect(range);
  _visible = _full;
}

bool ui_vchart_view_box_t::set_visible(const ui_vchart_range_t& range) {
  const ui_vchart_range_t adjusted = _with_equal_aspect(range);
  if (!span_allowed(adjusted.x_min, adjusted.x_max, _full.x_max - _full.x_min) ||
      !span_allowed(adjusted.y_min, adjusted.y_max, _full.y_max - _full.y_min)) {
    return false;
  }
  _visible = adjusted;
  return true;
}

ui_vchart_range_t ui_vchart_view_box_t::_with_equal_aspect(ui_vchart_range_t range) const {
  if (!_equal_aspect) {
    return range;
  }
  const fp64 x_per_pixel = (range.x_max - range.x_min) / _pixels.width();
  const fp64 y_per_pixel = (range.y_max - range.y_min) / _pixels.height();
  const fp64 per_pixel = std::max(x_per_pixel, y_per_pixel);
  const fp64 x_centre = 0.5 * (range.x_min + range.x_max);
  const fp64 y_centre = 0.5 * (range.y_min + range.y_max);
  const fp64 x_half = 0.5 * per_pixel * _pixels.width();
  const fp64 y_half = 0.5 * per_pixel * _pixels.height();
  return {x_centre - x_half, x_centre + x_half, y_centre - y_half, y_centre + y_half};
}

bool ui_vchart_view_box_t::zoom(const QPointF& anchor, fp64 factor_x, fp64 factor_y) {
  if (!(factor_x > 0.0) || !(factor_y > 0.0)) {
    return false;
  }
  const fp64 ax = _x_axis.to_axis(x_at(anchor.x()));
  const fp64 ay = _y_axis.to_axis(y_at(anchor.y()));
  ui_vchart_range_t range{
      ax - (ax - _visible.x_min) / factor_x, ax + (_visible.x_max - ax) / factor_x,
      ay - (ay - _visible.y_min) / factor_y, ay + (_visible.y_max - ay) / factor_y};
  return set_visible(range);
}

bool ui_vchart_view_box_t::pan(const QPointF& offset) {
  const fp64 dx = offset.x() * (_visible.x_max - _visible.x_min) / _pixels.width();
  const fp64 dy = offset.y() * (_visible.y_max - _visible.y_min) / _pixels.height();
  return set_visible(
      {_visible.x_min - dx, _visible.x_max - dx, _visible.y_min + dy, _visible.y_max + dy});
}

bool ui_vchart_view_box_t::zoom_to(const QRectF& pixels) {
  const QRectF rect = pixels.normalized();
  if (rect.width() < 4.0 || rect.height() < 4.0) {
    return false;
  }
  return set_visible({_x_axis.to_axis(x_at(rect.left())), _x_axis.to_axis(x_at(rect.right())),
                      _y_axis.to_axis(y_at(rect.bottom())), _y_axis.to_axis(y_at(rect.top()))});
}

fp64 ui_vchart_view_box_t::x_to_pixel(fp64 x) const {
  const fp64 t = (_x_axis.to_axis(x) - _visible.x_min) / (_visible.x_max - _visible.x_min);
  return _pixels.left() + t * _pixels.width();
}

fp64 ui_vchart_view_box_t::y_to_pixel(fp64 y) const {
  const fp64 t = (_y_axis.to_axis(y) - _visible.y_min) / (_visible.y_max - _visible.y_min);
  return _pixels.bottom() - t * _pixels.height();
}

QPointF ui_vchart_view_box_t::to_pixel(fp64 x, fp64 y) const {
  return {x_to_pixel(x), y_to_pixel(y)};
}

fp64 ui_vchart_view_box_t::x_at(fp64 pixel_x) const {
  const fp64 t = (pixel_x - _pixels.left()) / _pixels.width();
  return _x_axis.from_axis(_visible.x_min + t * (_visible.x_max - _visible.x_min));
}

fp64 ui_vchart_view_box_t::y_at(fp64 pixel_y) const {
  const fp64 t = (_pixels.bottom() - pixel_y) / _pixels.height();
  return _y_axis.from_axis(_visible.y_min + t * (_visible.y_max - _visible.y_min));
}

}  // namespace nal

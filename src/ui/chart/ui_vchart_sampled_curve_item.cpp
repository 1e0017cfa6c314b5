#include "ui/chart/ui_vchart_sampled_curve_item.h"

#include <QLineF>
#include <QPainter>
#include <QPolygonF>
#include <QVector>
#include <algorithm>
#include <cmath>

namespace nal {
namespace {

// Up to this many samples per column the curve is a polyline through the samples themselves.
constexpr fp64 k_polyline_samples_per_column = 2.0;
// From this many pixels per sample each sample gets a dot.
constexpr fp64 k_dot_pixels_per_sample = 8.0;

}  // namespace

void ui_vchart_sampled_curve_item_t::set_samples(ui_vchart_minmax_pyramid_t samples, fp64 x0,
                                                 fp64 dx) {
  _samples = std::move(samples);
  set_spacing(x0, dx);
}

void ui_vchart_sampled_curve_item_t::set_spacing(fp64 x0, fp64 dx) {
  _x0 = std::isfinite(x0) ? x0 : 0.0;
  _dx = (dx > 0.0 && std::isfinite(dx)) ? dx : 1.0;
}

bool ui_vchart_sampled_curve_item_t::data_bounds(ui_vchart_range_t& bounds) const {
  const ui_vchart_minmax_pyramid_t::extent_t extent = _samples.total();
  if (extent.empty()) {
    return false;
  }
  bounds = {_x0, _x0 + static_cast<fp64>(_samples.size() - 1) * _dx, extent.min, extent.max};
  return true;
}

void ui_vchart_sampled_curve_item_t::paint(QPainter& painter,
                                           const ui_vchart_view_box_t& box) const {
  if (_samples.size() == 0) {
    return;
  }
  const QRectF& rect = box.pixel_rect();
  const int columns = std::max(1, static_cast<int>(std::ceil(rect.width())));
  // Sample positions at the left and right edges of the data rectangle.
  const fp64 first = (box.visible_x_min() - _x0) / _dx;
  const fp64 last = (box.visible_x_max() - _x0) / _dx;
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(QPen(colour(), 0));
  if ((last - first) / columns <= k_polyline_samples_per_column) {
    _paint_polyline(painter, box, first, last);
  } else {
    _paint_columns(painter, box, first, last, columns);
  }
}

void ui_vchart_sampled_curve_item_t::_paint_polyline(QPainter& painter,
                                                     const ui_vchart_view_box_t& box, fp64 first,
                                                     fp64 last) const {
  const std::vector<fp64>& values = _samples.values();
  const fp64 size = static_cast<fp64>(values.size());
  const std::size_t begin =
      static_cast<std::size_t>(std::clamp(std::floor(first) - 1.0, 0.0, size));
  const std::size_t end = static_cast<std::size_t>(std::clamp(std::ceil(last) + 2.0, 0.0, size));
  const bool dots =
      box.pixel_rect().width() / std::max(last - first, 1e-300) >= k_dot_pixels_per_sample;
  QPolygonF run;
  for (std::size_t i = begin; i <= end; ++i) {
    // A non-finite sample ends a run; the next finite one starts another.
    if (i == end || !std::isfinite(values[i])) {
      painter.drawPolyline(run);
      run.clear();
      continue;
    }
    const QPointF point = box.to_pixel(_x0 + static_cast<fp64>(i) * _dx, values[i]);
    run.append(point);
    if (dots) {
      painter.drawRect(QRectF(point.x() - 1.5, point.y() - 1.5, 3.0, 3.0));
    }
  }
}

void ui_vchart_sampled_curve_item_t::_paint_columns(QPainter& painter,
                                                    const ui_vchart_view_box_t& box, fp64 first,
                                                    fp64 last, int columns) const {
  std::vector<ui_vchart_minmax_pyramid_t::column_t> reduced;
  _samples.reduce_columns(first, last, columns, reduced);
  const QRectF& rect = box.pixel_rect();
  const fp64 column_width = rect.width() / columns;
  QVector<QLineF> segments;
  segments.reserve(columns);
  ui_vchart_minmax_pyramid_t::extent_t previous{1.0, 0.0};
  for (int c = 0; c < columns; ++c) {
    const ui_vchart_minmax_pyramid_t::extent_t& extent = reduced[c].extent;
    if (extent.empty()) {
      previous = extent;
      continue;
    }
    // Reaching to the previous column's range joins the columns into one trace.
    fp64 low = extent.min;
    fp64 high = extent.max;
    if (!previous.empty()) {
      low = std::min(low, previous.max);
      high = std::max(high, previous.min);
    }
    const fp64 x = rect.left() + (c + 0.5) * column_width;
    const fp64 top = box.y_to_pixel(high);
    const fp64 bottom = std::max(box.y_to_pixel(low), top + 0.5);
    segments.append(QLineF(x, top, x, bottom));
    previous = extent;
  }
  painter.drawLines(segments);
}

QString ui_vchart_sampled_curve_item_t::read_out(fp64 x, fp64 /*y*/,
                                                 const ui_vchart_view_box_t& box) const {
  const fp64 position = std::round((x - _x0) / _dx);
  if (!(position >= 0.0) || position >= static_cast<fp64>(_samples.size())) {
    return QString();
  }
  const fp64 value = _samples.values()[static_cast<std::size_t>(position)];
  if (!std::isfinite(value)) {
    return QString();
  }
  const fp64 resolution = std::fabs(box.y_at(0.0) - box.y_at(1.0));
  return name() + QStringLiteral(" ") + box.y_axis().format_value(value, resolution);
}

}  // namespace nal

#include "ui/chart/ui_vchart_sampled_curve_item.h"

#include <QImage>
#include <QPainter>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <limits>

namespace nal {
namespace {

// Up to this many samples per column the curve is a polyline through the samples themselves.
constexpr fp64 k_polyline_samples_per_column = 2.0;
// From this many pixels per sample each sample gets a dot.
constexpr fp64 k_dot_pixels_per_sample = 8.0;

// Fills the narrow vertical bars of the reduced curve. The raster engine fills a rectangle one
// scanline call at a time, which for a thousand bars hundreds of pixels tall costs more than all
// the rest of a redraw. On an opaque colour over a 32-bit image the bars are gathered per pixel
// column instead and written row by row, in memory order, with a select the compiler vectorises.
class bar_filler_t {
 public:
  bar_filler_t(QPainter& painter, const QColor& colour) : _painter(painter), _colour(colour) {
    QImage* image = painter.device()->devType() == QInternal::Image
                        ? static_cast<QImage*>(painter.device())
                        : nullptr;
    const bool direct_format =
        image != nullptr &&
        (image->format() == QImage::Format_RGB32 || image->format() == QImage::Format_ARGB32 ||
         image->format() == QImage::Format_ARGB32_Premultiplied);
    if (direct_format && colour.alpha() == 255 &&
        painter.deviceTransform().type() <= QTransform::TxScale) {
      _image = image;
      _top.assign(static_cast<std::size_t>(image->width()), std::numeric_limits<int>::max());
      _bottom.assign(static_cast<std::size_t>(image->width()), std::numeric_limits<int>::min());
    }
  }

  void fill(const QRectF& bar) {
    if (_image == nullptr) {
      _painter.fillRect(bar, _colour);
      return;
    }
    const QRect pixels = _painter.deviceTransform().mapRect(bar).toAlignedRect() & _image->rect();
    for (int x = pixels.left(); x <= pixels.right(); ++x) {
      _top[x] = std::min(_top[x], pixels.top());
      _bottom[x] = std::max(_bottom[x], pixels.bottom());
    }
  }

  void flush() {
    if (_image == nullptr) {
      return;
    }
    const int width = _image->width();
    const int first_row = *std::min_element(_top.begin(), _top.end());
    const int last_row = *std::max_element(_bottom.begin(), _bottom.end());
    // Unsigned distance from the top: one comparison tells whether a row is inside the bar. An
    // empty column gets height 0 and a top no row reaches.
    std::vector<unsigned> height(_top.size(), 0u);
    for (int x = 0; x < width; ++x) {
      if (_top[x] <= _bottom[x]) {
        height[x] = static_cast<unsigned>(_bottom[x] - _top[x]);
      } else {
        _top[x] = std::numeric_limits<int>::max() / 2;
      }
    }
    const QRgb pixel = _colour.rgba();
    uchar* bits = _image->bits();
    const qsizetype stride = _image->bytesPerLine();
    for (int y = first_row; y <= last_row; ++y) {
      QRgb* line = reinterpret_cast<QRgb*>(bits + y * stride);
      for (int x = 0; x < width; ++x) {
        line[x] = static_cast<unsigned>(y - _top[x]) <= height[x] ? pixel : line[x];
      }
    }
  }

 private:
  QPainter& _painter;
  QColor _colour;
  QImage* _image = nullptr;
  std::vector<int> _top;
  std::vector<int> _bottom;
};

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
  bar_filler_t filler(painter, colour());
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
    // A filled one-pixel rectangle: the raster engine strokes a vertical line far slower.
    const fp64 left = std::floor(rect.left() + c * column_width);
    // Clamped to the rectangle: far outside it a pixel coordinate would overflow.
    const fp64 top =
        std::clamp(std::floor(box.y_to_pixel(high)), rect.top() - 1.0, rect.bottom() + 1.0);
    const fp64 bottom =
        std::max(std::clamp(std::ceil(box.y_to_pixel(low)), rect.top() - 1.0, rect.bottom() + 1.0),
                 top + 1.0);
    filler.fill(QRectF(left, top, std::max(1.0, std::ceil(column_width)), bottom - top));
    previous = extent;
  }
  filler.flush();
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

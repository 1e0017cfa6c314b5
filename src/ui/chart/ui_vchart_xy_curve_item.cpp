#include "ui/chart/ui_vchart_xy_curve_item.h"

#include <QPainter>
#include <QPolygonF>
#include <algorithm>
#include <cmath>

namespace nal {

void ui_vchart_xy_curve_item_t::set_points(std::vector<fp64> x, std::vector<fp64> y) {
  const std::size_t size = std::min(x.size(), y.size());
  x.resize(size);
  y.resize(size);
  _x = std::move(x);
  _y = std::move(y);
}

bool ui_vchart_xy_curve_item_t::data_bounds(ui_vchart_range_t& bounds) const {
  bool any = false;
  for (std::size_t i = 0; i < _x.size(); ++i) {
    if (std::isfinite(_x[i]) && std::isfinite(_y[i])) {
      bounds.include(_x[i], _y[i], any);
    }
  }
  return any;
}

void ui_vchart_xy_curve_item_t::paint(QPainter& painter, const ui_vchart_view_box_t& box) const {
  QPen pen(colour(), 1.5);
  if (_dashed) {
    pen.setStyle(Qt::DashLine);
  }
  painter.setPen(pen);
  painter.setRenderHint(QPainter::Antialiasing, true);
  const bool log_y = box.y_axis().log_scale();
  QPolygonF run;
  for (std::size_t i = 0; i <= _x.size(); ++i) {
    const bool drawable =
        i < _x.size() && std::isfinite(_x[i]) && std::isfinite(_y[i]) && (!log_y || _y[i] > 0.0);
    if (!drawable) {
      painter.drawPolyline(run);
      run.clear();
      continue;
    }
    run.append(box.to_pixel(_x[i], _y[i]));
  }
}

QString ui_vchart_xy_curve_item_t::read_out(fp64 x, fp64 /*y*/,
                                            const ui_vchart_view_box_t& box) const {
  const auto above = std::lower_bound(_x.begin(), _x.end(), x);
  if (above == _x.begin() || above == _x.end()) {
    return QString();
  }
  const std::size_t i = static_cast<std::size_t>(above - _x.begin());
  const fp64 t = (x - _x[i - 1]) / (_x[i] - _x[i - 1]);
  const fp64 value = _y[i - 1] + t * (_y[i] - _y[i - 1]);
  if (!std::isfinite(value)) {
    return QString();
  }
  const fp64 resolution = std::fabs(box.y_at(0.0) - box.y_at(1.0));
  return name() + QStringLiteral(" ") + box.y_axis().format_value(value, resolution);
}

}  // namespace nal

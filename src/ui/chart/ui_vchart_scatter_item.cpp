#include "ui/chart/ui_vchart_scatter_item.h"

#include <QPainter>
#include <cmath>

namespace nal {
namespace {

constexpr int k_max_labels_in_view = 64;
constexpr fp64 k_dot_radius = 3.5;
constexpr fp64 k_pick_distance = 8.0;

bool is_finite(const QPointF& point) {
  return std::isfinite(point.x()) && std::isfinite(point.y());
}

}  // namespace

void ui_vchart_scatter_item_t::set_points(std::vector<QPointF> points, QStringList labels) {
  _points = std::move(points);
  _labels = std::move(labels);
}

bool ui_vchart_scatter_item_t::data_bounds(ui_vchart_range_t& bounds) const {
  bool any = false;
  for (const QPointF& p : _points) {
    if (is_finite(p)) {
      bounds.include(p.x(), p.y(), any);
    }
  }
  return any;
}

void ui_vchart_scatter_item_t::paint(QPainter& painter, const ui_vchart_view_box_t& box) const {
  const QRectF& rect = box.pixel_rect();
  std::vector<std::size_t> in_view;
  for (std::size_t i = 0; i < _points.size(); ++i) {
    if (is_finite(_points[i]) && rect.contains(box.to_pixel(_points[i].x(), _points[i].y()))) {
      in_view.push_back(i);
    }
  }
  painter.setRenderHint(QPainter::Antialiasing, true);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour());
  for (const std::size_t i : in_view) {
    painter.drawEllipse(box.to_pixel(_points[i].x(), _points[i].y()), k_dot_radius, k_dot_radius);
  }
  if (static_cast<int>(in_view.size()) > k_max_labels_in_view) {
    return;
  }
  painter.setPen(colour().lighter(130));
  painter.setBrush(Qt::NoBrush);
  for (const std::size_t i : in_view) {
    if (static_cast<int>(i) < _labels.size()) {
      const QPointF at = box.to_pixel(_points[i].x(), _points[i].y());
      painter.drawText(at + QPointF(k_dot_radius + 2.0, -k_dot_radius - 2.0), _labels[i]);
    }
  }
}

QString ui_vchart_scatter_item_t::read_out(fp64 x, fp64 y, const ui_vchart_view_box_t& box) const {
  const QPointF cursor = box.to_pixel(x, y);
  fp64 best = k_pick_distance * k_pick_distance;
  int found = -1;
  for (std::size_t i = 0; i < _points.size(); ++i) {
    if (!is_finite(_points[i])) {
      continue;
    }
    const QPointF d = box.to_pixel(_points[i].x(), _points[i].y()) - cursor;
    const fp64 distance = d.x() * d.x() + d.y() * d.y();
    if (distance <= best) {
      best = distance;
      found = static_cast<int>(i);
    }
  }
  if (found < 0) {
    return QString();
  }
  const QPointF& p = _points[static_cast<std::size_t>(found)];
  const QString label = found < _labels.size() ? _labels[found] + QStringLiteral(" ") : QString();
  return label + QStringLiteral("(%1, %2)").arg(p.x(), 0, 'g', 6).arg(p.y(), 0, 'g', 6);
}

}  // namespace nal

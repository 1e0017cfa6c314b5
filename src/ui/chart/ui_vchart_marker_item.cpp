#include "ui/chart/ui_vchart_marker_item.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPolygonF>
#include <cmath>

namespace nal {

void ui_vchart_marker_item_t::set_marker(fp64 x, fp64 y, const QString& caption) {
  _x = x;
  _y = y;
  _caption = caption;
  _shown = std::isfinite(x) && std::isfinite(y);
}

bool ui_vchart_marker_item_t::data_bounds(ui_vchart_range_t& /*bounds*/) const {
  return false;
}

void ui_vchart_marker_item_t::paint(QPainter& painter, const ui_vchart_view_box_t& box) const {
  const QRectF& rect = box.pixel_rect();
  const QPointF at = box.to_pixel(_x, _y);
  if (!_shown || !rect.contains(at)) {
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing, true);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour());
  const QPolygonF triangle({at, at + QPointF(-5.0, -9.0), at + QPointF(5.0, -9.0)});
  painter.drawPolygon(triangle);
  // The caption sits above the tip and stays inside the data rectangle.
  const QFontMetricsF metrics(painter.font());
  QRectF text(0.0, 0.0, metrics.horizontalAdvance(_caption) + 8.0, metrics.height() + 2.0);
  text.moveCenter(at + QPointF(0.0, -12.0 - text.height() / 2.0));
  text.moveLeft(std::clamp(text.left(), rect.left() + 2.0, rect.right() - text.width() - 2.0));
  if (text.top() < rect.top() + 2.0) {
    text.moveTop(at.y() + 6.0);
  }
  painter.setBrush(QColor(0, 0, 0, 170));
  painter.setPen(colour());
  painter.drawRoundedRect(text, 3.0, 3.0);
  painter.drawText(text, Qt::AlignCenter, _caption);
}

QString ui_vchart_marker_item_t::read_out(fp64 /*x*/, fp64 /*y*/,
                                          const ui_vchart_view_box_t& /*box*/) const {
  return QString();
}

}  // namespace nal

#include "ui/chart/ui_vchart_frame_painter.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

namespace nal {
namespace {

constexpr int k_gap = 6;

int widest_label(const std::vector<ui_vchart_axis_t::tick_t>& ticks, const QFontMetrics& metrics) {
  int widest = 0;
  for (const ui_vchart_axis_t::tick_t& tick : ticks) {
    widest = std::max(widest, metrics.horizontalAdvance(tick.label));
  }
  return widest;
}

std::vector<ui_vchart_axis_t::tick_t> x_ticks(const ui_vchart_view_box_t& box) {
  const ui_vchart_range_t& v = box.visible();
  return box.x_axis().ticks(v.x_min, v.x_max, ui_vchart_frame_painter_t::x_tick_target(box));
}

std::vector<ui_vchart_axis_t::tick_t> y_ticks(const ui_vchart_view_box_t& box) {
  const ui_vchart_range_t& v = box.visible();
  return box.y_axis().ticks(v.y_min, v.y_max, ui_vchart_frame_painter_t::y_tick_target(box));
}

}  // namespace

int ui_vchart_frame_painter_t::x_tick_target(const ui_vchart_view_box_t& box) {
  return std::clamp(static_cast<int>(box.pixel_rect().width() / 120.0), 2, 12);
}

int ui_vchart_frame_painter_t::y_tick_target(const ui_vchart_view_box_t& box) {
  return std::clamp(static_cast<int>(box.pixel_rect().height() / 45.0), 2, 10);
}

QMargins ui_vchart_frame_painter_t::margins(const ui_vchart_view_box_t& box,
                                            const QFontMetrics& metrics) {
  const int line = metrics.height();
  const int half_x_label = widest_label(x_ticks(box), metrics) / 2;
  const int left = line + k_gap + widest_label(y_ticks(box), metrics) + k_gap + 4;
  return QMargins(std::max(left, half_x_label + 2), line + 2 * k_gap,
                  std::max(k_gap * 2, half_x_label + 2), 2 * line + 3 * k_gap);
}

void ui_vchart_frame_painter_t::paint_grid(QPainter& painter, const ui_vchart_view_box_t& box,
                                           const QPalette& palette) {
  const QRectF& rect = box.pixel_rect();
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(QPen(palette.color(QPalette::Mid), 0));
  for (const ui_vchart_axis_t::tick_t& tick : x_ticks(box)) {
    const qreal x = box.x_to_pixel(tick.value);
    painter.drawLine(QPointF(x, rect.top()), QPointF(x, rect.bottom()));
  }
  for (const ui_vchart_axis_t::tick_t& tick : y_ticks(box)) {
    const qreal y = box.y_to_pixel(tick.value);
    painter.drawLine(QPointF(rect.left(), y), QPointF(rect.right(), y));
  }
}

void ui_vchart_frame_painter_t::paint_axes(QPainter& painter, const ui_vchart_view_box_t& box,
                                           const QPalette& palette) {
  const QRectF& rect = box.pixel_rect();
  const QFontMetrics metrics(painter.font());
  const int line = metrics.height();
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(palette.color(QPalette::Mid).lighter(160), 0));
  painter.drawRect(rect);
  painter.setPen(palette.color(QPalette::WindowText));
  for (const ui_vchart_axis_t::tick_t& tick : x_ticks(box)) {
    const qreal x = box.x_to_pixel(tick.value);
    painter.drawLine(QPointF(x, rect.bottom()), QPointF(x, rect.bottom() + 4));
    const int width = metrics.horizontalAdvance(tick.label);
    painter.drawText(QRectF(x - width / 2.0 - 1, rect.bottom() + k_gap, width + 2, line),
                     Qt::AlignCenter, tick.label);
  }
  for (const ui_vchart_axis_t::tick_t& tick : y_ticks(box)) {
    const qreal y = box.y_to_pixel(tick.value);
    painter.drawLine(QPointF(rect.left() - 4, y), QPointF(rect.left(), y));
    painter.drawText(QRectF(0, y - line / 2.0, rect.left() - k_gap, line),
                     Qt::AlignRight | Qt::AlignVCenter, tick.label);
  }
  const QString x_title = box.x_axis().title();
  painter.drawText(QRectF(rect.left(), rect.bottom() + k_gap * 2 + line, rect.width(), line),
                   Qt::AlignCenter, x_title);
  painter.save();
  painter.translate(2, rect.center().y());
  painter.rotate(-90);
  painter.drawText(QRectF(-rect.height() / 2.0, 0, rect.height(), line), Qt::AlignCenter,
                   box.y_axis().title());
  painter.restore();
}

void ui_vchart_frame_painter_t::paint_legend(
    QPainter& painter, const ui_vchart_view_box_t& box,
    const std::vector<std::unique_ptr<ui_vchart_item_t>>& items, const QPalette& palette,
    qreal header_bottom) {
  const QRectF& rect = box.pixel_rect();
  const QFontMetrics metrics(painter.font());
  qreal x = rect.left();
  const qreal y = header_bottom - k_gap - metrics.height() / 2.0;
  for (const std::unique_ptr<ui_vchart_item_t>& item : items) {
    if (item->name().isEmpty()) {
      continue;
    }
    painter.setPen(QPen(item->colour(), 2));
    painter.drawLine(QPointF(x, y), QPointF(x + 16, y));
    painter.setPen(palette.color(QPalette::WindowText));
    painter.drawText(QPointF(x + 20, y + metrics.ascent() / 2.0 - 1), item->name());
    x += 20 + metrics.horizontalAdvance(item->name()) + 14;
  }
}

void ui_vchart_frame_painter_t::paint_cursor(QPainter& painter, const ui_vchart_view_box_t& box,
                                             const QPointF& cursor, const QString& read_out,
                                             const QPalette& palette, qreal header_bottom) {
  const QRectF& rect = box.pixel_rect();
  painter.setRenderHint(QPainter::Antialiasing, false);
  QColor colour = palette.color(QPalette::Highlight);
  colour.setAlpha(150);
  painter.setPen(QPen(colour, 0, Qt::DashLine));
  painter.drawLine(QPointF(cursor.x(), rect.top()), QPointF(cursor.x(), rect.bottom()));
  painter.drawLine(QPointF(rect.left(), cursor.y()), QPointF(rect.right(), cursor.y()));
  const QFontMetrics metrics(painter.font());
  painter.setPen(palette.color(QPalette::WindowText));
  painter.drawText(
      QRectF(rect.left(), header_bottom - k_gap - metrics.height(), rect.width(), metrics.height()),
      Qt::AlignRight | Qt::AlignVCenter, read_out);
}

}  // namespace nal

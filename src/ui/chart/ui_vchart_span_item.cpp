#include "ui/chart/ui_vchart_span_item.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace nal {
namespace {

constexpr fp64 k_label_padding = 4.0;
// Per row, two hues taken in turn so that neighbouring spans stay apart; none of them is the
// yellow of I or the cyan of Q.
const QColor k_row_hues[ui_vchart_span_rows_t::k_max_rows][2] = {
    {QColor(0x8f, 0x7c, 0xf7), QColor(0x5b, 0x8d, 0xef)},
    {QColor(0xf0, 0x8a, 0x5d), QColor(0xe0, 0x5f, 0x9c)},
    {QColor(0x5f, 0xc4, 0x7a), QColor(0x3f, 0xb8, 0x9a)},
    {QColor(0xa0, 0xa8, 0xb4), QColor(0x7d, 0x87, 0x94)},
};
// Under the data a tint the curves show through; in the lanes a strip the label reads on.
constexpr int k_tint_alpha = 22;
constexpr int k_start_line_alpha = 110;
constexpr int k_strip_alpha = 175;
const QColor k_label_colour(0xf4, 0xf6, 0xf8);

QColor hue(const ui_vchart_span_item_t::band_t& band, int alpha) {
  QColor colour = k_row_hues[band.row][band.span % 2];
  colour.setAlpha(alpha);
  return colour;
}

fp64 row_height(const QFontMetricsF& metrics) {
  return std::ceil(metrics.height()) + 4.0;
}

}  // namespace

void ui_vchart_span_item_t::set_spacing(fp64 x0, fp64 dx) {
  _x0 = std::isfinite(x0) ? x0 : 0.0;
  _dx = (dx > 0.0 && std::isfinite(dx)) ? dx : 1.0;
}

std::vector<ui_vchart_span_item_t::band_t> ui_vchart_span_item_t::bands(
    const ui_vchart_view_box_t& box, const QFontMetricsF& metrics) const {
  std::vector<band_t> out;
  if (!_shown) {
    return out;
  }
  const QRectF& rect = box.pixel_rect();
  const fp64 height = row_height(metrics);
  const fp64 lanes_top = rect.top() - lanes_height(metrics);
  const fp64 first = _position_of(box.visible_x_min());
  const fp64 last = _position_of(box.visible_x_max());
  for (int row = 0; row < _spans.row_count(); ++row) {
    const std::vector<ui_vchart_span_rows_t::span_t>& spans = _spans.row(row);
    std::size_t index = _spans.first_ending_after(row, first);
    while (index < spans.size() && spans[index].begin < last) {
      const ui_vchart_span_rows_t::span_t& span = spans[index];
      const fp64 left =
          std::clamp(box.x_to_pixel(_x0 + span.begin * _dx), rect.left(), rect.right());
      const fp64 right =
          std::clamp(box.x_to_pixel(_x0 + span.end * _dx), rect.left(), rect.right());
      const QRectF band(left, lanes_top + row * height, std::max(right - left, 1.0), height - 1.0);
      const fp64 label_width = metrics.horizontalAdvance(QString::fromStdString(span.label));
      out.push_back({band, row, index, label_width + 2.0 * k_label_padding <= band.width()});
      // Spans ending within a pixel of this band are drawn by it.
      const fp64 next = _position_of(box.x_at(band.right() + 1.0));
      index = std::max(index + 1, _spans.first_ending_after(row, next));
    }
  }
  return out;
}

bool ui_vchart_span_item_t::data_bounds(ui_vchart_range_t& /*bounds*/) const {
  return false;
}

void ui_vchart_span_item_t::paint(QPainter& painter, const ui_vchart_view_box_t& box) const {
  const QRectF& rect = box.pixel_rect();
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (const band_t& band : bands(box, QFontMetricsF(painter.font()))) {
    const QRectF below(band.rect.left(), rect.top(), band.rect.width(), rect.height());
    painter.fillRect(below, hue(band, k_tint_alpha));
    const bool starts_in_view = band.rect.left() > rect.left();
    if (starts_in_view) {
      painter.setPen(QPen(hue(band, k_start_line_alpha), 0));
      painter.drawLine(below.topLeft(), below.bottomLeft());
    }
  }
}

fp64 ui_vchart_span_item_t::lanes_height(const QFontMetricsF& metrics) const {
  return _shown ? _spans.row_count() * row_height(metrics) : 0.0;
}

void ui_vchart_span_item_t::paint_lanes(QPainter& painter, const ui_vchart_view_box_t& box) const {
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (const band_t& band : bands(box, QFontMetricsF(painter.font()))) {
    painter.fillRect(band.rect, hue(band, k_strip_alpha));
    if (band.labelled) {
      painter.setPen(k_label_colour);
      painter.drawText(band.rect.adjusted(k_label_padding, 0.0, -k_label_padding, 0.0),
                       Qt::AlignLeft | Qt::AlignVCenter,
                       QString::fromStdString(_spans.row(band.row)[band.span].label));
    }
  }
}

QString ui_vchart_span_item_t::read_out(fp64 x, fp64 /*y*/,
                                        const ui_vchart_view_box_t& /*box*/) const {
  if (!_shown) {
    return QString();
  }
  const fp64 position = _position_of(x);
  QStringList labels;
  for (int row = 0; row < _spans.row_count(); ++row) {
    const std::size_t index = _spans.first_ending_after(row, position);
    const std::vector<ui_vchart_span_rows_t::span_t>& spans = _spans.row(row);
    if (index < spans.size() && spans[index].begin <= position) {
      labels.append(QString::fromStdString(spans[index].label));
    }
  }
  return labels.join(QStringLiteral(" / "));
}

}  // namespace nal

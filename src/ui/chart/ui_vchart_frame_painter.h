#pragma once
// Paints what surrounds the data of a plot: grid, frame, tick labels, axis titles, legend and the
// cursor read-out, in the colours of the widget's palette (a style sheet can set them: Window
// for the surround, Base for the data rectangle, WindowText for text, Mid for the grid, Highlight
// for cursor and rubber band). Also measures the margins the labels need.

#include <QMargins>
#include <QPalette>
#include <QString>
#include <memory>
#include <vector>

#include "ui/chart/ui_vchart_item.h"

class QFontMetrics;

namespace nal {

class ui_vchart_frame_painter_t {
 public:
  // Margins around the data rectangle of a widget of `size` showing the box's visible range.
  static QMargins margins(const ui_vchart_view_box_t& box, const QFontMetrics& metrics);
  // Tick counts that fit the data rectangle.
  static int x_tick_target(const ui_vchart_view_box_t& box);
  static int y_tick_target(const ui_vchart_view_box_t& box);

  static void paint_grid(QPainter& painter, const ui_vchart_view_box_t& box,
                         const QPalette& palette);
  static void paint_axes(QPainter& painter, const ui_vchart_view_box_t& box,
                         const QPalette& palette);
  // The legend and the read-out stand in one line above `header_bottom`: the data rectangle's
  // top edge, or the top of the lanes above it.
  // The named items, each with a line of its colour, from the left.
  static void paint_legend(QPainter& painter, const ui_vchart_view_box_t& box,
                           const std::vector<std::unique_ptr<ui_vchart_item_t>>& items,
                           const QPalette& palette, qreal header_bottom);
  // Cross-hair through `cursor` and the read-out text at the right.
  static void paint_cursor(QPainter& painter, const ui_vchart_view_box_t& box,
                           const QPointF& cursor, const QString& read_out, const QPalette& palette,
                           qreal header_bottom);
};

}  // namespace nal

#pragma once
// Something drawn inside a plot's data rectangle: a curve, a set of points, a marker. Items
// paint in data coordinates through the view box; the plot clips them to the data rectangle.

#include <QColor>
#include <QString>

#include "ui/chart/ui_vchart_view_box.h"

class QFontMetricsF;
class QPainter;

namespace nal {

class ui_vchart_item_t {
 public:
  virtual ~ui_vchart_item_t() = default;

  // The name shown in the legend and the read-out; an item without one stays out of the legend.
  void set_name(const QString& name) { _name = name; }
  const QString& name() const { return _name; }
  void set_colour(const QColor& colour) { _colour = colour; }
  const QColor& colour() const { return _colour; }

  // The extent of the finite data, in data values; false when there is none. Auto range uses it.
  virtual bool data_bounds(ui_vchart_range_t& bounds) const = 0;
  virtual void paint(QPainter& painter, const ui_vchart_view_box_t& box) const = 0;
  // Lanes of the item's own between the legend and the data rectangle, sharing the x axis
  // (annotation strips): their height in pixels in the plot's font, 0 for none. One item of a
  // plot may have lanes; they end at the data rectangle's top edge.
  virtual fp64 lanes_height(const QFontMetricsF& /*metrics*/) const { return 0.0; }
  // Painted on the widget after the data, outside the cached data layer.
  virtual void paint_lanes(QPainter& /*painter*/, const ui_vchart_view_box_t& /*box*/) const {}
  // What the cursor at data point (x, y) reads from this item, or an empty text.
  virtual QString read_out(fp64 x, fp64 y, const ui_vchart_view_box_t& box) const = 0;

 private:
  QString _name;
  QColor _colour{Qt::white};
};

}  // namespace nal

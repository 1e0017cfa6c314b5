#pragma once
// Points, each with an optional label written beside it while few enough labels are in view
// to stay readable.

#include <QPointF>
#include <QStringList>
#include <vector>

#include "ui/chart/ui_vchart_item.h"

namespace nal {

class ui_vchart_scatter_item_t : public ui_vchart_item_t {
 public:
  // `labels` may be shorter than `points` (the rest go unlabelled). Non-finite points are kept
  // out of view and bounds.
  void set_points(std::vector<QPointF> points, QStringList labels);

  // See base class.
  bool data_bounds(ui_vchart_range_t& bounds) const override;
  void paint(QPainter& painter, const ui_vchart_view_box_t& box) const override;
  // The label and coordinates of the point nearest to the cursor, within a few pixels.
  QString read_out(fp64 x, fp64 y, const ui_vchart_view_box_t& box) const override;

 private:
  std::vector<QPointF> _points;
  QStringList _labels;
};

}  // namespace nal

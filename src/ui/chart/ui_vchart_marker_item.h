#pragma once
// A marked data point with a caption, such as the peak of a spectrum. It takes no part in the
// auto range and reads nothing under the cursor.

#include "ui/chart/ui_vchart_item.h"

namespace nal {

class ui_vchart_marker_item_t : public ui_vchart_item_t {
 public:
  // A non-finite position hides the marker.
  void set_marker(fp64 x, fp64 y, const QString& caption);
  const QString& caption() const { return _caption; }

  // See base class.
  bool data_bounds(ui_vchart_range_t& bounds) const override;
  void paint(QPainter& painter, const ui_vchart_view_box_t& box) const override;
  QString read_out(fp64 x, fp64 y, const ui_vchart_view_box_t& box) const override;

 private:
  fp64 _x = 0.0;
  fp64 _y = 0.0;
  QString _caption;
  bool _shown = false;
};

}  // namespace nal

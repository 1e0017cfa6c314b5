#pragma once
// A constellation: each symbol's point in the I/Q plane at equal scale on both axes, labelled
// with the symbol's bits (most significant first) while few enough labels are in view.

#include <QWidget>

#include "lib/lib_types.h"

namespace nal {

class ui_vchart_plot_widget_t;
class ui_vchart_scatter_item_t;

class ui_constellation_chart_t : public QWidget {
  Q_OBJECT

 public:
  explicit ui_constellation_chart_t(QWidget* parent = nullptr);

  // Shows `points`, labels as wide as the largest symbol needs. Non-finite points are left out.
  // May be called from any thread.
  void update_constellation(const lib_constellation_map_t& points);

  ui_vchart_plot_widget_t* plot() const { return _plot; }

 private:
  ui_vchart_plot_widget_t* _plot;
  ui_vchart_scatter_item_t* _points;
};

}  // namespace nal

#include "ui/chart/ui_constellation_chart.h"

#include "ui/chart/ui_vchart_plot_widget.h"
#include "ui/chart/ui_vchart_scatter_item.h"

namespace nal {

ui_constellation_chart_t::ui_constellation_chart_t(QWidget* parent)
    : QWidget(parent), _plot(ui_vchart_plot_widget_t::fill(this)) {
  setObjectName(QStringLiteral("ConstellationChart"));
  ui_vchart_view_box_t& box = _plot->view_box();
  box.set_equal_aspect(true);
  box.x_axis().set_title(QStringLiteral("I"));
  box.x_axis().set_engineering(false);
  box.y_axis().set_title(QStringLiteral("Q"));
  box.y_axis().set_engineering(false);
  _plot->set_auto_x_margin(0.08);
  _points = _plot->add_item<ui_vchart_scatter_item_t>();
  _points->set_colour(QColor(0xf2, 0xc8, 0x4b));
  _plot->data_changed();
}

void ui_constellation_chart_t::update_constellation(const lib_constellation_map_t& points) {
  int bits = 1;
  if (!points.empty()) {
    while (bits < 32 && (points.rbegin()->first >> bits) != 0) {
      ++bits;
    }
  }
  std::vector<QPointF> positions;
  QStringList labels;
  positions.reserve(points.size());
  for (const auto& [symbol, point] : points) {
    positions.emplace_back(point.real(), point.imag());
    labels.append(QString::number(symbol, 2).rightJustified(bits, QLatin1Char('0')));
  }
  ui_vchart_plot_widget_t::run_in_thread_of(this, [this, positions, labels] {
    _points->set_points(positions, labels);
    _plot->data_changed();
  });
}

}  // namespace nal

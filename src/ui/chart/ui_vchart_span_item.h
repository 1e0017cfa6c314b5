#pragma once
// Labelled stretches of an evenly sampled curve (x = x0 + i dx), such as the frames of a waveform
// and the fields inside them (see ui_vchart_span_rows_t). Under the data, each span tints the
// full height of the plot and marks its start with a line; in lanes above the data, each row of
// spans is a strip of bands, labelled where the label fits, so that no strip hides a sample.
// Spans narrower than a pixel merge with their neighbours, so drawing costs the plot's width
// times the rows, whatever the number of spans or samples. It takes no part in the auto range.

#include <QRectF>
#include <vector>

#include "ui/chart/ui_vchart_item.h"
#include "ui/chart/ui_vchart_span_rows.h"

class QFontMetricsF;

namespace nal {

class ui_vchart_span_item_t : public ui_vchart_item_t {
 public:
  // One band of a strip as drawn: its pixels, its row, the span of that row it starts with, and
  // whether the span's label fits in it.
  struct band_t {
    QRectF rect;
    int row;
    std::size_t span;
    bool labelled;
  };

  void set_spans(ui_vchart_span_rows_t spans) { _spans = std::move(spans); }
  const ui_vchart_span_rows_t& spans() const { return _spans; }
  // `dx` must be positive; a bad spacing keeps 1.
  void set_spacing(fp64 x0, fp64 dx);
  // Hidden spans draw nothing and read nothing.
  void set_shown(bool shown) { _shown = shown; }
  bool shown() const { return _shown; }

  // The bands in the visible range, row by row from the top lane, labelled in the font of
  // `metrics`; nothing while hidden.
  std::vector<band_t> bands(const ui_vchart_view_box_t& box, const QFontMetricsF& metrics) const;

  // See base class.
  bool data_bounds(ui_vchart_range_t& bounds) const override;
  void paint(QPainter& painter, const ui_vchart_view_box_t& box) const override;
  fp64 lanes_height(const QFontMetricsF& metrics) const override;
  void paint_lanes(QPainter& painter, const ui_vchart_view_box_t& box) const override;
  // The labels of the spans under x, outermost first.
  QString read_out(fp64 x, fp64 y, const ui_vchart_view_box_t& box) const override;

 private:
  fp64 _position_of(fp64 x) const { return (x - _x0) / _dx; }

  ui_vchart_span_rows_t _spans;
  fp64 _x0 = 0.0;
  fp64 _dx = 1.0;
  bool _shown = true;
};

}  // namespace nal

#pragma once
// The "I | Q" view: I and Q of a waveform against the sample index, or against time once a sample
// rate is known. Any length: ten million samples redraw in a few milliseconds.

#include <QWidget>

#include "lib/lib_types.h"

namespace nal {

class ui_vchart_plot_widget_t;
class ui_vchart_sampled_curve_item_t;

class ui_iq_waveform_view_t : public QWidget {
  Q_OBJECT

 public:
  explicit ui_iq_waveform_view_t(QWidget* parent = nullptr);

  // Shows `iqDataMap` at full range; an empty array leaves empty axes, non-finite samples are
  // left out. May be called from any thread: the copy and its reduction are made on the
  // caller's thread, the plot takes them on its own.
  void update_iq_wave(const lib_iq_data_arr_t& iqDataMap);
  // A rate above 0 Hz puts time on the x axis; 0 (the default) returns to the sample index.
  // GUI thread only.
  void set_sample_rate(fp64 sample_rate_hz);

  ui_vchart_plot_widget_t* plot() const { return _plot; }
  const ui_vchart_sampled_curve_item_t* in_phase() const { return _in_phase; }
  const ui_vchart_sampled_curve_item_t* quadrature() const { return _quadrature; }

 private:
  void _place_samples();

  ui_vchart_plot_widget_t* _plot;
  ui_vchart_sampled_curve_item_t* _in_phase;
  ui_vchart_sampled_curve_item_t* _quadrature;
  fp64 _sample_rate_hz = 0.0;
};

}  // namespace nal

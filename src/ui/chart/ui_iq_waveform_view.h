#pragma once
// The "I | Q" view: I and Q of a waveform against the sample index, or against time once a sample
// rate is known, with the waveform's annotations (frames, fields) as labelled spans that a check
// box above the plot shows or hides. Any length: ten million samples redraw in a few milliseconds.
//
// New data comes in two steps: prepare() reduces the samples on any thread, show_prepared() hands
// the result to the plot on the GUI thread and costs no more than moving it in.

#include <QWidget>

#include "lib/lib_waveform_segment.h"
#include "ui/chart/ui_vchart_minmax_pyramid.h"
#include "ui/chart/ui_vchart_span_rows.h"

class QCheckBox;

namespace nal {

class ui_vchart_plot_widget_t;
class ui_vchart_sampled_curve_item_t;
class ui_vchart_span_item_t;

class ui_iq_waveform_view_t : public QWidget {
  Q_OBJECT

 public:
  // What the view shows of one waveform, ready to be moved in.
  struct prepared_t {
    ui_vchart_minmax_pyramid_t in_phase;
    ui_vchart_minmax_pyramid_t quadrature;
    ui_vchart_span_rows_t annotations;
  };

  explicit ui_iq_waveform_view_t(QWidget* parent = nullptr);

  // Any thread, no Qt: I and Q of `samples` with their reductions, and the annotations laid out.
  static prepared_t prepare(const lib_iq_data_arr_t& samples,
                            const lib_waveform_annotations_t& annotations);
  // GUI thread. Shows the prepared waveform at full range; an empty one leaves empty axes,
  // non-finite samples are left out. The annotations check box shows only when there are some.
  void show_prepared(prepared_t prepared);
  // Prepares `iqDataMap`, without annotations, on the caller's thread and shows it on the view's
  // own: may be called from any thread.
  void update_iq_wave(const lib_iq_data_arr_t& iqDataMap);
  // A rate above 0 Hz puts time on the x axis; 0 (the default) returns to the sample index.
  // GUI thread only.
  void set_sample_rate(fp64 sample_rate_hz);

  ui_vchart_plot_widget_t* plot() const { return _plot; }
  const ui_vchart_sampled_curve_item_t* in_phase() const { return _in_phase; }
  const ui_vchart_sampled_curve_item_t* quadrature() const { return _quadrature; }
  const ui_vchart_span_item_t* annotations() const { return _annotations; }
  // Shows or hides the annotations; checked at first.
  QCheckBox* annotations_box() const { return _annotations_box; }

 private:
  void _place_samples();

  QWidget* _header;
  QCheckBox* _annotations_box;
  ui_vchart_plot_widget_t* _plot;
  ui_vchart_span_item_t* _annotations;
  ui_vchart_sampled_curve_item_t* _in_phase;
  ui_vchart_sampled_curve_item_t* _quadrature;
  fp64 _sample_rate_hz = 0.0;
};

}  // namespace nal

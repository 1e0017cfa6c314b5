#pragma once
// The instantaneous frequency of a waveform against time: the phase step from each sample to the
// next, times fs / (2 pi). Shows the deviation and the transitions of FSK signals.

#include <QWidget>

#include "lib/lib_types.h"

namespace nal {

class ui_vchart_plot_widget_t;
class ui_vchart_sampled_curve_item_t;

class ui_frequency_view_t : public QWidget {
  Q_OBJECT

 public:
  explicit ui_frequency_view_t(QWidget* parent = nullptr);

  // fs = samplePoints / waveformLength, as for the spectrum; without a usable rate the view
  // shows cycles per sample against the sample index. The step into sample n is drawn at n / fs.
  // Where a sample or its predecessor is not finite or has a magnitude not above 1e-12 the phase
  // is undefined and the curve has a gap. May be called from any thread.
  void update_frequency_wave(const lib_iq_data_arr_t& iqDataMap, fp64 waveformLength,
                             uint32 samplePoints);

  ui_vchart_plot_widget_t* plot() const { return _plot; }
  const ui_vchart_sampled_curve_item_t* frequency() const { return _frequency; }

 private:
  ui_vchart_plot_widget_t* _plot;
  ui_vchart_sampled_curve_item_t* _frequency;
};

}  // namespace nal

#pragma once
// The "Spectrum" view: the shifted spectrum of a waveform in dB against frequency, with a marker
// on its peak. A full-scale complex tone (amplitude 1) reads 0 dB.

#include <QWidget>

#include "lib/lib_types.h"

namespace nal {

class ui_vchart_plot_widget_t;
class ui_vchart_sampled_curve_item_t;
class ui_vchart_marker_item_t;

class ui_fft_spectrum_view_t : public QWidget {
  Q_OBJECT

 public:
  explicit ui_fft_spectrum_view_t(QWidget* parent = nullptr);

  // Bin k of the N-point transform, after the shift, is drawn at k fs / N - fs / 2 with
  // fs = samplePoints / waveformLength, at the level 20 log10(max(|X_k| / N, 1e-12)), never
  // below -200 dB. Non-finite samples count as 0. Without a usable rate (length or points
  // not above 0) the x axis shows normalised frequency, fs = 1. May be called from any thread:
  // the transform runs on the caller's thread, the plot takes the result on its own.
  void update_fft_wave(lib_iq_data_arr_t iqDataMap, fp64 waveformLength, uint32 samplePoints);

  ui_vchart_plot_widget_t* plot() const { return _plot; }
  // The levels in dB, bin by bin after the shift.
  const ui_vchart_sampled_curve_item_t* levels() const { return _levels; }
  // The caption of the peak marker, as shown.
  QString peak_caption() const;

 private:
  ui_vchart_plot_widget_t* _plot;
  ui_vchart_sampled_curve_item_t* _levels;
  ui_vchart_marker_item_t* _peak;
};

}  // namespace nal

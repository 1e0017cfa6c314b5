#pragma once
// The "Spectrum" view: the shifted spectrum of a waveform in dB against frequency, with a marker
// on its peak. A full-scale complex tone (amplitude 1) reads 0 dB.
//
// New data comes in two steps: prepare() transforms the samples on any thread, show_prepared()
// hands the levels to the plot on the GUI thread and costs no more than moving them in.

#include <QWidget>

#include "ui/chart/ui_vchart_minmax_pyramid.h"

namespace nal {

class ui_vchart_plot_widget_t;
class ui_vchart_sampled_curve_item_t;
class ui_vchart_marker_item_t;

class ui_fft_spectrum_view_t : public QWidget {
  Q_OBJECT

 public:
  // The spectrum of one waveform, ready to be moved in.
  struct prepared_t {
    // In dB, bin by bin after the shift.
    ui_vchart_minmax_pyramid_t levels;
    fp64 sample_rate = 1.0;
    bool rate_known = false;
    std::size_t peak = 0;
  };

  explicit ui_fft_spectrum_view_t(QWidget* parent = nullptr);

  // Any thread, no Qt. Bin k of the N-point transform, after the shift, is drawn at
  // k fs / N - fs / 2 with fs = samplePoints / waveformLength, at the level
  // 20 log10(max(|X_k| / N, 1e-12)), never below -200 dB. Non-finite samples count as 0 (they are
  // zeroed in `samples`, which is why it is taken by value). Without a usable rate (length or
  // points not above 0) the x axis shows normalised frequency, fs = 1.
  static prepared_t prepare(lib_iq_data_arr_t samples, fp64 waveformLength, uint32 samplePoints);
  // GUI thread. Shows the prepared spectrum at full range with its peak marked.
  void show_prepared(prepared_t prepared);
  // Prepares on the caller's thread and shows on the view's own: may be called from any thread.
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

#pragma once
// The CCDF view: the probability that a sample's power lies at least x dB above the mean power,
// on a logarithmic axis from 1 down to 1e-6, beside the curve of complex Gaussian noise,
// exp(-10^(x / 10)), as reference. The legend gives the peak-to-average power ratio.

#include <QWidget>

#include "lib/lib_types.h"

namespace nal {

class ui_vchart_plot_widget_t;
class ui_vchart_xy_curve_item_t;

class ui_ccdf_view_t : public QWidget {
  Q_OBJECT

 public:
  explicit ui_ccdf_view_t(QWidget* parent = nullptr);

  // Measures the CCDF of `samples` at steps of 0.01 dB from 0 dB up to 20 dB. Non-finite samples
  // are left out; an empty or silent array leaves the reference curve alone. May be called from
  // any thread: the statistics are taken on the caller's thread.
  void update_ccdf(const lib_iq_data_arr_t& samples);

  ui_vchart_plot_widget_t* plot() const { return _plot; }
  // The measured curve: x in dB above the mean, y the probability.
  const ui_vchart_xy_curve_item_t* measured() const { return _measured; }

 private:
  ui_vchart_plot_widget_t* _plot;
  ui_vchart_xy_curve_item_t* _measured;
};

}  // namespace nal

#include "ui/chart/ui_iq_waveform_view.h"

#include <memory>

#include "ui/chart/ui_vchart_plot_widget.h"
#include "ui/chart/ui_vchart_sampled_curve_item.h"

namespace nal {

ui_iq_waveform_view_t::ui_iq_waveform_view_t(QWidget* parent)
    : QWidget(parent), _plot(ui_vchart_plot_widget_t::fill(this)) {
  setObjectName(QStringLiteral("IqWaveformView"));
  _plot->view_box().y_axis().set_title(tr("Amplitude"));
  _plot->view_box().y_axis().set_engineering(false);
  _in_phase = _plot->add_item<ui_vchart_sampled_curve_item_t>();
  _in_phase->set_name(QStringLiteral("I"));
  _in_phase->set_colour(QColor(0xf2, 0xc8, 0x4b));
  _quadrature = _plot->add_item<ui_vchart_sampled_curve_item_t>();
  _quadrature->set_name(QStringLiteral("Q"));
  _quadrature->set_colour(QColor(0x3f, 0xd0, 0xe8));
  _place_samples();
}

void ui_iq_waveform_view_t::update_iq_wave(const lib_iq_data_arr_t& iqDataMap) {
  std::vector<fp64> in_phase(iqDataMap.size());
  std::vector<fp64> quadrature(iqDataMap.size());
  for (std::size_t i = 0; i < iqDataMap.size(); ++i) {
    in_phase[i] = iqDataMap[i].real();
    quadrature[i] = iqDataMap[i].imag();
  }
  auto reduced_i = std::make_shared<ui_vchart_minmax_pyramid_t>();
  auto reduced_q = std::make_shared<ui_vchart_minmax_pyramid_t>();
  reduced_i->assign(std::move(in_phase));
  reduced_q->assign(std::move(quadrature));
  ui_vchart_plot_widget_t::run_in_thread_of(this, [this, reduced_i, reduced_q] {
    _in_phase->set_samples(std::move(*reduced_i), 0.0, 1.0);
    _quadrature->set_samples(std::move(*reduced_q), 0.0, 1.0);
    _place_samples();
  });
}

void ui_iq_waveform_view_t::set_sample_rate(fp64 sample_rate_hz) {
  _sample_rate_hz = sample_rate_hz > 0.0 ? sample_rate_hz : 0.0;
  _place_samples();
}

void ui_iq_waveform_view_t::_place_samples() {
  ui_vchart_axis_t& x_axis = _plot->view_box().x_axis();
  const bool timed = _sample_rate_hz > 0.0;
  x_axis.set_title(timed ? tr("Time") : tr("Sample"));
  x_axis.set_unit(timed ? QStringLiteral("s") : QString());
  x_axis.set_engineering(timed);
  const fp64 spacing = timed ? 1.0 / _sample_rate_hz : 1.0;
  _in_phase->set_spacing(0.0, spacing);
  _quadrature->set_spacing(0.0, spacing);
  _plot->data_changed();
}

}  // namespace nal

#include "ui/chart/ui_frequency_view.h"

#include <cmath>
#include <memory>

#include "ui/chart/ui_vchart_plot_widget.h"
#include "ui/chart/ui_vchart_sampled_curve_item.h"

namespace nal {
namespace {

bool has_phase(const lib_iq_sample_t& sample) {
  return std::isfinite(sample.real()) && std::isfinite(sample.imag()) &&
         std::abs(sample) > common_lib::lib_tolerance;
}

}  // namespace

ui_frequency_view_t::ui_frequency_view_t(QWidget* parent)
    : QWidget(parent), _plot(ui_vchart_plot_widget_t::fill(this)) {
  setObjectName(QStringLiteral("FrequencyView"));
  _frequency = _plot->add_item<ui_vchart_sampled_curve_item_t>();
  _frequency->set_name(tr("Frequency"));
  _frequency->set_colour(QColor(0xc3, 0x9b, 0xf5));
  _plot->data_changed();
}

void ui_frequency_view_t::update_frequency_wave(const lib_iq_data_arr_t& iqDataMap,
                                                fp64 waveformLength, uint32 samplePoints) {
  const bool rate_known = waveformLength > common_lib::lib_tolerance && samplePoints > 0;
  const fp64 rate = rate_known ? samplePoints / waveformLength : 1.0;
  std::vector<fp64> frequency(iqDataMap.empty() ? 0 : iqDataMap.size() - 1);
  for (std::size_t n = 1; n < iqDataMap.size(); ++n) {
    const bool defined = has_phase(iqDataMap[n]) && has_phase(iqDataMap[n - 1]);
    frequency[n - 1] = defined ? std::arg(iqDataMap[n] * std::conj(iqDataMap[n - 1])) * rate /
                                     (2.0 * common_lib::lib_pi)
                               : std::nan("");
  }
  auto reduced = std::make_shared<ui_vchart_minmax_pyramid_t>();
  reduced->assign(std::move(frequency));
  ui_vchart_plot_widget_t::run_in_thread_of(this, [this, reduced, rate, rate_known] {
    ui_vchart_view_box_t& box = _plot->view_box();
    box.x_axis().set_title(rate_known ? tr("Time") : tr("Sample"));
    box.x_axis().set_unit(rate_known ? QStringLiteral("s") : QString());
    box.x_axis().set_engineering(rate_known);
    box.y_axis().set_title(rate_known ? tr("Frequency") : tr("Cycles per sample"));
    box.y_axis().set_unit(rate_known ? QStringLiteral("Hz") : QString());
    _frequency->set_samples(std::move(*reduced), 1.0 / rate, 1.0 / rate);
    _plot->data_changed();
  });
}

}  // namespace nal

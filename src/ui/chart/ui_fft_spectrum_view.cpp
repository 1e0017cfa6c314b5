#include "ui/chart/ui_fft_spectrum_view.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "lib/lib_fourier_transform.h"
#include "lib/lib_report.h"
#include "ui/chart/ui_vchart_marker_item.h"
#include "ui/chart/ui_vchart_plot_widget.h"
#include "ui/chart/ui_vchart_sampled_curve_item.h"
#include "ui/units/lib_unit.h"

namespace nal {
namespace {

constexpr fp64 k_magnitude_floor = 1e-12;

}  // namespace

ui_fft_spectrum_view_t::ui_fft_spectrum_view_t(QWidget* parent)
    : QWidget(parent), _plot(ui_vchart_plot_widget_t::fill(this)) {
  setObjectName(QStringLiteral("FftSpectrumView"));
  _plot->view_box().x_axis().set_title(tr("Frequency"));
  _plot->view_box().x_axis().set_unit(QStringLiteral("Hz"));
  _plot->view_box().y_axis().set_title(tr("Level"));
  _plot->view_box().y_axis().set_unit(QStringLiteral("dB"));
  _levels = _plot->add_item<ui_vchart_sampled_curve_item_t>();
  _levels->set_name(tr("Spectrum"));
  _levels->set_colour(QColor(0x7e, 0xe0, 0x81));
  _peak = _plot->add_item<ui_vchart_marker_item_t>();
  _peak->set_colour(QColor(0xff, 0x8a, 0x65));
}

QString ui_fft_spectrum_view_t::peak_caption() const {
  return _peak->caption();
}

ui_fft_spectrum_view_t::prepared_t ui_fft_spectrum_view_t::prepare(lib_iq_data_arr_t samples,
                                                                   fp64 waveformLength,
                                                                   uint32 samplePoints) {
  prepared_t result;
  result.rate_known = waveformLength > common_lib::lib_tolerance && samplePoints > 0;
  if (result.rate_known) {
    result.sample_rate = samplePoints / waveformLength;
  } else if (!samples.empty()) {
    common_lib::lib_report(
        "ui_fft_spectrum_view_t::prepare Report: No sample rate, frequency normalised!");
  }
  for (lib_iq_sample_t& sample : samples) {
    if (!std::isfinite(sample.real()) || !std::isfinite(sample.imag())) {
      sample = 0.0;
    }
  }
  lib_iq_data_arr_t bins;
  if (!samples.empty()) {
    common_lib::lib_fourier_transform_t::deal_fft(samples, bins);
    common_lib::lib_fourier_transform_t::deal_fft_shift(bins);
  }
  const fp64 count = static_cast<fp64>(bins.size());
  std::vector<fp64> levels(bins.size());
  for (std::size_t k = 0; k < bins.size(); ++k) {
    const fp64 magnitude = std::max(std::abs(bins[k]) / count, k_magnitude_floor);
    levels[k] = std::max(20.0 * std::log10(magnitude), common_lib::lib_level_floor_db);
    if (levels[k] > levels[result.peak]) {
      result.peak = k;
    }
  }
  result.levels.assign(std::move(levels));
  return result;
}

void ui_fft_spectrum_view_t::show_prepared(prepared_t prepared) {
  const fp64 fs = prepared.sample_rate;
  const std::size_t size = prepared.levels.size();
  ui_vchart_axis_t& x_axis = _plot->view_box().x_axis();
  x_axis.set_title(prepared.rate_known ? tr("Frequency") : tr("Normalised frequency"));
  x_axis.set_unit(prepared.rate_known ? QStringLiteral("Hz") : QString());
  const fp64 step = size > 0 ? fs / static_cast<fp64>(size) : 1.0;
  if (size > 0) {
    const fp64 x = static_cast<fp64>(prepared.peak) * step - fs / 2.0;
    const fp64 level = prepared.levels.values()[prepared.peak];
    _peak->set_marker(x, level,
                      tr("Peak %1, %2")
                          .arg(lib_unit_t::format(x, x_axis.unit()),
                               lib_unit_t::format(level, QStringLiteral("dB"), 4)));
  } else {
    _peak->set_marker(std::nan(""), 0.0, QString());
  }
  _levels->set_samples(std::move(prepared.levels), -fs / 2.0, step);
  _plot->data_changed();
}

void ui_fft_spectrum_view_t::update_fft_wave(lib_iq_data_arr_t iqDataMap, fp64 waveformLength,
                                             uint32 samplePoints) {
  auto prepared =
      std::make_shared<prepared_t>(prepare(std::move(iqDataMap), waveformLength, samplePoints));
  ui_vchart_plot_widget_t::run_in_thread_of(
      this, [this, prepared] { show_prepared(std::move(*prepared)); });
}

}  // namespace nal

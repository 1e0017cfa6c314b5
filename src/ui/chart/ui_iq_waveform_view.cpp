#include "ui/chart/ui_iq_waveform_view.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <memory>

#include "ui/chart/ui_vchart_plot_widget.h"
#include "ui/chart/ui_vchart_sampled_curve_item.h"
#include "ui/chart/ui_vchart_span_item.h"

namespace nal {

ui_iq_waveform_view_t::ui_iq_waveform_view_t(QWidget* parent)
    : QWidget(parent),
      _header(new QWidget(this)),
      _annotations_box(new QCheckBox(tr("Annotations"), _header)),
      _plot(new ui_vchart_plot_widget_t(this)) {
  setObjectName(QStringLiteral("IqWaveformView"));
  // The header continues the plot's dark face.
  _header->setPalette(_plot->palette());
  _header->setAutoFillBackground(true);
  _header->hide();
  _annotations_box->setChecked(true);
  _annotations_box->setToolTip(tr("Shade and label the frames and fields of the waveform"));
  auto* header_layout = new QHBoxLayout(_header);
  header_layout->setContentsMargins(8, 4, 8, 0);
  header_layout->addStretch(1);
  header_layout->addWidget(_annotations_box);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(_header);
  layout->addWidget(_plot, 1);

  _plot->view_box().y_axis().set_title(tr("Amplitude"));
  _plot->view_box().y_axis().set_engineering(false);
  // First, so that the curves are drawn over its tints.
  _annotations = _plot->add_item<ui_vchart_span_item_t>();
  _in_phase = _plot->add_item<ui_vchart_sampled_curve_item_t>();
  _in_phase->set_name(QStringLiteral("I"));
  _in_phase->set_colour(QColor(0xf2, 0xc8, 0x4b));
  _quadrature = _plot->add_item<ui_vchart_sampled_curve_item_t>();
  _quadrature->set_name(QStringLiteral("Q"));
  _quadrature->set_colour(QColor(0x3f, 0xd0, 0xe8));
  connect(_annotations_box, &QCheckBox::toggled, this, [this](bool shown) {
    _annotations->set_shown(shown);
    _plot->items_changed();
  });
  _place_samples();
}

ui_iq_waveform_view_t::prepared_t ui_iq_waveform_view_t::prepare(
    const lib_iq_data_arr_t& samples, const lib_waveform_annotations_t& annotations) {
  std::vector<fp64> in_phase(samples.size());
  std::vector<fp64> quadrature(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) {
    in_phase[i] = samples[i].real();
    quadrature[i] = samples[i].imag();
  }
  prepared_t prepared;
  prepared.in_phase.assign(std::move(in_phase));
  prepared.quadrature.assign(std::move(quadrature));
  prepared.annotations.assign(annotations);
  return prepared;
}

void ui_iq_waveform_view_t::show_prepared(prepared_t prepared) {
  _header->setVisible(!prepared.annotations.empty());
  _in_phase->set_samples(std::move(prepared.in_phase), 0.0, 1.0);
  _quadrature->set_samples(std::move(prepared.quadrature), 0.0, 1.0);
  _annotations->set_spans(std::move(prepared.annotations));
  _place_samples();
}

void ui_iq_waveform_view_t::update_iq_wave(const lib_iq_data_arr_t& iqDataMap) {
  auto prepared = std::make_shared<prepared_t>(prepare(iqDataMap, {}));
  ui_vchart_plot_widget_t::run_in_thread_of(
      this, [this, prepared] { show_prepared(std::move(*prepared)); });
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
  _annotations->set_spacing(0.0, spacing);
  _plot->data_changed();
}

}  // namespace nal

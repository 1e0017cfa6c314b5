#include "ui/chart/ui_ccdf_view.h"

#include <cmath>
#include <memory>

#include "ui/chart/ui_vchart_plot_widget.h"
#include "ui/chart/ui_vchart_xy_curve_item.h"
#include "ui/units/lib_unit.h"

namespace nal {
namespace {

constexpr fp64 k_step_db = 0.01;
constexpr fp64 k_rounding_db = 1e-9;
constexpr fp64 k_lowest_probability = 1e-6;
// Where the Gaussian reference falls below the lowest probability shown.
constexpr fp64 k_reference_end_db = 12.0;

struct ccdf_curve_t {
  std::vector<fp64> x_db;
  std::vector<fp64> probability;
  fp64 peak_db = 0.0;
};

// Counts per 0.01 dB step of power above the mean, summed from the top: the fraction of samples
// at or above each step.
ccdf_curve_t measure(const lib_iq_data_arr_t& samples) {
  ccdf_curve_t curve;
  std::vector<fp64> powers;
  powers.reserve(samples.size());
  fp64 total = 0.0;
  for (const lib_iq_sample_t& sample : samples) {
    const fp64 power = std::norm(sample);
    if (std::isfinite(power)) {
      powers.push_back(power);
      total += power;
    }
  }
  const fp64 mean = powers.empty() ? 0.0 : total / static_cast<fp64>(powers.size());
  if (!(mean > common_lib::lib_tolerance) || !std::isfinite(mean)) {
    return curve;
  }
  std::vector<std::size_t> counts;
  for (const fp64 power : powers) {
    // A constant envelope sits at the mean give or take rounding; it belongs at 0 dB.
    const fp64 db = 10.0 * std::log10(power / mean);
    if (db >= -k_rounding_db) {
      const std::size_t step = static_cast<std::size_t>(std::floor(std::max(db, 0.0) / k_step_db));
      if (step >= counts.size()) {
        counts.resize(step + 1, 0);
      }
      ++counts[step];
      curve.peak_db = std::max(curve.peak_db, db);
    }
  }
  std::size_t at_or_above = 0;
  curve.x_db.resize(counts.size());
  curve.probability.resize(counts.size());
  for (std::size_t step = counts.size(); step-- > 0;) {
    at_or_above += counts[step];
    curve.x_db[step] = static_cast<fp64>(step) * k_step_db;
    curve.probability[step] = static_cast<fp64>(at_or_above) / static_cast<fp64>(powers.size());
  }
  return curve;
}

}  // namespace

ui_ccdf_view_t::ui_ccdf_view_t(QWidget* parent)
    : QWidget(parent), _plot(ui_vchart_plot_widget_t::fill(this)) {
  setObjectName(QStringLiteral("CcdfView"));
  ui_vchart_view_box_t& box = _plot->view_box();
  box.x_axis().set_title(tr("Power above average"));
  box.x_axis().set_unit(QStringLiteral("dB"));
  box.y_axis().set_title(tr("Probability"));
  box.y_axis().set_log_scale(true);
  _plot->set_auto_y_range(k_lowest_probability, 1.0);

  ui_vchart_xy_curve_item_t* reference = _plot->add_item<ui_vchart_xy_curve_item_t>();
  reference->set_name(tr("Gaussian"));
  reference->set_colour(QColor(0x9a, 0xa4, 0xb0));
  reference->set_dashed(true);
  std::vector<fp64> x;
  std::vector<fp64> y;
  for (fp64 db = 0.0; db <= k_reference_end_db + 1e-9; db += 0.05) {
    x.push_back(db);
    y.push_back(std::exp(-std::pow(10.0, db / 10.0)));
  }
  reference->set_points(std::move(x), std::move(y));
  _measured = _plot->add_item<ui_vchart_xy_curve_item_t>();
  _measured->set_name(tr("Signal"));
  _measured->set_colour(QColor(0xf2, 0xc8, 0x4b));
  _plot->data_changed();
}

void ui_ccdf_view_t::update_ccdf(const lib_iq_data_arr_t& samples) {
  auto curve = std::make_shared<ccdf_curve_t>(measure(samples));
  ui_vchart_plot_widget_t::run_in_thread_of(this, [this, curve] {
    const bool measured = !curve->x_db.empty();
    _measured->set_name(
        measured
            ? tr("Signal, PAPR %1").arg(lib_unit_t::format(curve->peak_db, QStringLiteral("dB"), 4))
            : tr("Signal"));
    _measured->set_points(std::move(curve->x_db), std::move(curve->probability));
    _plot->data_changed();
  });
}

}  // namespace nal

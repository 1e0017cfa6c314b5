#include "ui/chart/ui_ccdf_view.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>

#include "lib/lib_ccdf_calculator.h"
#include "lib/plib.h"
#include "ui/chart/ui_vchart_plot_widget.h"
#include "ui/chart/ui_vchart_xy_curve_item.h"
#include "ui/units/lib_unit.h"

namespace nal {
namespace {

constexpr fp64 k_lowest_probability = 1e-6;
// Where the Gaussian reference falls below the lowest probability shown.
constexpr fp64 k_reference_end_db = 12.0;

struct ccdf_curve_t {
  std::vector<fp64> x_db;
  std::vector<fp64> probability;
  fp64 peak_db = 0.0;
};

// Non-finite samples are left out rather than spoiling the rms of the rest; silence has no rms to
// compare with and gives no curve. Points of probability 0 have no place on a logarithmic axis.
ccdf_curve_t measure(const lib_iq_data_arr_t& samples) {
  using common_lib::lib_ccdf_calculator_t;
  ccdf_curve_t curve;
  lib_iq_data_arr_t finite;
  finite.reserve(samples.size());
  std::copy_if(samples.begin(), samples.end(), std::back_inserter(finite),
               [](const lib_iq_sample_t& s) { return std::isfinite(std::norm(s)); });
  if (finite.empty() ||
      common_lib::plib_t::get_complex_array_rms(finite) < common_lib::lib_tolerance) {
    return curve;
  }
  lib_fp_data_arr_t ccdf;
  lib_fp_data_arr_t statistics;
  lib_ccdf_calculator_t::calculate_ccdf_data(finite, ccdf);
  lib_ccdf_calculator_t::get_ccdf_statistics(ccdf, finite, statistics);
  const fp64 step_db = lib_ccdf_calculator_t::default_range_db /
                       static_cast<fp64>(lib_ccdf_calculator_t::default_point_count - 1);
  for (std::size_t j = 0; j < ccdf.size() && ccdf[j] > 0.0; ++j) {
    curve.x_db.push_back(static_cast<fp64>(j) * step_db);
    curve.probability.push_back(ccdf[j]);
  }
  curve.peak_db = statistics.back();
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

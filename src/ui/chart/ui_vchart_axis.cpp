#include "ui/chart/ui_vchart_axis.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ui/units/lib_unit.h"

namespace nal {
namespace {

// Digits that tell apart two values `resolution` apart at the size of `magnitude`.
int digits_for(fp64 magnitude, fp64 resolution) {
  if (!(magnitude > 0.0) || !(resolution > 0.0)) {
    return 3;
  }
  const int digits =
      static_cast<int>(std::floor(std::log10(magnitude)) - std::floor(std::log10(resolution))) + 1;
  return std::clamp(digits, 1, 15);
}

}  // namespace

fp64 ui_vchart_axis_t::to_axis(fp64 value) const {
  if (!_log_scale) {
    return value;
  }
  return std::log10(std::max(value, std::numeric_limits<fp64>::min()));
}

fp64 ui_vchart_axis_t::from_axis(fp64 coordinate) const {
  return _log_scale ? std::pow(10.0, coordinate) : coordinate;
}

fp64 ui_vchart_axis_t::nice_step(fp64 span, int target) {
  if (!(span > 0.0) || !std::isfinite(span)) {
    return 0.0;
  }
  const fp64 raw = span / std::max(target, 1);
  const fp64 decade = std::pow(10.0, std::floor(std::log10(raw)));
  for (const fp64 factor : {1.0, 2.0, 5.0, 10.0}) {
    if (factor * decade >= raw * (1.0 - 1e-12)) {
      return factor * decade;
    }
  }
  return 10.0 * decade;
}

std::vector<ui_vchart_axis_t::tick_t> ui_vchart_axis_t::ticks(fp64 min, fp64 max,
                                                              int target) const {
  if (!(max > min) || !std::isfinite(min) || !std::isfinite(max)) {
    return {};
  }
  return _log_scale ? _decade_ticks(min, max, target) : _linear_ticks(min, max, target);
}

std::vector<ui_vchart_axis_t::tick_t> ui_vchart_axis_t::_linear_ticks(fp64 min, fp64 max,
                                                                      int target) const {
  const fp64 step = nice_step(max - min, target);
  std::vector<tick_t> result;
  if (!(step > 0.0)) {
    return result;
  }
  for (fp64 k = std::ceil(min / step); k * step <= max; k += 1.0) {
    // k * step rather than a running sum: no drift, and 0 stays exactly 0.
    const fp64 value = k * step + 0.0;  // + 0.0 turns -0 into 0
    result.push_back({value, _linear_label(value, step)});
    if (result.size() > 1000) {
      break;
    }
  }
  return result;
}

std::vector<ui_vchart_axis_t::tick_t> ui_vchart_axis_t::_decade_ticks(fp64 min, fp64 max,
                                                                      int target) const {
  const fp64 stride = std::max(1.0, std::ceil((max - min) / std::max(target, 1)));
  std::vector<tick_t> result;
  for (fp64 decade = std::ceil(min / stride) * stride; decade <= max; decade += stride) {
    const fp64 value = std::pow(10.0, decade);
    const QString number =
        decade >= -2.0 ? QString::number(value) : QStringLiteral("1e") + QString::number(decade);
    result.push_back({value, _unit.isEmpty() ? number : number + QLatin1Char(' ') + _unit});
    if (result.size() > 1000) {
      break;
    }
  }
  return result;
}

QString ui_vchart_axis_t::format_value(fp64 value, fp64 resolution) const {
  if (_log_scale) {
    return QString::number(value, 'g', 4) +
           (_unit.isEmpty() ? QString() : QLatin1Char(' ') + _unit);
  }
  return _linear_label(value, resolution);
}

QString ui_vchart_axis_t::_linear_label(fp64 value, fp64 resolution) const {
  if (_engineering) {
    return lib_unit_t::format(value, _unit, digits_for(std::fabs(value), resolution));
  }
  const int decimals =
      resolution > 0.0 ? std::clamp(static_cast<int>(-std::floor(std::log10(resolution))), 0, 12)
                       : 3;
  const QString number = QString::number(value, 'f', decimals);
  return _unit.isEmpty() ? number : number + QLatin1Char(' ') + _unit;
}

}  // namespace nal

#pragma once
// One axis of a plot: title, unit, linear or logarithmic scale, and the ticks for a visible
// range at steps of 1, 2 or 5 times a power of ten, labelled with engineering prefixes.

#include <QString>
#include <vector>

#include "lib/lib_types.h"

namespace nal {

class ui_vchart_axis_t {
 public:
  struct tick_t {
    fp64 value;
    QString label;
  };

  void set_title(const QString& title) { _title = title; }
  const QString& title() const { return _title; }
  // The unit of the labels, "Hz", "s", "dB" or "" (see lib_unit_t).
  void set_unit(const QString& unit) { _unit = unit; }
  const QString& unit() const { return _unit; }
  // Engineering notation ("500 m", "2.5 k") by default; plain decimals ("0.5", "2500") suit
  // sample indices and amplitudes without a unit.
  void set_engineering(bool engineering) { _engineering = engineering; }
  // A logarithmic axis shows positive values only; its ticks are decades.
  void set_log_scale(bool log_scale) { _log_scale = log_scale; }
  bool log_scale() const { return _log_scale; }

  // The coordinate in which the axis is linear: the value itself, or log10 of it (values not
  // above 0 map to log10 of the smallest positive double).
  fp64 to_axis(fp64 value) const;
  fp64 from_axis(fp64 coordinate) const;

  // Ticks inside the visible range [min, max] of axis coordinates, about `target` of them.
  std::vector<tick_t> ticks(fp64 min, fp64 max, int target) const;
  // A value with as many digits as a resolution of `resolution` (the span of one pixel) shows.
  QString format_value(fp64 value, fp64 resolution) const;

  // The smallest step of 1, 2 or 5 times a power of ten that cuts `span` into at most `target`
  // intervals; 0 for a span that is not positive and finite.
  static fp64 nice_step(fp64 span, int target);

 private:
  std::vector<tick_t> _linear_ticks(fp64 min, fp64 max, int target) const;
  std::vector<tick_t> _decade_ticks(fp64 min, fp64 max, int target) const;
  QString _linear_label(fp64 value, fp64 resolution) const;

  QString _title;
  QString _unit;
  bool _log_scale = false;
  bool _engineering = true;
};

}  // namespace nal

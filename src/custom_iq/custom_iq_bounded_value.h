#pragma once
// A parameter of the Custom IQ engine together with its current limits. The value always lies
// within [minimum, maximum]: storing and narrowing the bounds both clamp it. A plain value; the
// engine decides when bounds move and what a change sets off.

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace nal {

template <typename value_t>
class custom_iq_bounded_value_t {
 public:
  custom_iq_bounded_value_t(value_t minimum, value_t maximum, value_t value)
      : _minimum(minimum), _maximum(maximum), _value(clamp(value)) {}

  value_t minimum() const { return _minimum; }
  value_t maximum() const { return _maximum; }
  value_t value() const { return _value; }

  // The nearest value within the bounds.
  // A negative zero becomes zero: it equals zero, so a recall would not restore it, and the
  // state file would not read back as it was written.
  // A NaN would pass min and max unchanged; it counts as zero, as a text that is no number does.
  value_t clamp(value_t value) const {
    if constexpr (std::is_floating_point_v<value_t>) {
      value = std::isnan(value) ? value_t{0} : value;
    }
    return std::min(std::max(value, _minimum), _maximum) + value_t{0};
  }
  void store(value_t value) { _value = clamp(value); }
  // Replaces the bounds and clamps the stored value into them.
  void set_bounds(value_t minimum, value_t maximum) {
    _minimum = minimum;
    _maximum = maximum;
    _value = clamp(_value);
  }

 private:
  value_t _minimum;
  value_t _maximum;
  value_t _value;
};

}  // namespace nal

// The pulse filter and sampling half of custom_iq_t: filter type rules, oversampling and the
// symbol rate cap they impose.

#include <algorithm>

#include "custom_iq/custom_iq.h"

namespace nal {

namespace {
// The generator's largest output rate, which bounds symbol rate x oversampling.
constexpr fp64 max_output_rate = 8e9;
constexpr uint32 max_oversampling = 32;
constexpr uint32 min_oversampling = 2;
// A half-sine pulse needs enough samples per symbol to keep its shape.
constexpr uint32 min_half_sine_oversampling = 8;
constexpr uint64 min_symbol_rate = 250;
constexpr uint32 max_filter_length = 512;
// Roll-off of the cosine pulses; bandwidth-time product of the Gaussian pulse.
constexpr fp64 min_roll_off = 0.01;
constexpr fp64 max_roll_off = 1.0;
constexpr fp64 min_bandwidth_time = 0.1;
constexpr fp64 max_bandwidth_time = 5.0;

// Filters with a roll-off (or bandwidth-time product) and a length in symbols.
bool uses_filter_shape(filter_type_t type) {
  return type == FILTER_RAISED_COSINE || type == FILTER_ROOT_COSINE || type == FILTER_GAUSSIAN;
}
}  // namespace

bool custom_iq_t::set_filter_type(filter_type_t type) {
  if (type == _filter_type) {
    return false;
  }
  const filter_type_t refused = _is_oqpsk() ? FILTER_GAUSSIAN : FILTER_HALF_SINE;
  if (type == refused) {
    emit sig_update_ui();
    return false;
  }
  _apply_filter_type(type);
  return true;
}

void custom_iq_t::_apply_filter_type(filter_type_t type) {
  _filter_type = _is_msk() ? FILTER_GAUSSIAN : type;
  _call_dirty(true);

  _filter_alpha_enabled = uses_filter_shape(_filter_type);
  if (_filter_alpha_enabled) {
    if (_filter_type == FILTER_GAUSSIAN) {
      _filter_alpha.set_bounds(min_bandwidth_time, max_bandwidth_time);
    } else {
      _filter_alpha.set_bounds(min_roll_off, max_roll_off);
    }
  }
  _update_filter_length_range();

  const uint32 lower =
      _filter_type == FILTER_HALF_SINE ? min_half_sine_oversampling : min_oversampling;
  _oversampling.set_bounds(lower, max_oversampling);
  const uint64 rate_cap = static_cast<uint64>(max_output_rate / _symbol_rate.value());
  const uint32 cap = static_cast<uint32>(std::min<uint64>(max_oversampling, rate_cap));
  if (cap >= lower) {
    _oversampling.store(std::min(_oversampling.value(), cap));
  }
  emit sig_update_ui();
}

void custom_iq_t::_update_filter_length_range() {
  _filter_length_enabled = uses_filter_shape(_filter_type);
  if (_filter_length_enabled) {
    _filter_length.set_bounds(1, std::min(_symbol_length.value(), max_filter_length));
  }
}

void custom_iq_t::_apply_filter_constraint() {
  if (_is_msk()) {
    _apply_filter_type(FILTER_ROOT_COSINE);
  }
  if (!_is_oqpsk() && _filter_type == FILTER_HALF_SINE) {
    _filter_type = FILTER_ROOT_COSINE;
    return;
  }
  if (_is_oqpsk() && _filter_type == FILTER_GAUSSIAN) {
    _apply_filter_type(FILTER_ROOT_COSINE);
  }
}

bool custom_iq_t::set_filter_alpha(fp64 alpha) {
  return _set_bounded(_filter_alpha, alpha);
}

bool custom_iq_t::set_filter_length(uint32 length) {
  return _set_bounded(_filter_length, length);
}

bool custom_iq_t::set_oversampling(uint32 oversampling) {
  if (oversampling == _oversampling.value()) {
    return false;
  }
  // OQPSK staggers Q by half a symbol, which needs an even number of samples per symbol.
  const bool refused = oversampling % 2 == 1 && _is_oqpsk();
  const bool changed = !refused && _set_bounded(_oversampling, oversampling);
  _update_deviation_range();
  _apply_symbol_rate_cap();
  return changed;
}

void custom_iq_t::_apply_symbol_rate_cap() {
  const uint64 cap = static_cast<uint64>(max_output_rate / _oversampling.value());
  if (cap >= min_symbol_rate) {
    _symbol_rate.set_bounds(min_symbol_rate, cap);
  }
  _update_length();
  emit sig_update_ui();
}

}  // namespace nal

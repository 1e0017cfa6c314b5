#include "custom_iq/custom_iq.h"

#include <algorithm>
#include <utility>

#include "lib/lib_common_type_cast.h"
#include "lib/lib_constellation_fsk.h"
#include "lib/lib_modulation_apsk_qam.h"
#include "lib/lib_report.h"

namespace nal {

using common_lib::lib_common_type_cast_t;
using common_lib::plib_lfm_custom_sweep_config_t;

namespace {
constexpr uint32 max_frame_number = 300;
constexpr fp64 max_deviation_ratio = 0.8;
// Span and tone limits keep the bank clear of the band edge by the generator's margin.
constexpr fp64 multitone_span_divisor = 1.28;
constexpr fp64 multitone_edge_divisor = 2.56;
constexpr fp64 min_lfm_bandwidth = 100.0;
constexpr fp64 min_lfm_duration = 1e-8;
constexpr fp64 max_lfm_duration = 1.0;
const plib_lfm_custom_sweep_config_t new_lfm_row{0.0, 0.0, 0.001};
}  // namespace

custom_iq_t::custom_iq_t(QObject* parent) : QObject(parent) {
  _rebuild_default_constellation();
  _rebuild_deviation_table();
  _update_multitone_notch_ranges();
  _update_length();
}

void custom_iq_t::set_dirty_callback(std::function<void(bool)> callback) {
  _dirty_callback = std::move(callback);
}

void custom_iq_t::set_too_large_callback(std::function<void()> callback) {
  _too_large_callback = std::move(callback);
}

void custom_iq_t::_call_dirty(bool dirty) {
  if (_dirty_callback) {
    _dirty_callback(dirty);
  }
}

void custom_iq_t::_mark_changed() {
  _call_dirty(true);
  emit sig_update_ui();
}

bool custom_iq_t::_is_oqpsk() const {
  return _modulator_type == MODULATOR_APSK_QAM && _apsk_qam_type.value() == MOD_OQPSK;
}

bool custom_iq_t::_is_msk() const {
  return _modulator_type == MODULATOR_MFSK && _mfsk_type.value() == MOD_MSK;
}

bool custom_iq_t::set_waveform_name(const std::string& name) {
  return _set_plain(_waveform_name, name);
}

bool custom_iq_t::set_frame_number(uint32 number) {
  if (!_set_bounded(_frame_number, number)) {
    return false;
  }
  _update_length();
  return true;
}

bool custom_iq_t::set_mirror_spectrum_enable(bool enable) {
  return _set_plain(_mirror_spectrum_enable, enable);
}

bool custom_iq_t::set_data_source_type(data_source_type_t type) {
  return _set_plain(_data_source_type, type);
}

bool custom_iq_t::set_symbol_length(uint32 length) {
  if (!_set_bounded(_symbol_length, length)) {
    return false;
  }
  _update_filter_length_range();
  _update_length();
  return true;
}

bool custom_iq_t::set_symbol_rate(uint64 rate) {
  if (!_set_bounded(_symbol_rate, rate)) {
    return false;
  }
  _update_filter_length_range();
  _update_deviation_range();
  _update_length();
  return true;
}

bool custom_iq_t::set_custom_bits(const std::string& bits) {
  return _set_plain(_custom_bits, bits);
}

bool custom_iq_t::set_modulator_type(modulator_type_t type) {
  if (!_set_plain(_modulator_type, type)) {
    return false;
  }
  if (type == MODULATOR_APSK_QAM) {
    _rebuild_default_constellation();
  } else if (type == MODULATOR_MFSK) {
    _rebuild_deviation_table();
  } else if (type == MODULATOR_CUSTOM) {
    emit sig_update_constellation();
  }
  _update_frame_range();
  _update_length();
  _update_deviation_range();
  _apply_filter_constraint();
  _update_bits_per_symbol();
  return true;
}

bool custom_iq_t::set_apsk_qam_type(modulation_type_t type) {
  if (!_set_bounded(_apsk_qam_type, static_cast<uint32>(type))) {
    return false;
  }
  _rebuild_default_constellation();
  _apply_filter_constraint();
  _update_bits_per_symbol();
  return true;
}

modulation_type_t custom_iq_t::get_apsk_qam_type() const {
  return static_cast<modulation_type_t>(_apsk_qam_type.value());
}

bool custom_iq_t::set_gray_code_enable(bool enable) {
  if (!_set_plain(_gray_code_enable, enable)) {
    return false;
  }
  _rebuild_default_constellation();
  return true;
}

bool custom_iq_t::set_mfsk_type(modulation_type_t type) {
  if (!_set_bounded(_mfsk_type, static_cast<uint32>(type))) {
    return false;
  }
  _update_deviation_range();
  _rebuild_deviation_table();
  _apply_filter_constraint();
  _update_bits_per_symbol();
  return true;
}

modulation_type_t custom_iq_t::get_mfsk_type() const {
  return static_cast<modulation_type_t>(_mfsk_type.value());
}

bool custom_iq_t::set_fsk_deviation(fp64 deviation) {
  if (!_set_bounded(_fsk_deviation, deviation)) {
    return false;
  }
  _rebuild_deviation_table();
  return true;
}

bool custom_iq_t::set_multitone_mode(bool start_stop) {
  if (!_set_plain(_multitone_mode, start_stop)) {
    return false;
  }
  _update_length();
  return true;
}

bool custom_iq_t::set_multitone_sample_rate(fp64 rate) {
  if (!_set_bounded(_multitone_sample_rate, rate)) {
    return false;
  }
  const fp64 stored = _multitone_sample_rate.value();
  _multitone_span.set_bounds(0.0, stored / multitone_span_divisor);
  _multitone_start.set_bounds(0.0, stored / multitone_edge_divisor);
  _multitone_stop.set_bounds(0.0, stored / multitone_edge_divisor);
  _update_multitone_notch_ranges();
  _update_length();
  return true;
}

bool custom_iq_t::set_multitone_span(fp64 span) {
  if (!_set_bounded(_multitone_span, span)) {
    return false;
  }
  _update_length();
  return true;
}

bool custom_iq_t::set_multitone_start(fp64 frequency) {
  if (!_set_bounded(_multitone_start, frequency)) {
    return false;
  }
  if (_multitone_start.value() > _multitone_stop.value()) {
    _multitone_stop.store(_multitone_start.value());
  }
  _update_length();
  return true;
}

bool custom_iq_t::set_multitone_stop(fp64 frequency) {
  if (!_set_bounded(_multitone_stop, frequency)) {
    return false;
  }
  if (_multitone_start.value() > _multitone_stop.value()) {
    _multitone_start.store(_multitone_stop.value());
  }
  _update_length();
  return true;
}

bool custom_iq_t::set_multitone_number(uint32 number) {
  if (!_set_bounded(_multitone_number, number)) {
    return false;
  }
  _update_length();
  return true;
}

bool custom_iq_t::set_multitone_single_side(bool enable) {
  return _set_plain(_multitone_single_side, enable);
}

bool custom_iq_t::set_multitone_notch_enable(bool enable) {
  if (!_set_plain(_multitone_notch_enable, enable)) {
    return false;
  }
  _update_length();
  return true;
}

bool custom_iq_t::set_multitone_notch_start(fp64 frequency) {
  if (!_set_bounded(_multitone_notch_start, frequency)) {
    return false;
  }
  _update_multitone_notch_ranges();
  _update_length();
  return true;
}

bool custom_iq_t::set_multitone_notch_stop(fp64 frequency) {
  if (!_set_bounded(_multitone_notch_stop, frequency)) {
    return false;
  }
  _update_multitone_notch_ranges();
  _update_length();
  return true;
}

void custom_iq_t::_update_multitone_notch_ranges() {
  const fp64 nyquist = _multitone_sample_rate.value() / 2.0;
  _multitone_notch_stop.set_bounds(std::min(_multitone_notch_start.value(), nyquist), nyquist);
  _multitone_notch_start.set_bounds(0.0, _multitone_notch_stop.value());
}

bool custom_iq_t::set_custom_constellation(const lib_constellation_map_t& map) {
  if (!_set_plain(_custom_constellation, map)) {
    return false;
  }
  _update_bits_per_symbol();
  emit sig_update_constellation();
  return true;
}

bool custom_iq_t::set_custom_constellation_name(const std::string& name) {
  std::string without_commas = name;
  without_commas.erase(std::remove(without_commas.begin(), without_commas.end(), ','),
                       without_commas.end());
  return _set_plain(_custom_constellation_name, without_commas);
}

bool custom_iq_t::set_show_constellation_symbol(bool show) {
  return _set_plain(_show_constellation_symbol, show);
}

bool custom_iq_t::set_lfm_mode(bool custom_segments) {
  if (!_set_plain(_lfm_mode, custom_segments)) {
    return false;
  }
  _update_length();
  return true;
}

bool custom_iq_t::set_lfm_sample_rate(fp64 rate) {
  if (!_set_bounded(_lfm_sample_rate, rate)) {
    return false;
  }
  _lfm_bandwidth.set_bounds(min_lfm_bandwidth, _lfm_sample_rate.value());
  _update_lfm_offset_range();
  _resize_lfm_segment_list();
  _update_length();
  _mark_changed();
  return true;
}

bool custom_iq_t::set_lfm_sweep_time(fp64 seconds) {
  if (!_set_bounded(_lfm_sweep_time, seconds)) {
    return false;
  }
  _update_length();
  return true;
}

bool custom_iq_t::set_lfm_bandwidth(fp64 bandwidth) {
  if (!_set_bounded(_lfm_bandwidth, bandwidth)) {
    return false;
  }
  _update_lfm_offset_range();
  emit sig_update_ui();
  return true;
}

void custom_iq_t::_update_lfm_offset_range() {
  const fp64 half = _lfm_bandwidth.value() / 2.0;
  _lfm_offset.set_bounds(-half, half);
}

bool custom_iq_t::set_lfm_offset(fp64 offset) {
  return _set_bounded(_lfm_offset, offset);
}

bool custom_iq_t::set_lfm_sweep_type(lfm_sweep_type_t type) {
  if (!_set_plain(_lfm_sweep_type, type)) {
    return false;
  }
  _update_length();
  return true;
}

bool custom_iq_t::set_lfm_segments(uint32 segments) {
  if (!_set_bounded(_lfm_segments, segments)) {
    return false;
  }
  _resize_lfm_segment_list();
  return true;
}

void custom_iq_t::_resize_lfm_segment_list() {
  _lfm_segment_list.resize(_lfm_segments.value(), new_lfm_row);
  _update_lfm_total_time();
}

void custom_iq_t::_update_lfm_total_time() {
  fp64 total = 0.0;
  for (const auto& row : _lfm_segment_list) {
    total += row.duration;
  }
  _lfm_total_time.store(total);
  // The chirp's length follows its segments; without this the sample count went stale.
  _update_length();
}

bool custom_iq_t::set_lfm_segment_list(const lfm_segment_list_t& list) {
  const bool same =
      list.size() == _lfm_segment_list.size() &&
      std::equal(
          list.begin(), list.end(), _lfm_segment_list.begin(),
          [](const plib_lfm_custom_sweep_config_t& a, const plib_lfm_custom_sweep_config_t& b) {
            return a.start_frequency == b.start_frequency && a.stop_frequency == b.stop_frequency &&
                   a.duration == b.duration;
          });
  if (same) {
    return false;
  }
  _lfm_segment_list = list;
  _update_lfm_total_time();
  _mark_changed();
  return true;
}

bool custom_iq_t::set_frequency(uint32 index, fp64 value, bool stop) {
  if (index >= _lfm_segment_list.size()) {
    common_lib::lib_report("set_frequency para err");
    return false;
  }
  const fp64 half_rate = _lfm_sample_rate.value() / 2.0;
  const fp64 clamped = std::clamp(value, -half_rate, half_rate);
  fp64& field =
      stop ? _lfm_segment_list[index].stop_frequency : _lfm_segment_list[index].start_frequency;
  const bool changed = field != clamped;
  field = clamped;
  if (changed) {
    _mark_changed();
  } else if (clamped != value) {
    emit sig_update_ui();
  }
  return changed;
}

bool custom_iq_t::set_duration_time(uint32 index, fp64 value) {
  if (index >= _lfm_segment_list.size()) {
    common_lib::lib_report("set_duration_time para err");
    return false;
  }
  const fp64 clamped = std::clamp(value, min_lfm_duration, max_lfm_duration);
  if (_lfm_segment_list[index].duration == clamped) {
    return false;
  }
  _lfm_segment_list[index].duration = clamped;
  _update_lfm_total_time();
  _mark_changed();
  return true;
}

void custom_iq_t::_update_deviation_range() {
  const fp64 upper = max_deviation_ratio * static_cast<fp64>(_symbol_rate.value()) *
                     static_cast<fp64>(_oversampling.value());
  _fsk_deviation.set_bounds(0.0, upper);
  _fsk_deviation_editable = _modulator_type == MODULATOR_MFSK && _mfsk_type.value() != MOD_MSK;
  _rebuild_deviation_table();
}

void custom_iq_t::_update_frame_range() {
  if (_modulator_type == MODULATOR_MULTITONE || _modulator_type == MODULATOR_LFM) {
    _frame_number.set_bounds(1, 1);
  } else {
    _frame_number.set_bounds(1, max_frame_number);
  }
}

void custom_iq_t::_rebuild_default_constellation() {
  _default_constellation = common_lib::lib_modulation_apsk_qam_t::get_default_constellation_map(
      get_apsk_qam_type(), _gray_code_enable);
  emit sig_update_constellation();
}

void custom_iq_t::_rebuild_deviation_table() {
  const uint32 points = lib_common_type_cast_t::get_constellation_point(get_mfsk_type());
  // Natural numbering: the FSK modulator refuses Gray maps, so the table shows what it sends.
  common_lib::lib_constellation_fsk_t::generate_default_fsk_constellation(
      points, _fsk_deviation_table, false);
  for (auto& entry : _fsk_deviation_table) {
    entry.second *= _fsk_deviation.value();
  }
  emit sig_update_fsk_dev_table_data();
}

void custom_iq_t::_update_bits_per_symbol() {
  if (_modulator_type == MODULATOR_APSK_QAM) {
    _bits_per_symbol = lib_common_type_cast_t::get_symbol_bit_number(get_apsk_qam_type(), 0);
  } else if (_modulator_type == MODULATOR_MFSK) {
    _bits_per_symbol = lib_common_type_cast_t::get_symbol_bit_number(get_mfsk_type(), 0);
  } else if (_modulator_type == MODULATOR_CUSTOM) {
    if (_custom_constellation.empty()) {
      common_lib::lib_report("ConstellationData is null");
    } else {
      _bits_per_symbol = lib_common_type_cast_t::get_symbol_bit_number(
          MOD_MULTITONE2, static_cast<uint32>(_custom_constellation.size()));
    }
  }
  emit sig_update_ui();
}

}  // namespace nal

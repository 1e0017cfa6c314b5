#include "toolkit/toolkit_waveform_import.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <utility>

#include "lib/lib_normalization.h"
#include "lib/lib_report.h"
#include "lib/lib_resample.h"
#include "toolkit/toolkit_mat_file_reader.h"
#include "toolkit/toolkit_mat_inflate.h"
#include "toolkit/toolkit_text_column_reader.h"

namespace nal {

namespace {

void report(const char* method, const std::string& message) {
  common_lib::lib_report(std::string("toolkit_waveform_import_t::") + method +
                         " Report: " + message);
}

std::string describe(const std::vector<toolkit_mat_variable_t>& list, uint32 index) {
  return "variable " + std::to_string(index) + " ('" + list[index].name + "')";
}

}  // namespace

toolkit_waveform_import_t::toolkit_waveform_import_t()
    : _inflate_limit_bytes(toolkit_mat_inflate_t::default_limit_bytes()) {}

void toolkit_waveform_import_t::set_progress_callback(std::function<void(fp64)> callback) {
  _progress_callback = std::move(callback);
}

void toolkit_waveform_import_t::set_change_callback(std::function<void()> callback) {
  _change_callback = std::move(callback);
}

template <typename T>
bool toolkit_waveform_import_t::_set(T& field, const T& value) {
  if (field == value) {
    return false;
  }
  field = value;
  _changed();
  return true;
}

void toolkit_waveform_import_t::_changed() {
  if (_change_callback) {
    _change_callback();
  }
}

bool toolkit_waveform_import_t::set_source_file_type(uint32 type) {
  const uint32 clamped = std::min(type, source_text_file);
  if (clamped == _source_file_type) {
    return false;
  }
  _source_file_type = clamped;
  update_number_of_points();
  _changed();
  return true;
}

bool toolkit_waveform_import_t::set_sample_rate(fp64 rate) {
  const fp64 number = std::isnan(rate) ? 0.0 : rate;
  return _set(_sample_rate, std::clamp(number, _sample_rate_min, _sample_rate_max));
}

bool toolkit_waveform_import_t::set_oversampling_ratio(int ratio) {
  return _set(_oversampling_ratio,
              std::clamp(ratio, _oversampling_ratio_min, _oversampling_ratio_max));
}

bool toolkit_waveform_import_t::set_oversampling_ratio_range(int minimum, int maximum) {
  if (minimum < 1 || maximum < minimum) {
    report("set_oversampling_ratio_range", "the range " + std::to_string(minimum) + " to " +
                                               std::to_string(maximum) +
                                               " is not a range of ratios from 1 up");
    return false;
  }
  _oversampling_ratio_min = minimum;
  _oversampling_ratio_max = maximum;
  set_oversampling_ratio(_oversampling_ratio);
  return true;
}

bool toolkit_waveform_import_t::set_mat_file_path(const std::string& path) {
  _mat_file_path = path;
  const bool read = read_mat_file();
  update_number_of_points();
  _changed();
  return read;
}

bool toolkit_waveform_import_t::set_ascii_file_path(const std::string& path) {
  _ascii_file_path = path;
  const bool counted = toolkit_text_column_reader_t::count_lines(path, _ascii_line_number);
  update_number_of_points();
  _changed();
  return counted;
}

bool toolkit_waveform_import_t::set_i_data_index(uint32 index) {
  return _set(_i_data_index, index);
}

bool toolkit_waveform_import_t::set_q_data_index(uint32 index) {
  return _set(_q_data_index, index);
}

bool toolkit_waveform_import_t::set_separate_q_file_enable(bool enable) {
  return _set(_separate_q_file_enable, enable);
}

bool toolkit_waveform_import_t::set_q_source_file_path(const std::string& path) {
  return _set(_q_source_file_path, path);
}

bool toolkit_waveform_import_t::set_hexadecimal_enable(bool enable) {
  return _set(_hexadecimal_enable, enable);
}

bool toolkit_waveform_import_t::set_little_endian_enable(bool enable) {
  return _set(_little_endian_enable, enable);
}

bool toolkit_waveform_import_t::set_unsigned_number_enable(bool enable) {
  return _set(_unsigned_number_enable, enable);
}

bool toolkit_waveform_import_t::set_swap_iq_enable(bool enable) {
  return _set(_swap_iq_enable, enable);
}

bool toolkit_waveform_import_t::set_waveform_name(const std::string& name) {
  return _set(_waveform_name, name);
}

bool toolkit_waveform_import_t::set_mirror_spectrum_enable(bool enable) {
  return _set(_mirror_spectrum_enable, enable);
}

bool toolkit_waveform_import_t::read_mat_file() {
  try {
    return toolkit_mat_file_reader_t::read(_mat_file_path, _inflate_limit_bytes, _variable_list);
  } catch (const std::exception& error) {
    _variable_list.clear();
    report("read_mat_file", _mat_file_path + ": " + error.what());
    return false;
  }
}

void toolkit_waveform_import_t::update_number_of_points() {
  if (_source_file_type == source_text_file) {
    _number_of_points = _ascii_line_number;
    return;
  }
  _number_of_points = 0;
  for (const toolkit_mat_variable_t& variable : _variable_list) {
    const std::vector<int>& dimensions = variable.dimension_list;
    if (dimensions.size() >= 2 && dimensions[0] == 1 && dimensions[1] > 0) {
      _number_of_points = std::max(_number_of_points, static_cast<uint32>(dimensions[1]));
    }
  }
}

bool toolkit_waveform_import_t::_fetch_mat_columns(lib_fp_data_arr_t& i_values,
                                                   lib_fp_data_arr_t& q_values) const {
  const std::vector<toolkit_mat_variable_t>& list = _variable_list;
  if (_i_data_index >= list.size() || !list[_i_data_index].has_data()) {
    report("import_waveform", "the I variable " + std::to_string(_i_data_index) + " of " +
                                  _mat_file_path + " does not exist or holds no values");
    return false;
  }
  const toolkit_mat_variable_t& i_variable = list[_i_data_index];
  const bool q_names_other_values = _q_data_index != _i_data_index && _q_data_index < list.size() &&
                                    list[_q_data_index].has_data();
  if (i_variable.is_complex) {
    if (q_names_other_values) {
      report("import_waveform", describe(list, _i_data_index) + " of " + _mat_file_path +
                                    " is complex and gives both I and Q; choose it for Q as "
                                    "well, or choose a real variable for I");
      return false;
    }
    for (const lib_iq_sample_t& sample : i_variable.complex_data) {
      i_values.push_back(sample.real());
      q_values.push_back(sample.imag());
    }
    return true;
  }
  if (_q_data_index >= list.size() || !list[_q_data_index].has_data()) {
    report("import_waveform", "the Q variable " + std::to_string(_q_data_index) + " of " +
                                  _mat_file_path + " does not exist or holds no values");
    return false;
  }
  if (list[_q_data_index].is_complex) {
    report("import_waveform", describe(list, _q_data_index) + " of " + _mat_file_path +
                                  " is complex; choose it for I to take I from its real part "
                                  "and Q from its imaginary part");
    return false;
  }
  i_values = i_variable.real_data;
  q_values = list[_q_data_index].real_data;
  return true;
}

bool toolkit_waveform_import_t::_fetch_text_columns(lib_fp_data_arr_t& i_values,
                                                    lib_fp_data_arr_t& q_values) const {
  const toolkit_text_number_format_t format{_hexadecimal_enable, _little_endian_enable,
                                            _unsigned_number_enable};
  std::vector<lib_fp_data_arr_t> columns;
  if (!_separate_q_file_enable) {
    if (!toolkit_text_column_reader_t::read_columns(_ascii_file_path, format, 2, columns)) {
      return false;
    }
    i_values = std::move(columns[0]);
    q_values = std::move(columns[1]);
  } else {
    // The I file of a separate pair is never byte-swapped; files made for that layout rely on it.
    toolkit_text_number_format_t i_format = format;
    i_format.swap_bytes = false;
    if (!toolkit_text_column_reader_t::read_columns(_ascii_file_path, i_format, 1, columns)) {
      return false;
    }
    i_values = std::move(columns[0]);
    if (!toolkit_text_column_reader_t::read_columns(_q_source_file_path, format, 1, columns)) {
      return false;
    }
    q_values = std::move(columns[0]);
  }
  if (_swap_iq_enable) {
    std::swap(i_values, q_values);
  }
  return true;
}

bool toolkit_waveform_import_t::_import_waveform() {
  const bool from_text = _source_file_type == source_text_file;
  lib_fp_data_arr_t i_values;
  lib_fp_data_arr_t q_values;
  if (!(from_text ? _fetch_text_columns(i_values, q_values)
                  : _fetch_mat_columns(i_values, q_values))) {
    return false;
  }
  const std::string source =
      from_text ? _ascii_file_path + (_separate_q_file_enable ? " and " + _q_source_file_path : "")
                : _mat_file_path;
  if (i_values.empty()) {
    report("import_waveform", source + " holds no values");
    return false;
  }
  if (i_values.size() != q_values.size()) {
    report("import_waveform", source + " gives " + std::to_string(i_values.size()) +
                                  " I values but " + std::to_string(q_values.size()) +
                                  " Q values; I and Q must be of the same length");
    return false;
  }
  const uint32 ratio = static_cast<uint32>(_oversampling_ratio);
  if (i_values.size() > std::numeric_limits<uint32>::max() / ratio) {
    report("import_waveform", source + " gives " + std::to_string(i_values.size()) +
                                  " samples, too many to oversample by " + std::to_string(ratio));
    return false;
  }
  const fp64 mirror = _mirror_spectrum_enable ? -1.0 : 1.0;
  lib_iq_data_arr_t samples(i_values.size());
  for (std::size_t k = 0; k < samples.size(); ++k) {
    samples[k] = lib_iq_sample_t(i_values[k], mirror * q_values[k]);
  }
  if (!common_lib::lib_resample_t::deal_resampling(samples, _iq_data, ratio, 1)) {
    return false;
  }
  common_lib::lib_normalization_t::max_normalize(_iq_data);
  _sample_number = static_cast<uint32>(_iq_data.size());
  _waveform_duration = _sample_number / get_output_sample_rate();
  return true;
}

bool toolkit_waveform_import_t::import_waveform() {
  if (_progress_callback) {
    _progress_callback(33);
  }
  _iq_data.clear();
  _sample_number = 0;
  _waveform_duration = 0;
  bool imported = false;
  try {
    imported = _import_waveform();
  } catch (const std::exception& error) {
    report("import_waveform", error.what());
  }
  if (!imported) {
    _iq_data.clear();
    _sample_number = 0;
    _waveform_duration = 0;
    return false;
  }
  if (_progress_callback) {
    _progress_callback(100);
  }
  return true;
}

}  // namespace nal

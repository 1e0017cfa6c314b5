#pragma once
// The import engine of the Toolkit tab: reads I and Q values from a MAT-file (level 5) or a text
// file, builds complex samples, oversamples them and scales them to a peak of 1.
//
// MAT source: the variable at `i_data_index` gives I and the one at `q_data_index` gives Q, each
// real. A complex variable chosen for I gives I from its real part and Q from its imaginary part
// when Q names the same variable or no variable with values. Text source: two columns of one
// file, or one column of the I file and one of a separate Q file. Any other choice, an index
// beyond the list, values missing or I and Q of different lengths give a report and no samples.
//
// Setters store the value (clamped where a range is given), call the change callback when the
// value changed and return whether it did. Used by one thread at a time; no locks. Copyable:
// the callbacks are copied with the settings.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "lib/lib_types.h"
#include "toolkit/toolkit_mat_variable.h"

namespace nal {

class toolkit_waveform_import_t {
 public:
  static constexpr uint32 source_mat_file = 0;
  static constexpr uint32 source_text_file = 1;
  // Texts of `source_file_type`, by value, as state files store them.
  static constexpr const char* source_file_type_texts[] = {"Mat-File 5", "ASCII/CSV/DAT"};

  toolkit_waveform_import_t();

  // Called with 33 when an import starts and with 100 when it has succeeded; the duration and
  // rate of the result are then available from the getters. May be empty.
  void set_progress_callback(std::function<void(fp64)> callback);
  // Called after every change of a setting. May be empty.
  void set_change_callback(std::function<void()> callback);

  // 0 MAT-file, 1 text; clamped into 0 to 1. Updates number_of_points before the callback.
  bool set_source_file_type(uint32 type);
  uint32 get_source_file_type() const { return _source_file_type; }
  // Hz of the file's samples, before oversampling; clamped into 100 to 200e6 (NaN counts as 0).
  bool set_sample_rate(fp64 rate);
  fp64 get_sample_rate() const { return _sample_rate; }
  fp64 get_sample_rate_min() const { return _sample_rate_min; }
  fp64 get_sample_rate_max() const { return _sample_rate_max; }
  // Clamped into the ratio's range, which the page sets (default 1 to 100; minimum at least 1).
  bool set_oversampling_ratio(int ratio);
  bool set_oversampling_ratio_range(int minimum, int maximum);
  int get_oversampling_ratio() const { return _oversampling_ratio; }
  int get_oversampling_ratio_min() const { return _oversampling_ratio_min; }
  int get_oversampling_ratio_max() const { return _oversampling_ratio_max; }

  // Stores the path and reads the file's variable list (see read_mat_file).
  bool set_mat_file_path(const std::string& path);
  const std::string& get_mat_file_path() const { return _mat_file_path; }
  // Stores the path and counts its lines into ascii_line_number.
  bool set_ascii_file_path(const std::string& path);
  const std::string& get_ascii_file_path() const { return _ascii_file_path; }
  bool set_i_data_index(uint32 index);
  uint32 get_i_data_index() const { return _i_data_index; }
  bool set_q_data_index(uint32 index);
  uint32 get_q_data_index() const { return _q_data_index; }
  bool set_separate_q_file_enable(bool enable);
  bool get_separate_q_file_enable() const { return _separate_q_file_enable; }
  bool set_q_source_file_path(const std::string& path);
  const std::string& get_q_source_file_path() const { return _q_source_file_path; }
  bool set_hexadecimal_enable(bool enable);
  bool get_hexadecimal_enable() const { return _hexadecimal_enable; }
  // Swaps the bytes of hexadecimal words: in the two-column file and in the separate Q file,
  // never in the separate I file.
  bool set_little_endian_enable(bool enable);
  bool get_little_endian_enable() const { return _little_endian_enable; }
  bool set_unsigned_number_enable(bool enable);
  bool get_unsigned_number_enable() const { return _unsigned_number_enable; }
  // Text source only: the second column (or Q file) becomes I and the first becomes Q.
  bool set_swap_iq_enable(bool enable);
  bool get_swap_iq_enable() const { return _swap_iq_enable; }
  bool set_waveform_name(const std::string& name);
  const std::string& get_waveform_name() const { return _waveform_name; }
  // Negates Q of every sample.
  bool set_mirror_spectrum_enable(bool enable);
  bool get_mirror_spectrum_enable() const { return _mirror_spectrum_enable; }
  // The largest element a MAT-file may inflate to; defaults to 1 GiB, at most a quarter of the
  // machine's memory.
  void set_inflate_limit_bytes(std::size_t limit) { _inflate_limit_bytes = limit; }

  // Replaces variable_list by the records of mat_file_path, one per top-level element. False,
  // with the list empty, when the file is refused.
  bool read_mat_file();
  // number_of_points: the text file's line count, or for a MAT-file the largest second dimension
  // among row vectors (first dimension 1); other shapes count 0 but import normally.
  void update_number_of_points();
  // Replaces iq_data by the imported, oversampled and scaled samples and sets sample_number and
  // waveform_duration. False, with iq_data empty, on any failure (reported). Never throws.
  bool import_waveform();

  const std::vector<toolkit_mat_variable_t>& get_variable_list() const { return _variable_list; }
  uint32 get_ascii_line_number() const { return _ascii_line_number; }
  uint32 get_number_of_points() const { return _number_of_points; }
  uint32 get_sample_number() const { return _sample_number; }
  fp64 get_waveform_duration() const { return _waveform_duration; }
  // Rate of iq_data: the oversampling ratio times sample_rate.
  fp64 get_output_sample_rate() const { return _sample_rate * _oversampling_ratio; }
  const lib_iq_data_arr_t& get_iq_data() const { return _iq_data; }

 private:
  template <typename T>
  bool _set(T& field, const T& value);
  void _changed();
  void _report(const std::string& message) const;
  bool _fetch_mat_columns(lib_fp_data_arr_t& i_values, lib_fp_data_arr_t& q_values) const;
  bool _fetch_text_columns(lib_fp_data_arr_t& i_values, lib_fp_data_arr_t& q_values) const;
  bool _import_waveform();

  uint32 _source_file_type = source_mat_file;
  fp64 _sample_rate_min = 100;
  fp64 _sample_rate_max = 200e6;
  fp64 _sample_rate = 100e6;
  fp64 _waveform_duration = 0;
  uint32 _ascii_line_number = 0;
  uint32 _number_of_points = 0;
  uint32 _sample_number = 0;
  lib_iq_data_arr_t _iq_data;
  std::string _mat_file_path;
  std::vector<toolkit_mat_variable_t> _variable_list;
  uint32 _i_data_index = 0;
  uint32 _q_data_index = 0;
  std::string _ascii_file_path;
  bool _separate_q_file_enable = false;
  std::string _q_source_file_path;
  bool _hexadecimal_enable = false;
  bool _little_endian_enable = false;
  bool _unsigned_number_enable = false;
  bool _swap_iq_enable = false;
  std::string _waveform_name = "tmp";
  bool _mirror_spectrum_enable = false;
  int _oversampling_ratio_min = 1;
  int _oversampling_ratio_max = 100;
  int _oversampling_ratio = 1;
  std::size_t _inflate_limit_bytes;
  std::function<void(fp64)> _progress_callback;
  std::function<void()> _change_callback;
};

}  // namespace nal

#pragma once
// A symbol modulator: data source, constellation, oversampling, pulse shaping and output
// normalisation, producing a stream at `oversampling ratio` samples per symbol whose largest I or
// Q component is 0.89996337890625. One thread uses an object at a time; copies are independent
// and continue identically.

#include "lib/lib_constellation_base.h"
#include "lib/lib_filter.h"
#include "lib/lib_modulation_config.h"
#include "lib/lib_symbol_data.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_modulation_base_t {
 public:
  // Largest |I| or |Q| of every modulated stream.
  static constexpr fp64 output_peak = 0.89996337890625;

  explicit lib_modulation_base_t(uint32 modulator_type);
  virtual ~lib_modulation_base_t() = default;

  // Sets the type on the current constellation and tells the data source its bits per symbol.
  virtual bool set_constellation_type(modulation_type_t type);
  virtual bool set_gray_code_enable(bool enable);
  // Sets the pulse filter (re-clamping its parameter) and the constellation's oversampling kind.
  virtual bool set_filter_type(filter_type_t type);
  // At least 2 samples per symbol.
  virtual bool set_oversampling_ratio(uint32 ratio);
  // Symbols, points, oversampling, pulse shaping and normalisation into the modulated IQ data.
  virtual void deal_modulation();
  // Makes the first owned constellation current.
  virtual void reset_constellation_inst() = 0;
  // Cyclic filtering with this modulator's pulse.
  virtual bool deal_pulse_shaping(const lib_iq_data_arr_t& in, lib_iq_data_arr_t& out);

  bool set_symbol_rate(uint32 rate);
  // Above 0 (and the tolerance), in Hz; false otherwise, without a report.
  bool set_frequency_deviation(fp64 deviation);
  bool set_filter_parameter(fp64 parameter);
  bool set_filter_length(uint32 length);
  bool set_constellation(const lib_iq_data_arr_t& points, bool normalize);
  bool set_constellation(uint32 symbol, const lib_iq_sample_t& point, bool normalize);
  bool set_constellation(const lib_constellation_map_t& map, bool normalize);
  // Applies every setting; each step runs whatever the others gave, and the results are joined.
  bool set_modulation_config(const lib_modulation_config_t& config);
  void clear_modulated_data() { _modulated_iq_data.clear(); }

  uint32 get_modulator_type() const { return _modulator_type; }
  modulation_type_t get_constellation_type() const;
  bool get_gray_code_enable() const;
  uint32 get_bit_number() const;
  filter_type_t get_filter_type() const { return _filter.get_filter_type(); }
  fp64 get_filter_parameter() const { return _filter.get_filter_parameter(); }
  uint32 get_filter_length() const { return _filter.get_filter_length(); }
  uint32 get_oversampling_ratio() const { return _oversampling_ratio; }
  uint32 get_symbol_rate() const { return _symbol_rate; }
  fp64 get_frequency_deviation() const { return _frequency_deviation; }
  const lib_constellation_map_t& get_constellation_map() const;
  const lib_iq_data_arr_t& get_modulated_iq_data() const { return _modulated_iq_data; }
  lib_symbol_data_t& symbol_data() { return _symbol_data; }
  const lib_symbol_data_t& symbol_data() const { return _symbol_data; }
  // The current constellation; null only while a derived object is being built.
  const lib_constellation_base_t* constellation() const;

 protected:
  lib_modulation_base_t(const lib_modulation_base_t&) = default;
  lib_modulation_base_t& operator=(const lib_modulation_base_t&) = default;

  // The current constellation, owned by the derived class (so that copies point at their own).
  virtual lib_constellation_base_t* _current_constellation() = 0;
  virtual const lib_constellation_base_t* _current_constellation() const = 0;
  bool _check_constellation_inst() const;
  // Largest |I| or |Q| to 1, then every component times output_peak.
  void _normalize_modulated_data();
  // The same with the largest component already known.
  void _normalize_modulated_data(fp64 largest_component);
  static fp64 _largest_component(const lib_iq_data_arr_t& samples);
  // Data source, default map and points of the current symbols; false when nothing can be made.
  bool _generate_points(lib_iq_data_arr_t& points);

  uint32 _modulator_type;
  uint32 _oversampling_ratio = 2;
  uint32 _symbol_rate = 5000;
  fp64 _frequency_deviation = 100.0;
  lib_symbol_data_t _symbol_data;
  lib_filter_t _filter;
  lib_iq_data_arr_t _modulated_iq_data;
};

}  // namespace nal::common_lib

#pragma once
// Pulse-shaping filters: raised cosine, root raised cosine, Gaussian and half sine, and their
// application to sample arrays, with a cyclic mode for waveforms that repeat in an instrument's
// memory. Taps are complex with zero imaginary part so that one convolution path serves all.
// A filter object holds settings only; one thread uses it at a time. Copies are independent.

#include "lib/lib_enum_types.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_filter_t {
 public:
  // Stores the type and moves the parameter bounds: Gaussian 0.1..5.0 (bandwidth-time
  // product), every other type 0.01..1.0 (roll-off). The parameter is clamped into them.
  bool set_filter_type(filter_type_t type);
  filter_type_t get_filter_type() const { return _filter_type; }
  // Length in symbols; must be at least 2.
  bool set_filter_length(uint32 length);
  uint32 get_filter_length() const { return _filter_length; }
  // Clamped to the bounds of the current type; always true.
  bool set_filter_parameter(fp64 parameter);
  fp64 get_filter_parameter() const { return _filter_parameter; }
  fp64 get_filter_parameter_min() const { return _filter_parameter_min; }
  fp64 get_filter_parameter_max() const { return _filter_parameter_max; }
  // Samples per symbol. Refused (false) once the stored ratio is 0.
  bool set_oversampling_ratio(uint32 ratio);
  uint32 get_oversampling_ratio() const { return _oversampling_ratio; }

  // Taps of this object's type, length and ratio, normalised. False for an odd length * ratio or
  // an unknown type (a report says which).
  bool _generate_filter(lib_iq_data_arr_t& taps) const;

  // Tap generators: length * ratio + 1 taps at t = (n - length * ratio / 2) / ratio symbols;
  // length * ratio must be even. `normalize` gives unit energy (Gaussian: unit sum).
  static void _raised_consine_filter(fp64 roll_off, uint32 length, uint32 ratio,
                                     lib_iq_data_arr_t& taps, bool normalize);
  static void _root_cosine_filter(fp64 roll_off, uint32 length, uint32 ratio,
                                  lib_iq_data_arr_t& taps, bool normalize);
  static void _gaussian_filter(fp64 bt, uint32 length, uint32 ratio, lib_iq_data_arr_t& taps,
                               bool normalize);
  // `ratio` taps of sin(n pi / ratio), whatever the filter length.
  static void _half_sine_filter(uint32 ratio, lib_iq_data_arr_t& taps, bool normalize);

  // Repeats a short array until it holds at least `extension` samples; in cyclic mode also puts
  // the last `extension` samples in front and the first `extension` behind.
  static void _prepare_input_data(lib_iq_data_arr_t& samples, uint32 extension, bool cyclic);

  // Filters `samples` with `taps` into `out` of the same length. Cyclic filtering removes the
  // group delay and wraps the tail onto the head; plain filtering keeps the delay and drops the
  // tail.
  static bool deal_filter(const lib_iq_data_arr_t& samples, const lib_iq_data_arr_t& taps,
                          lib_iq_data_arr_t& out, bool cyclic);
  // The same with this object's taps; type None copies the samples.
  bool deal_filter(const lib_iq_data_arr_t& samples, lib_iq_data_arr_t& out, bool cyclic) const;

  // Unit gain at DC: divides by |sum of taps| unless it is below the tolerance.
  static void normalize_dc_gain(lib_iq_data_arr_t& taps);

 private:
  filter_type_t _filter_type = FILTER_ROOT_COSINE;
  uint32 _filter_length = 32;
  fp64 _filter_parameter_min = 0.0;
  fp64 _filter_parameter_max = 1.0;
  fp64 _filter_parameter = 0.5;
  uint32 _oversampling_ratio = 2;
};

}  // namespace nal::common_lib

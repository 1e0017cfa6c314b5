#pragma once
// In-place normalisations. Each divides by its scale (never multiplies by a reciprocal, so results
// equal a plain division bit for bit). An empty array or a scale whose magnitude is below the
// tolerance is reported and leaves the array unchanged.

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_normalization_t {
 public:
  // Unit rms.
  static void rms_normalize(lib_iq_data_arr_t& samples);
  // Unit energy: divides by sqrt(sum of squares).
  static void filter_energy_normalize(lib_fp_data_arr_t& values);
  static void filter_energy_normalize(lib_iq_data_arr_t& samples);
  // Real form: divides by the signed sum (a negative sum flips every sign).
  static void sum_normalize(lib_fp_data_arr_t& values);
  // Complex form: divides by the sum of magnitudes.
  static void sum_normalize(lib_iq_data_arr_t& samples);
  // Largest magnitude becomes 1.
  static void amplitude_max_normalize(lib_iq_data_arr_t& samples);
  // Largest of all |I| and |Q| becomes 1.
  static void max_normalize(lib_iq_data_arr_t& samples);
};

}  // namespace nal::common_lib

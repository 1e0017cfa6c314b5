#include "lib/lib_normalization.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

// Applies the shared checks, then divides every element by `scale`. `method` is the qualified
// name used in the report lines, `scale_name` the word of the too-small line.
template <typename array_t, typename scale_fn_t>
void divide_by_scale(array_t& data, const char* method, const char* scale_name,
                     scale_fn_t scale_of) {
  if (data.empty()) {
    lib_report(std::string(method) + " Report: An EMPTY data array is to normalize!");
    return;
  }
  const fp64 scale = scale_of(data);
  if (std::abs(scale) < lib_tolerance) {
    lib_report(std::string(method) + " Report: Data array has a too small " + scale_name + ": ",
               scale);
    return;
  }
  for (auto& element : data) {
    element /= scale;
  }
}

fp64 energy_of(const lib_fp_data_arr_t& values) {
  fp64 sum = 0.0;
  for (const fp64 v : values) {
    sum += v * v;
  }
  return std::sqrt(sum);
}

fp64 energy_of(const lib_iq_data_arr_t& samples) {
  fp64 sum = 0.0;
  for (const auto& s : samples) {
    sum += s.real() * s.real() + s.imag() * s.imag();
  }
  return std::sqrt(sum);
}

}  // namespace

void lib_normalization_t::rms_normalize(lib_iq_data_arr_t& samples) {
  divide_by_scale(samples, "lib_normalization_t::rms_normalize", "rms",
                  [](const lib_iq_data_arr_t& s) { return plib_t::get_complex_array_rms(s); });
}

void lib_normalization_t::filter_energy_normalize(lib_fp_data_arr_t& values) {
  divide_by_scale(values, "lib_normalization_t::filter_energy_normalize", "erengy",
                  [](const lib_fp_data_arr_t& v) { return energy_of(v); });
}

void lib_normalization_t::filter_energy_normalize(lib_iq_data_arr_t& samples) {
  divide_by_scale(samples, "lib_normalization_t::filter_energy_normalize", "erengy",
                  [](const lib_iq_data_arr_t& s) { return energy_of(s); });
}

void lib_normalization_t::sum_normalize(lib_fp_data_arr_t& values) {
  divide_by_scale(values, "lib_normalization_t::sum_normalize", "sum",
                  [](const lib_fp_data_arr_t& v) {
                    fp64 sum = 0.0;
                    for (const fp64 x : v) {
                      sum += x;
                    }
                    return sum;
                  });
}

void lib_normalization_t::sum_normalize(lib_iq_data_arr_t& samples) {
  divide_by_scale(samples, "lib_normalization_t::sum_normalize", "sum",
                  [](const lib_iq_data_arr_t& s) {
                    fp64 sum = 0.0;
                    for (const auto& x : s) {
                      sum += plib_t::get_complex_amplitude(x);
                    }
                    return sum;
                  });
}

void lib_normalization_t::amplitude_max_normalize(lib_iq_data_arr_t& samples) {
  divide_by_scale(samples, "lib_normalization_t::amplitude_max_normalize", "max_amplitude",
                  [](const lib_iq_data_arr_t& s) { return plib_t::get_data_max_amplitude(s); });
}

void lib_normalization_t::max_normalize(lib_iq_data_arr_t& samples) {
  divide_by_scale(samples, "lib_normalization_t::max_normalize", "max_value",
                  [](const lib_iq_data_arr_t& s) {
                    fp64 peak = 0.0;
                    for (const auto& x : s) {
                      peak = std::max({peak, std::abs(x.real()), std::abs(x.imag())});
                    }
                    return peak;
                  });
}

}  // namespace nal::common_lib

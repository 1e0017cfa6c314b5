#include "lib/lib_window_function.h"

#include <cmath>

#include "lib/lib_normalization.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

constexpr fp64 default_gauss_width_factor = 2.5;
constexpr fp64 default_kaiser_beta = 6.0;

// Coefficients a_k of w(n) = sum a_k cos(2 k pi n / (N - 1)); nullptr for the other types.
const lib_fp_data_arr_t* cosine_sum_coefficients(window_type_t type) {
  static const lib_fp_data_arr_t hamming{0.54, -0.46};
  static const lib_fp_data_arr_t hanning{0.5, -0.5};
  static const lib_fp_data_arr_t blackman{0.42, -0.5, 0.08};
  static const lib_fp_data_arr_t blackman_harris{0.35875, -0.48829, 0.14128, -0.01168};
  static const lib_fp_data_arr_t flat_top{0.21557895, -0.41663158, 0.277263158, -0.083578947,
                                          0.006947368};
  static const lib_fp_data_arr_t flat_top_positive{0.3232153789, 0.47149214396, 0.17553412995,
                                                   0.0284969901, 0.00126135709};
  switch (type) {
    case WINDOW_HAMMING:
      return &hamming;
    case WINDOW_HANNING:
      return &hanning;
    case WINDOW_BLACKMAN:
      return &blackman;
    case WINDOW_BLACKMAN_HARRIS:
      return &blackman_harris;
    case WINDOW_FLAT_TOP:
      return &flat_top;
    case WINDOW_FLAT_TOP_POSITIVE:
      return &flat_top_positive;
    default:
      return nullptr;
  }
}

// Fills `out` with (shape(n), 0) for n = 0..length-1, then sum-normalises on request.
template <typename shape_fn_t>
void fill_window(lib_iq_data_arr_t& out, uint32 length, bool normalize, shape_fn_t shape) {
  out.resize(length);
  for (uint32 n = 0; n < length; ++n) {
    out[n] = {shape(static_cast<fp64>(n)), 0.0};
  }
  if (normalize) {
    lib_normalization_t::sum_normalize(out);
  }
}

fp64 half_span(uint32 length) {
  return (static_cast<fp64>(length) - 1.0) * 0.5;
}

}  // namespace

void lib_window_function_t::apply_window_functon(lib_iq_data_arr_t& samples, window_type_t type) {
  if (samples.size() < 2) {
    lib_report(
        "lib_window_function_t::apply_window_functon Report: Input Data Array is Too Short!");
    return;
  }
  lib_iq_data_arr_t window;
  _generate_win_data_arr(window, type, static_cast<uint32>(samples.size()), true);
  if (window.size() != samples.size()) {
    return;
  }
  for (std::size_t i = 0; i < samples.size(); ++i) {
    samples[i] = plib_t::complex_multiply(samples[i], window[i]);
  }
}

void lib_window_function_t::_generate_win_data_arr(lib_iq_data_arr_t& out, window_type_t type,
                                                   uint32 length, bool normalize) {
  switch (type) {
    case WINDOW_RECTANGLE:
      fill_window(out, length, normalize, [](fp64) { return 1.0; });
      return;
    case WINDOW_GAUSS:
      generate_gauss_window(out, length, normalize, default_gauss_width_factor);
      return;
    case WINDOW_KAISER:
      generate_kaiser_window(out, length, normalize, default_kaiser_beta);
      return;
    default:
      break;
  }
  const lib_fp_data_arr_t* coefficients = cosine_sum_coefficients(type);
  if (coefficients == nullptr) {
    out.clear();
    lib_report(
        "lib_window_function_t::_generate_win_data_arr Report : Error Window Function Type!");
    return;
  }
  const fp64 last_index = static_cast<fp64>(length) - 1.0;
  fill_window(out, length, normalize, [coefficients, last_index](fp64 n) {
    fp64 w = 0.0;
    for (std::size_t k = 0; k < coefficients->size(); ++k) {
      w += (*coefficients)[k] * std::cos(static_cast<fp64>(2 * k) * lib_pi * n / last_index);
    }
    return w;
  });
}

void lib_window_function_t::generate_kaiser_window(lib_iq_data_arr_t& out, uint32 length,
                                                   bool normalize, fp64 beta) {
  if (beta < 0.0) {
    lib_report(
        "lib_window_function_t::generate_kaiser_window Report: Beta should be NOT Negative!");
    return;
  }
  const fp64 m = half_span(length);
  const fp64 i0_beta = _calc_bessel_i0(beta);
  fill_window(out, length, normalize, [m, beta, i0_beta](fp64 n) {
    const fp64 r = (n - m) / m;
    return _calc_bessel_i0(beta * std::sqrt(1.0 - r * r)) / i0_beta;
  });
}

void lib_window_function_t::generate_gauss_window(lib_iq_data_arr_t& out, uint32 length,
                                                  bool normalize, fp64 width_factor) {
  out.assign(length, {0.0, 0.0});
  if (width_factor < 0.0 || std::abs(width_factor) < lib_tolerance) {
    lib_report(
        "lib_window_function_t::generate_gauss_window Report: Width_factor should be positive!");
    return;
  }
  const fp64 m = half_span(length);
  fill_window(out, length, normalize, [m, width_factor](fp64 n) {
    const fp64 r = ((n - m) * width_factor) / m;
    return std::exp(-0.5 * r * r);
  });
}

fp64 lib_window_function_t::_calc_polynomial(const lib_fp_data_arr_t& coefficients, fp64 x) {
  if (coefficients.empty()) {
    lib_report("lib_window_function_t::_calc_polynomial Report: Empty coefficents array!");
    return 0.0;
  }
  fp64 value = coefficients.back();
  for (auto it = coefficients.rbegin() + 1; it != coefficients.rend(); ++it) {
    value = value * x + *it;
  }
  return value;
}

fp64 lib_window_function_t::_calc_bessel_i0(fp64 x) {
  // Power series in (x/2)^2 near zero, then two asymptotic fits in 1/x.
  static const lib_fp_data_arr_t series{1.0,
                                        0.24999999999999992,
                                        0.027777777777778227,
                                        0.001736111111110238,
                                        6.944444444533525e-05,
                                        1.9290123451321993e-06,
                                        3.936759911025107e-08,
                                        6.151186727044393e-10,
                                        7.594070020589734e-12,
                                        7.593897933698364e-14,
                                        6.277677736362927e-16,
                                        4.347097041532723e-18,
                                        2.6341774269010917e-20,
                                        1.1394303774482283e-22,
                                        9.079269200856249e-25};
  static const lib_fp_data_arr_t mid_range{
      0.3989422804014251,  0.049867785060496196, 0.02805062339283126, 0.02922112251660479,
      0.04442072994936595, 0.13097057460585673,  -3.35052280231727,   233.02571158351472,
      -11336.635069717235, 424057.6743178673,    -12315702.859569874, 280231938.15526754,
      -5018839997.137779,  70802924301.51091,    -784261082124.8112,  6768257378540.966,
      -44903484969613.805, 224155239966959.0,    -813426467865659.4,  2023910973916877.8,
      -3086757152953709.0, 2175875438638190.8};
  static const lib_fp_data_arr_t large_range{0.3989422804014329, 0.04986778504914346,
                                             0.02805063089165061, 0.029217909685391518,
                                             0.04533712087625794};
  // I0 is even; the fits in 1/x are written for positive x.
  const fp64 ax = std::abs(x);
  if (ax < 7.75) {
    const fp64 a = x * x * 0.25;
    return _calc_polynomial(series, a) * a + 1.0;
  }
  if (ax < 500.0) {
    return std::exp(ax) * _calc_polynomial(mid_range, 1.0 / ax) / std::sqrt(ax);
  }
  // Two half exponentials, so that exp alone does not overflow before the product does.
  const fp64 e = std::exp(ax * 0.5);
  return (_calc_polynomial(large_range, 1.0 / ax) / std::sqrt(ax)) * e * e;
}

}  // namespace nal::common_lib

#pragma once
// Classic window functions as complex arrays with zero imaginary part. Stateless; every member is
// static and safe on any thread. The coefficient tables (cosine sums, Bessel polynomials) are
// function-level statics, built once, thread-safely, at first use.
//
// Window of length N, n = 0..N-1, M = (N - 1) / 2. Windows are symmetric ("periodic" forms are not
// offered): Hamming and Hanning reach their ends at n = 0 and n = N - 1. A length of 1 divides by
// N - 1 = 0 for every type except the rectangle; only apply_window_functon refuses it, the other
// entry points leave that check to their callers.

#include "lib/lib_types.h"

namespace nal::common_lib {

enum window_type_t : uint32 {
  WINDOW_RECTANGLE = 0,
  WINDOW_HAMMING = 1,
  WINDOW_HANNING = 2,
  WINDOW_GAUSS = 3,   // width factor 2.5
  WINDOW_KAISER = 4,  // beta 6.0
  WINDOW_BLACKMAN = 5,
  WINDOW_BLACKMAN_HARRIS = 6,
  WINDOW_FLAT_TOP = 7,
  // All five cosine-sum coefficients positive: high at both ends, low in the middle. That is the
  // definition this system uses, not a misprint of the flat top.
  WINDOW_FLAT_TOP_POSITIVE = 8,
};

class lib_window_function_t {
 public:
  // Multiplies each sample by the sum-normalised window of the same length and type (full complex
  // product). Fewer than 2 samples are reported and left unchanged; so is an unknown type.
  static void apply_window_functon(lib_iq_data_arr_t& samples, window_type_t type);

  // Replaces `out` with the window of `type` and `length` samples. With `normalize` the entries are
  // divided by the sum of their magnitudes (so a non-negative window sums to 1). Gauss uses the
  // width factor 2.5 and Kaiser the beta 6.0. An unknown type is reported and empties `out`.
  static void _generate_win_data_arr(lib_iq_data_arr_t& out, window_type_t type, uint32 length,
                                     bool normalize);

  // w(n) = I0(beta sqrt(1 - ((n - M) / M)^2)) / I0(beta); beta 0 gives a flat window of ones.
  // A negative beta is reported and leaves `out` as it was.
  static void generate_kaiser_window(lib_iq_data_arr_t& out, uint32 length, bool normalize,
                                     fp64 beta);

  // w(n) = exp(-0.5 ((n - M) width_factor / M)^2); a larger factor gives a narrower window.
  // `out` is sized to `length` zeros first; a factor below 1e-12 is reported and leaves the zeros.
  static void generate_gauss_window(lib_iq_data_arr_t& out, uint32 length, bool normalize,
                                    fp64 width_factor);

  // Horner's rule: c[0] + x (c[1] + x (c[2] + ...)), starting at the last coefficient. An empty
  // array is reported and gives 0.0.
  static fp64 _calc_polynomial(const lib_fp_data_arr_t& coefficients, fp64 x);

  // Modified Bessel function of the first kind, order zero, to about 1e-15 relative. Even in x.
  // Infinity from |x| = 714 on, where I0 itself leaves the double range.
  static fp64 _calc_bessel_i0(fp64 x);
};

}  // namespace nal::common_lib

#pragma once
// The stateless front of all Fourier transforms. Forward transforms are unscaled; inverse ones
// divide by the length. Outputs are in natural order, bin 0 first. Safe on any thread.

#include "lib/lib_types.h"
#include "lib/lib_window_function.h"

namespace nal::common_lib {

class lib_fourier_transform_t {
 public:
  // Forward transform through the plan cache. The length is `length` when it is not 0 and not
  // below the input size (the input is zero-padded), else the input size.
  static bool deal_fft(const lib_iq_data_arr_t& input, lib_iq_data_arr_t& out, uint32 length = 0);
  // Inverse transform. The length is `length` when it is not 0 and not above the input size,
  // else the input size; a length below the input size is refused by the length check.
  static bool deal_ifft(const lib_iq_data_arr_t& input, lib_iq_data_arr_t& out, uint32 length = 0);
  // The same through FFTW's own threads; a thread count of 0 is reported and leaves `out` alone.
  static bool deal_multi_thread_fft(const lib_iq_data_arr_t& input, lib_iq_data_arr_t& out,
                                    uint32 threads, uint32 length = 0);
  static bool deal_multi_thread_ifft(const lib_iq_data_arr_t& input, lib_iq_data_arr_t& out,
                                     uint32 threads, uint32 length = 0);
  // Moves bin 0 to the centre: index N div 2 after the shift.
  static void deal_fft_shift(lib_iq_data_arr_t& samples);
  // Windowed, zero-padded (to a power of 2, at least 4) and shifted spectrum of `samples`;
  // `normalize` scales the peak to 1.
  static void deal_spectrum(const lib_iq_data_arr_t& samples, lib_iq_data_arr_t& out,
                            bool normalize, window_type_t window);
};

}  // namespace nal::common_lib

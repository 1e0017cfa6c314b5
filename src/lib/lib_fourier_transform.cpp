#include "lib/lib_fourier_transform.h"

#include <algorithm>

#include "lib/lib_fft_plan_manager.h"
#include "lib/lib_fftw_plan_multi_thread.h"
#include "lib/lib_normalization.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

uint32 input_size(const lib_iq_data_arr_t& input) {
  return static_cast<uint32>(input.size());
}

uint32 forward_length(const lib_iq_data_arr_t& input, uint32 length) {
  return (length != 0 && length >= input.size()) ? length : input_size(input);
}

uint32 inverse_length(const lib_iq_data_arr_t& input, uint32 length) {
  return (length != 0 && length <= input.size()) ? length : input_size(input);
}

bool multi_thread_transform(const lib_iq_data_arr_t& input, lib_iq_data_arr_t& out, uint32 threads,
                            uint32 length, bool inverse) {
  auto& transform = lib_fftw_plan_multi_thread_t::instance();
  transform.set_thread_number(threads);
  const bool done = transform.deal_transform(length, input, out, inverse);
  transform.reset_thread_number();
  return done;
}

}  // namespace

bool lib_fourier_transform_t::deal_fft(const lib_iq_data_arr_t& input, lib_iq_data_arr_t& out,
                                       uint32 length) {
  return lib_fft_plan_manager_t::instance().deal_transform(forward_length(input, length), input,
                                                           out, false);
}

bool lib_fourier_transform_t::deal_ifft(const lib_iq_data_arr_t& input, lib_iq_data_arr_t& out,
                                        uint32 length) {
  return lib_fft_plan_manager_t::instance().deal_transform(inverse_length(input, length), input,
                                                           out, true);
}

bool lib_fourier_transform_t::deal_multi_thread_fft(const lib_iq_data_arr_t& input,
                                                    lib_iq_data_arr_t& out, uint32 threads,
                                                    uint32 length) {
  if (threads == 0) {
    lib_report("lib_fourier_transform_t::deal_multi_thread_fft Report : Illegal Thread Number!");
    return true;
  }
  return multi_thread_transform(input, out, threads, forward_length(input, length), false);
}

bool lib_fourier_transform_t::deal_multi_thread_ifft(const lib_iq_data_arr_t& input,
                                                     lib_iq_data_arr_t& out, uint32 threads,
                                                     uint32 length) {
  if (threads == 0) {
    lib_report("lib_fourier_transform_t::deal_multi_thread_ifft Report : Illegal Thread Number!");
    return true;
  }
  return multi_thread_transform(input, out, threads, inverse_length(input, length), true);
}

void lib_fourier_transform_t::deal_fft_shift(lib_iq_data_arr_t& samples) {
  const std::size_t half = (samples.size() + 1) / 2;
  std::rotate(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(half), samples.end());
}

void lib_fourier_transform_t::deal_spectrum(const lib_iq_data_arr_t& samples,
                                            lib_iq_data_arr_t& out, bool normalize,
                                            window_type_t window) {
  lib_iq_data_arr_t windowed = samples;
  lib_window_function_t::apply_window_functon(windowed, window);
  const uint32 length = plib_t::next_power_of_2(input_size(windowed), 4);
  deal_fft(windowed, out, length);
  deal_fft_shift(out);
  if (normalize) {
    lib_normalization_t::amplitude_max_normalize(out);
  }
}

}  // namespace nal::common_lib

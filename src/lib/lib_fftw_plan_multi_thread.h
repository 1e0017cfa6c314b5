#pragma once
// The rare big transform that uses FFTW's own worker threads. Created at first use; whole
// transforms run one at a time under its mutex, each with a plan made and destroyed for it.
// Not to be used while lib_fft_plan_manager_t::clear_up runs.

#include <mutex>

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_fftw_plan_multi_thread_t {
 public:
  static lib_fftw_plan_multi_thread_t& instance();

  lib_fftw_plan_multi_thread_t(const lib_fftw_plan_multi_thread_t&) = delete;
  lib_fftw_plan_multi_thread_t& operator=(const lib_fftw_plan_multi_thread_t&) = delete;

  // FFTW worker threads for the plans made from now on (1 = single-threaded).
  void set_thread_number(uint32 threads);
  void reset_thread_number();
  // Same contract as lib_fft_plan_manager_t::deal_transform.
  bool deal_transform(uint32 length, const lib_iq_data_arr_t& input, lib_iq_data_arr_t& out,
                      bool inverse);

 private:
  lib_fftw_plan_multi_thread_t();
  ~lib_fftw_plan_multi_thread_t() = default;

  void _init_multi_thread_fftw();

  std::mutex _mutex;
  uint32 _thread_number = 1;
};

}  // namespace nal::common_lib

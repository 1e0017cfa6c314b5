#include "lib/lib_fftw_plan_multi_thread.h"

#include <fftw3.h>

#include "lib/lib_fftw_library.h"
#include "lib/lib_fftw_work_arrays.h"
#include "lib/lib_report.h"

namespace nal::common_lib {

lib_fftw_plan_multi_thread_t& lib_fftw_plan_multi_thread_t::instance() {
  static lib_fftw_plan_multi_thread_t transform;
  return transform;
}

lib_fftw_plan_multi_thread_t::lib_fftw_plan_multi_thread_t() {
  _init_multi_thread_fftw();
}

void lib_fftw_plan_multi_thread_t::_init_multi_thread_fftw() {
  if (!lib_fftw_library_t::initialise()) {
    lib_report(
        "lib_fftw_plan_multi_thread_t::_init_multi_thread_fftw Report : Init fftw with "
        "multi-thread "
        "Failed!");
  }
  _thread_number = 1;
}

void lib_fftw_plan_multi_thread_t::set_thread_number(uint32 threads) {
  std::lock_guard<std::mutex> lock(_mutex);
  _thread_number = threads;
  fftw_plan_with_nthreads(static_cast<int>(threads));
}

void lib_fftw_plan_multi_thread_t::reset_thread_number() {
  set_thread_number(1);
}

bool lib_fftw_plan_multi_thread_t::deal_transform(uint32 length, const lib_iq_data_arr_t& input,
                                                  lib_iq_data_arr_t& out, bool inverse) {
  std::lock_guard<std::mutex> lock(_mutex);
  if (length == 0) {
    lib_report("lib_fftw_plan_multi_thread_t::deal_transform Report : Transform length is zero!");
    return false;
  }
  if (input.size() > length) {
    lib_report(
        "lib_fftw_plan_multi_thread_t::deal_transform Report : Input data length NOT match!");
    return false;
  }
  lib_fftw_work_arrays_t arrays(length);
  if (!arrays.valid()) {
    lib_report("lib_fftw_plan_multi_thread_t::deal_transform Report : Fail to memory allocation!");
    return false;
  }
  // Planning may write the arrays, so the input is copied in only afterwards.
  const fftw_plan plan = fftw_plan_dft_1d(static_cast<int>(length), arrays.input(), arrays.output(),
                                          inverse ? FFTW_BACKWARD : FFTW_FORWARD, FFTW_ESTIMATE);
  if (plan == nullptr) {
    lib_report("lib_fftw_plan_multi_thread_t::deal_transform Report : Fail to create plan!");
    return false;
  }
  arrays.load(input);
  fftw_execute(plan);
  fftw_destroy_plan(plan);
  arrays.store(out, inverse);
  return true;
}

}  // namespace nal::common_lib

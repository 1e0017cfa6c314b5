#include "lib/lib_fftw_library.h"

#include <fftw3.h>

namespace nal::common_lib {

bool lib_fftw_library_t::initialise() {
  static const bool threads_ready = [] {
    const bool ready = fftw_init_threads() != 0;
    fftw_make_planner_thread_safe();
    return ready;
  }();
  return threads_ready;
}

}  // namespace nal::common_lib

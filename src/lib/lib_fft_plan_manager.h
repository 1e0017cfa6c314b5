#pragma once
// The process-wide cache of FFTW plans, one per length and direction, created at first use and
// destroyed at exit. Every transform of the library goes through it.
//
// Thread safety: all members may be called from any number of threads at once. Planning and the
// plan tables are guarded by one mutex; execution runs without a lock on arrays owned by the
// call. `clear_up` refuses while any transform or acquired plan is in use.

#include <fftw3.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <unordered_map>

#include "lib/lib_fftw_work_arrays.h"
#include "lib/lib_sharded_counter.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_fft_plan_manager_t {
 public:
  static lib_fft_plan_manager_t& instance();

  lib_fft_plan_manager_t(const lib_fft_plan_manager_t&) = delete;
  lib_fft_plan_manager_t& operator=(const lib_fft_plan_manager_t&) = delete;

  // Transforms `input`, zero-padded to `length`, into `out` (resized to `length`). Forward is
  // unscaled, inverse divides by `length`. An input longer than `length`, a length of 0 or a
  // failed allocation is reported and returns false with `out` untouched.
  bool deal_transform(uint32 length, const lib_iq_data_arr_t& input, lib_iq_data_arr_t& out,
                      bool inverse);

  // For block loops that keep their own buffers: returns the cached plan of a length and
  // direction (planning it if needed) and counts it as in use until `release_plan`. Execute it
  // with fftw_execute_dft on arrays from fftw_alloc_complex of at least `length` elements, and
  // release it from the same thread.
  // Returns nullptr, with nothing to release, for a length of 0 or a failed plan.
  fftw_plan acquire_plan(uint32 length, bool inverse);
  void release_plan();

  // Destroys every plan and FFTW's accumulated state. Refuses, with a report, while transforms
  // are running; plans are made again on next use.
  bool clear_up();
  // clear_up, then the planning buffers are allocated afresh.
  void reset();

 private:
  lib_fft_plan_manager_t();
  ~lib_fft_plan_manager_t();

  void _init_buffer();
  bool _resize_buffer(uint32 length);
  bool _check_buffer(uint32 length);
  void _create_forward_plan(uint32 length);
  void _create_backward_plan(uint32 length);
  void _create_plan(uint32 length, int sign, std::unordered_map<uint32, fftw_plan>& plans);
  fftw_plan _get_plan(uint32 length, bool inverse);
  fftw_plan _get_plan_for_this_thread(uint32 length, bool inverse);
  // Destroys every plan and FFTW's accumulated state; the caller holds the mutex.
  void _destroy_plans();

  std::mutex _mutex;
  // Transforms and acquired plans in use.
  lib_sharded_counter_t _calculating_count;
  // Bumped by every clear_up; threads keep their own copy of the plan table and drop it when
  // this changes, so that steady-state lookups take no lock.
  std::atomic<std::uint64_t> _generation{0};
  // Planning buffers: FFTW_ESTIMATE never reads them, but plans take their alignment from them.
  lib_fftw_work_arrays_t _planning_arrays{0};
  std::unordered_map<uint32, fftw_plan> _forward_plans;
  std::unordered_map<uint32, fftw_plan> _backward_plans;
};

}  // namespace nal::common_lib

#include "lib/lib_fft_plan_manager.h"

#include <algorithm>
#include <optional>

#include "lib/lib_fftw_library.h"
#include "lib/lib_fftw_work_arrays.h"
#include "lib/lib_report.h"

namespace nal::common_lib {

namespace {

constexpr uint32 initial_buffer_length = 64;
constexpr uint32 thread_arrays_limit = 1u << 16;

}  // namespace

lib_fft_plan_manager_t& lib_fft_plan_manager_t::instance() {
  static lib_fft_plan_manager_t manager;
  return manager;
}

lib_fft_plan_manager_t::lib_fft_plan_manager_t() {
  lib_fftw_library_t::initialise();
  _init_buffer();
}

lib_fft_plan_manager_t::~lib_fft_plan_manager_t() {
  // At exit nothing can be transforming any more, but a transform that failed its length check
  // still counts as running; destroy the plans regardless so that nothing leaks.
  std::lock_guard<std::mutex> lock(_mutex);
  _destroy_plans();
}

void lib_fft_plan_manager_t::_init_buffer() {
  std::lock_guard<std::mutex> lock(_mutex);
  if (!_planning_arrays.resize(initial_buffer_length)) {
    lib_report("lib_fft_plan_manager_t::_init_buffer Report : Fail to memory allocation!");
  }
}

bool lib_fft_plan_manager_t::_resize_buffer(uint32 length) {
  if (!_planning_arrays.resize(length)) {
    lib_report("lib_fft_plan_manager_t::_resize_buffer Report : Fail to memory allocation!");
    return false;
  }
  return true;
}

bool lib_fft_plan_manager_t::_check_buffer(uint32 length) {
  if (_planning_arrays.length() < length || !_planning_arrays.valid()) {
    return _resize_buffer(std::max(length, initial_buffer_length));
  }
  return true;
}

void lib_fft_plan_manager_t::_create_plan(uint32 length, int sign,
                                          std::unordered_map<uint32, fftw_plan>& plans) {
  if (plans.count(length) != 0 || !_check_buffer(length)) {
    return;
  }
  const fftw_plan plan = fftw_plan_dft_1d(static_cast<int>(length), _planning_arrays.input(),
                                          _planning_arrays.output(), sign, FFTW_ESTIMATE);
  if (plan != nullptr) {
    plans.emplace(length, plan);
  }
}

void lib_fft_plan_manager_t::_create_forward_plan(uint32 length) {
  _create_plan(length, FFTW_FORWARD, _forward_plans);
}

void lib_fft_plan_manager_t::_create_backward_plan(uint32 length) {
  _create_plan(length, FFTW_BACKWARD, _backward_plans);
}

fftw_plan lib_fft_plan_manager_t::_get_plan(uint32 length, bool inverse) {
  std::lock_guard<std::mutex> lock(_mutex);
  auto& plans = inverse ? _backward_plans : _forward_plans;
  auto found = plans.find(length);
  if (found == plans.end()) {
    if (inverse) {
      _create_backward_plan(length);
    } else {
      _create_forward_plan(length);
    }
    found = plans.find(length);
  }
  return found == plans.end() ? nullptr : found->second;
}

fftw_plan lib_fft_plan_manager_t::_get_plan_for_this_thread(uint32 length, bool inverse) {
  struct thread_plans_t {
    std::uint64_t generation = 0;
    std::unordered_map<std::uint64_t, fftw_plan> plans;
  };
  thread_local thread_plans_t cache;
  // The caller has counted itself as calculating before this load. clear_up bumps the generation
  // before it reads the count, so either clear_up sees the count and keeps every plan, or this
  // load sees the new generation and the stale copies are dropped (all these atomics are
  // sequentially consistent).
  const std::uint64_t generation = _generation.load();
  if (cache.generation != generation) {
    cache.plans.clear();
    cache.generation = generation;
  }
  const std::uint64_t key = (static_cast<std::uint64_t>(length) << 1) | (inverse ? 1u : 0u);
  const auto found = cache.plans.find(key);
  if (found != cache.plans.end()) {
    return found->second;
  }
  const fftw_plan plan = _get_plan(length, inverse);
  if (plan != nullptr) {
    cache.plans.emplace(key, plan);
  }
  return plan;
}

fftw_plan lib_fft_plan_manager_t::acquire_plan(uint32 length, bool inverse) {
  if (length == 0) {
    return nullptr;
  }
  _calculating_count.increment();
  const fftw_plan plan = _get_plan_for_this_thread(length, inverse);
  if (plan == nullptr) {
    _calculating_count.decrement();
  }
  return plan;
}

void lib_fft_plan_manager_t::release_plan() {
  _calculating_count.decrement();
}

bool lib_fft_plan_manager_t::deal_transform(uint32 length, const lib_iq_data_arr_t& input,
                                            lib_iq_data_arr_t& out, bool inverse) {
  if (length == 0) {
    lib_report("lib_fft_plan_manager_t::deal_transform Report : Transform length is zero!");
    return false;
  }
  const fftw_plan plan = acquire_plan(length, inverse);
  if (plan == nullptr) {
    lib_report("lib_fft_plan_manager_t::deal_transform Report : Fail to create plan!");
    return false;
  }
  // The two failures below leave the plan counted as in use, as they always have: clear_up then
  // refuses for the rest of the process rather than risk destroying a plan in use.
  if (input.size() > length) {
    lib_report("lib_fft_plan_manager_t::deal_transform Report : Input data length NOT match!");
    return false;
  }
  // Short transforms, the common case in block loops, reuse arrays kept by the calling thread;
  // long ones allocate per call so that no thread keeps a large buffer alive.
  thread_local lib_fftw_work_arrays_t thread_arrays(0);
  std::optional<lib_fftw_work_arrays_t> call_arrays;
  if (length > thread_arrays_limit) {
    call_arrays.emplace(length);
  }
  lib_fftw_work_arrays_t& arrays = call_arrays ? *call_arrays : thread_arrays;
  if (!arrays.resize(length)) {
    lib_report("lib_fft_plan_manager_t::deal_transform Report : Fail to memory allocation!");
    return false;
  }
  arrays.load(input);
  fftw_execute_dft(plan, arrays.input(), arrays.output());
  arrays.store(out, inverse);
  release_plan();
  return true;
}

bool lib_fft_plan_manager_t::clear_up() {
  std::lock_guard<std::mutex> lock(_mutex);
  // Read under the mutex and after the generation bump: a transform counts itself before it
  // looks for its plan, so a plan handed out before this point is always seen here.
  ++_generation;
  if (_calculating_count.sum() != 0) {
    lib_report(
        "lib_fftw_plan_manager_t::clear_up Report: Try to clear fftw plan during calculation!");
    return false;
  }
  _destroy_plans();
  return true;
}

void lib_fft_plan_manager_t::_destroy_plans() {
  for (auto& entry : _forward_plans) {
    fftw_destroy_plan(entry.second);
  }
  for (auto& entry : _backward_plans) {
    fftw_destroy_plan(entry.second);
  }
  _forward_plans.clear();
  _backward_plans.clear();
  fftw_cleanup();
}

void lib_fft_plan_manager_t::reset() {
  clear_up();
  _init_buffer();
}

}  // namespace nal::common_lib

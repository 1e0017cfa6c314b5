#pragma once
// Process-wide FFTW set-up shared by the two owners of plans (the plan cache and the
// multi-threaded transform), done once before either makes a plan.

namespace nal::common_lib {

class lib_fftw_library_t {
 public:
  // Initialises FFTW's threads support and makes its planner safe to call from several threads,
  // so that the two plan owners, each guarded by its own mutex, never plan at the same time
  // inside FFTW. Runs once per process; later calls return the first result. Thread-safe.
  static bool initialise();
};

}  // namespace nal::common_lib

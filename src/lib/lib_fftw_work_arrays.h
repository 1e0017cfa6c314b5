#pragma once
// The two FFTW-aligned arrays of one transform, owned for the duration of a call.

#include <fftw3.h>

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_fftw_work_arrays_t {
 public:
  // Allocates two arrays of `length` elements with fftw_alloc_complex; check `valid()`.
  // A length of 0 allocates nothing.
  explicit lib_fftw_work_arrays_t(uint32 length);
  ~lib_fftw_work_arrays_t();
  lib_fftw_work_arrays_t(const lib_fftw_work_arrays_t&) = delete;
  lib_fftw_work_arrays_t& operator=(const lib_fftw_work_arrays_t&) = delete;

  // Sets the length, reallocating only when the arrays are too small; returns `valid()`.
  bool resize(uint32 length);
  bool valid() const { return _input != nullptr && _output != nullptr; }
  uint32 length() const { return _length; }
  fftw_complex* input() { return _input; }
  fftw_complex* output() { return _output; }

  // Copies `samples` (at most `length` of them) to the input array and zeroes the rest.
  void load(const lib_iq_data_arr_t& samples);
  // Copies the output array to `out`; `inverse` divides each component by the length, which
  // makes a forward and an inverse transform in a row give the input back.
  void store(lib_iq_data_arr_t& out, bool inverse) const;

 private:
  void _free();

  uint32 _length = 0;
  uint32 _capacity = 0;
  fftw_complex* _input = nullptr;
  fftw_complex* _output = nullptr;
};

}  // namespace nal::common_lib

#include "lib/lib_fftw_work_arrays.h"

#include <algorithm>

namespace nal::common_lib {

lib_fftw_work_arrays_t::lib_fftw_work_arrays_t(uint32 length) {
  resize(length);
}

lib_fftw_work_arrays_t::~lib_fftw_work_arrays_t() {
  _free();
}

void lib_fftw_work_arrays_t::_free() {
  fftw_free(_input);
  fftw_free(_output);
  _input = nullptr;
  _output = nullptr;
  _capacity = 0;
}

bool lib_fftw_work_arrays_t::resize(uint32 length) {
  if (length > _capacity || !valid()) {
    _free();
    if (length > 0) {
      _input = fftw_alloc_complex(length);
      _output = fftw_alloc_complex(length);
      _capacity = valid() ? length : 0;
    }
  }
  _length = length;
  return valid();
}

void lib_fftw_work_arrays_t::load(const lib_iq_data_arr_t& samples) {
  auto* first = reinterpret_cast<lib_iq_sample_t*>(_input);
  const std::size_t count = std::min<std::size_t>(samples.size(), _length);
  std::copy_n(samples.begin(), count, first);
  std::fill(first + count, first + _length, lib_iq_sample_t(0.0, 0.0));
}

void lib_fftw_work_arrays_t::store(lib_iq_data_arr_t& out, bool inverse) const {
  const auto* result = reinterpret_cast<const lib_iq_sample_t*>(_output);
  out.assign(result, result + _length);
  if (inverse) {
    const fp64 scale = _length;
    for (auto& sample : out) {
      sample = {sample.real() / scale, sample.imag() / scale};
    }
  }
}

}  // namespace nal::common_lib

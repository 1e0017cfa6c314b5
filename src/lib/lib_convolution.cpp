#include "lib/lib_convolution.h"

#include <omp.h>

#include <algorithm>
#include <atomic>

#include "lib/lib_fft_plan_manager.h"
#include "lib/lib_fftw_work_arrays.h"
#include "lib/lib_fourier_transform.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

// Overlap-add of one call. Block b filters samples [bH, bH + H) with an F-point FFT and adds its
// F results onto the output from bH. Every output sample is the sum of at most two blocks, first
// the earlier one, so the sum below equals "zeros, then block after block in ascending order"
// bit for bit whatever the partition into threads: IEEE addition is commutative, and each
// thread's first half-block, which overlaps its predecessor's last one, is added after the
// parallel region.
class overlap_add_t {
 public:
  overlap_add_t(const lib_iq_data_arr_t& samples, const lib_iq_data_arr_t& taps)
      : _samples(samples),
        _fft_length(plib_t::next_power_of_2(2 * static_cast<uint32>(taps.size()), 32)),
        _hop(_fft_length / 2),
        _block_count((samples.size() + _hop - 1) / _hop),
        _out_length(samples.size() + taps.size() - 1) {
    lib_fourier_transform_t::deal_fft(taps, _taps_spectrum, _fft_length);
    // The inverse transform's 1/F is folded into the taps. F is a power of 2, so this is exact
    // and equals scaling each block after its inverse transform.
    const fp64 scale = _fft_length;
    for (auto& bin : _taps_spectrum) {
      bin = {bin.real() / scale, bin.imag() / scale};
    }
  }

  std::size_t block_count() const { return _block_count; }

  bool run(lib_iq_data_arr_t& out, uint32 thread_count) {
    auto& plans = lib_fft_plan_manager_t::instance();
    const fftw_plan forward = plans.acquire_plan(_fft_length, false);
    const fftw_plan backward = plans.acquire_plan(_fft_length, true);
    bool done = forward != nullptr && backward != nullptr;
    if (done && _block_count == 0) {
      out.assign(_out_length, lib_iq_sample_t(0.0, 0.0));
    } else if (done) {
      // Every output sample is written below, so a reused array of the right size is not zeroed.
      out.resize(_out_length);
      done = _run_blocks(out, thread_count, forward, backward);
    }
    if (forward != nullptr) {
      plans.release_plan();
    }
    if (backward != nullptr) {
      plans.release_plan();
    }
    return done;
  }

 private:
  bool _run_blocks(lib_iq_data_arr_t& out, uint32 thread_count, fftw_plan forward,
                   fftw_plan backward) {
    std::vector<lib_iq_data_arr_t> seams(thread_count, lib_iq_data_arr_t(_hop));
    std::vector<std::size_t> first_blocks(thread_count, _block_count);
    std::size_t team_size = 1;
    std::atomic<bool> allocated{true};

#pragma omp parallel num_threads(static_cast <int>(thread_count))
    {
      const std::size_t team = static_cast<std::size_t>(omp_get_num_threads());
      const std::size_t thread = static_cast<std::size_t>(omp_get_thread_num());
      const std::size_t quotient = _block_count / team;
      const std::size_t remainder = _block_count % team;
      const std::size_t first = thread * quotient + std::min(thread, remainder);
      const std::size_t last = first + quotient + (thread < remainder ? 1 : 0);
      first_blocks[thread] = first;
      if (thread == 0) {
        team_size = team;
      }

      lib_fftw_work_arrays_t arrays(_fft_length);
      if (!arrays.valid()) {
        allocated = false;
      } else if (first < last) {
        _filter_blocks(first, last, thread == 0 ? nullptr : &seams[thread], arrays, forward,
                       backward, out);
      }
    }

    if (!allocated) {
      lib_report("lib_convolution_t::deal_fft_convolution Report: Fail to memory allocation!");
      out.clear();
      return false;
    }
    for (std::size_t thread = 1; thread < team_size; ++thread) {
      const std::size_t start = first_blocks[thread] * _hop;
      for (std::size_t j = 0; j < _hop && start + j < _out_length; ++j) {
        out[start + j] += seams[thread][j];
      }
    }
    return true;
  }

  // Filters blocks [first, last). The first block's leading half goes to `seam` when the block
  // before it belongs to another thread; the trailing half of the last block is written as it is
  // and completed by the next thread's seam.
  void _filter_blocks(std::size_t first, std::size_t last, lib_iq_data_arr_t* seam,
                      lib_fftw_work_arrays_t& arrays, fftw_plan forward, fftw_plan backward,
                      lib_iq_data_arr_t& out) const {
    auto* time = reinterpret_cast<lib_iq_sample_t*>(arrays.input());
    auto* spectrum = reinterpret_cast<lib_iq_sample_t*>(arrays.output());
    lib_iq_data_arr_t carry(_hop, lib_iq_sample_t(0.0, 0.0));

    for (std::size_t block = first; block < last; ++block) {
      const std::size_t start = block * _hop;
      const std::size_t count = std::min<std::size_t>(_hop, _samples.size() - start);
      std::copy_n(_samples.begin() + static_cast<std::ptrdiff_t>(start), count, time);
      std::fill(time + count, time + _fft_length, lib_iq_sample_t(0.0, 0.0));

      fftw_execute_dft(forward, arrays.input(), arrays.output());
      for (std::size_t k = 0; k < _fft_length; ++k) {
        spectrum[k] = plib_t::complex_multiply(spectrum[k], _taps_spectrum[k]);
      }
      fftw_execute_dft(backward, arrays.output(), arrays.input());

      if (block == first && seam != nullptr) {
        std::copy_n(time, _hop, seam->begin());
      } else {
        _store(out, start, carry, time);
      }
      for (std::size_t j = 0; j < _hop; ++j) {
        carry[j] = lib_iq_sample_t(0.0, 0.0) + time[_hop + j];
      }
    }
    const lib_iq_data_arr_t zeros(_hop, lib_iq_sample_t(0.0, 0.0));
    _store(out, last * _hop, zeros, carry.data());
  }

  // out[start + j] = base[j] + addend[j], within the output.
  void _store(lib_iq_data_arr_t& out, std::size_t start, const lib_iq_data_arr_t& base,
              const lib_iq_sample_t* addend) const {
    const std::size_t count =
        start < _out_length ? std::min<std::size_t>(_hop, _out_length - start) : 0;
    for (std::size_t j = 0; j < count; ++j) {
      out[start + j] = base[j] + addend[j];
    }
  }

  const lib_iq_data_arr_t& _samples;
  const uint32 _fft_length;
  const uint32 _hop;
  const std::size_t _block_count;
  const std::size_t _out_length;
  lib_iq_data_arr_t _taps_spectrum;
};

}  // namespace

bool lib_convolution_t::deal_fft_convolution(const lib_iq_data_arr_t& samples,
                                             const lib_iq_data_arr_t& taps, lib_iq_data_arr_t& out,
                                             bool multi_thread) {
  return deal_fft_convolution(samples, taps, out,
                              multi_thread ? plib_t::get_work_thread_number() : 1u);
}

bool lib_convolution_t::deal_fft_convolution(const lib_iq_data_arr_t& samples,
                                             const lib_iq_data_arr_t& taps, lib_iq_data_arr_t& out,
                                             uint32 thread_count) {
  if (taps.size() < 2) {
    lib_report("lib_convolution_t::deal_fft_convolution Report: Filter data array is too short!");
    out = samples;
    return false;
  }
  if (&out == &samples || &out == &taps) {
    const lib_iq_data_arr_t samples_copy = samples;
    const lib_iq_data_arr_t taps_copy = taps;
    return deal_fft_convolution(samples_copy, taps_copy, out, thread_count);
  }
  overlap_add_t convolution(samples, taps);
  const std::size_t blocks = std::max<std::size_t>(convolution.block_count(), 1);
  const uint32 threads = static_cast<uint32>(std::clamp<std::size_t>(thread_count, 1, blocks));
  return convolution.run(out, threads);
}

void lib_convolution_t::deal_convolution(const lib_iq_data_arr_t& samples,
                                         const lib_iq_data_arr_t& taps, lib_iq_data_arr_t& out) {
  if (samples.empty()) {
    out = taps;
    return;
  }
  lib_iq_data_arr_t result(samples.size() + taps.size() - 1, lib_iq_sample_t(0.0, 0.0));
  for (std::size_t i = 0; i < samples.size(); ++i) {
    for (std::size_t k = 0; k < taps.size(); ++k) {
      result[i + k] += plib_t::complex_multiply(samples[i], taps[k]);
    }
  }
  out = std::move(result);
}

}  // namespace nal::common_lib

#include "lib/lib_polyphase_resampler.h"

#include <omp.h>

#include <algorithm>
#include <cmath>

namespace nal::common_lib {

namespace {

// Branch lengths are padded to a multiple of this many points with zero taps, so that the real
// inner loop has no remainder.
constexpr std::size_t branch_granule = 4;

// The taps split into `ratio` (the up factor) branches of `branch_length` each, reversed so that
// every output is a forward dot product over consecutive points, and zero-padded at the short end.
// Real taps are stored twice (for I and Q) so that the inner loop runs over interleaved doubles.
struct polyphase_branches_t {
  std::size_t branch_length = 0;
  bool real = true;
  std::vector<fp64> duplicated;    // real taps: [branch][2 * branch_length]
  lib_iq_data_arr_t complex_taps;  // complex taps: [branch][branch_length]

  polyphase_branches_t(const lib_iq_data_arr_t& taps, std::size_t ratio)
      : branch_length(((taps.size() + ratio - 1) / ratio + branch_granule - 1) / branch_granule *
                      branch_granule) {
    real = std::all_of(taps.begin(), taps.end(), [](const auto& t) { return t.imag() == 0.0; });
    if (real) {
      duplicated.assign(ratio * 2 * branch_length, 0.0);
    } else {
      complex_taps.assign(ratio * branch_length, lib_iq_sample_t(0.0, 0.0));
    }
    for (std::size_t phase = 0; phase < ratio; ++phase) {
      for (std::size_t q = 0; phase + q * ratio < taps.size(); ++q) {
        const std::size_t t = branch_length - 1 - q;
        const lib_iq_sample_t tap = taps[phase + q * ratio];
        if (real) {
          duplicated[(phase * branch_length + t) * 2] = tap.real();
          duplicated[(phase * branch_length + t) * 2 + 1] = tap.real();
        } else {
          complex_taps[phase * branch_length + t] = tap;
        }
      }
    }
  }

  lib_iq_sample_t dot(std::size_t phase, const lib_iq_sample_t* points) const {
    return real ? _real_dot(&duplicated[phase * 2 * branch_length],
                            reinterpret_cast<const fp64*>(points))
                : _complex_dot(&complex_taps[phase * branch_length], points);
  }

 private:
  // Eight independent accumulators (I, Q, I, Q, ...) over interleaved doubles: the sums never
  // depend on the vector width the compiler picks, and the chains are short enough that the loop
  // runs at the multiplier's rate rather than the adder's latency.
  lib_iq_sample_t _real_dot(const fp64* taps, const fp64* values) const {
    fp64 acc[8] = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    const std::size_t count = 2 * branch_length;
    for (std::size_t j = 0; j < count; j += 8) {
      for (std::size_t lane = 0; lane < 8; ++lane) {
        acc[lane] += taps[j + lane] * values[j + lane];
      }
    }
    return {(acc[0] + acc[2]) + (acc[4] + acc[6]), (acc[1] + acc[3]) + (acc[5] + acc[7])};
  }

  lib_iq_sample_t _complex_dot(const lib_iq_sample_t* taps, const lib_iq_sample_t* values) const {
    fp64 re = 0.0;
    fp64 im = 0.0;
    for (std::size_t t = 0; t < branch_length; ++t) {
      re += taps[t].real() * values[t].real() - taps[t].imag() * values[t].imag();
      im += taps[t].real() * values[t].imag() + taps[t].imag() * values[t].real();
    }
    return {re, im};
  }
};

// ThreadSanitizer's runtime is not ready when the clone resolver runs at load time.
#if defined(__SANITIZE_THREAD__)
#define WAVELUME_VECTOR_CLONES
#else
#define WAVELUME_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#endif

// Outputs [begin, end) into `out`; returns their largest |I| or |Q|. Cloned for AVX2 so that
// machines that have it run the dot products on wider vectors; the arithmetic per lane is the
// same in every clone (no fused multiply-add), so results do not depend on the machine.
WAVELUME_VECTOR_CLONES fp64 resample_range(const polyphase_branches_t& branches,
                                           const lib_iq_sample_t* extended, std::size_t begin,
                                           std::size_t end, std::size_t centre, std::size_t up,
                                           std::size_t down, lib_iq_sample_t* out) {
  // Walk the outputs with their branch and first input, without a division per sample.
  const std::size_t start = begin * down + centre;
  std::size_t phase = start % up;
  std::size_t base = start / up;
  const std::size_t phase_step = down % up;
  const std::size_t base_step = down / up;
  fp64 peak = 0.0;
  for (std::size_t m = begin; m < end; ++m) {
    const lib_iq_sample_t sample = branches.dot(phase, extended + base + 1);
    out[m] = sample;
    peak = std::max({peak, std::abs(sample.real()), std::abs(sample.imag())});
    base += base_step;
    phase += phase_step;
    if (phase >= up) {
      phase -= up;
      ++base;
    }
  }
  return peak;
}

}  // namespace

bool lib_polyphase_resampler_t::deal_cyclic_interpolation(
    const lib_iq_data_arr_t& points, uint32 ratio, const lib_iq_data_arr_t& taps,
    std::size_t centre, lib_iq_data_arr_t& out, uint32 thread_count, fp64& largest_component) {
  return deal_cyclic_resampling(points, ratio, 1, taps, centre,
                                points.size() * static_cast<std::size_t>(ratio), out, thread_count,
                                largest_component);
}

bool lib_polyphase_resampler_t::deal_cyclic_resampling(const lib_iq_data_arr_t& input, uint32 up,
                                                       uint32 down, const lib_iq_data_arr_t& taps,
                                                       std::size_t centre, std::size_t count,
                                                       lib_iq_data_arr_t& out, uint32 thread_count,
                                                       fp64& largest_component) {
  largest_component = 0.0;
  if (input.empty() || up == 0 || down == 0 || taps.size() < 2) {
    out.clear();
    return false;
  }
  const std::size_t n = input.size();
  const polyphase_branches_t branches(taps, up);
  const std::size_t q = branches.branch_length;

  // Output m uses inputs base(m) - q + 1 .. base(m), base(m) = (m down + centre) div up, taken
  // cyclically; extended[e] holds input (e - q) mod n.
  const std::size_t last_base = count == 0 ? 0 : ((count - 1) * down + centre) / up;
  lib_iq_data_arr_t extended(last_base + q + 1);
  std::size_t source = (n - q % n) % n;
  for (auto& sample : extended) {
    sample = input[source];
    source = source + 1 == n ? 0 : source + 1;
  }

  out.resize(count);
  const int threads = static_cast<int>(std::max<uint32>(thread_count, 1));
  std::vector<fp64> largest(static_cast<std::size_t>(threads), 0.0);
#pragma omp parallel num_threads(threads)
  {
    const std::size_t team = static_cast<std::size_t>(omp_get_num_threads());
    const std::size_t thread = static_cast<std::size_t>(omp_get_thread_num());
    largest[thread] = resample_range(branches, extended.data(), count * thread / team,
                                     count * (thread + 1) / team, centre, up, down, out.data());
  }
  largest_component = *std::max_element(largest.begin(), largest.end());
  return true;
}

}  // namespace nal::common_lib

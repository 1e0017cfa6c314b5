#include "lib/lib_polyphase_interpolator.h"

#include <omp.h>

#include <algorithm>
#include <cmath>

namespace nal::common_lib {

namespace {

// Branch lengths are padded to a multiple of this many points with zero taps, so that the real
// inner loop has no remainder.
constexpr std::size_t branch_granule = 4;

// The taps split into `ratio` branches of `branch_length` each, reversed so that every output is
// a forward dot product over consecutive points, and zero-padded at the short end. Real taps are
// stored twice (for I and Q) so that the inner loop runs over interleaved doubles.
struct polyphase_branches_t {
  std::size_t branch_length = 0;
  bool real = true;
  std::vector<fp64> duplicated;     // real taps: [branch][2 * branch_length]
  lib_iq_data_arr_t complex_taps;   // complex taps: [branch][branch_length]

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
WAVELUME_VECTOR_CLONES fp64 interpolate_range(
    const polyphase_branches_t& branches, const lib_iq_sample_t* extended, std::size_t begin,
    std::size_t end, std::size_t centre, std::size_t ratio, lib_iq_sample_t* out) {
  // Walk the outputs with their branch and first point, without a division per sample.
  std::size_t phase = (begin + centre) % ratio;
  std::size_t base = (begin + centre) / ratio;
  fp64 peak = 0.0;
  for (std::size_t i = begin; i < end; ++i) {
    const lib_iq_sample_t sample = branches.dot(phase, extended + base + 1);
    out[i] = sample;
    peak = std::max({peak, std::abs(sample.real()), std::abs(sample.imag())});
    if (++phase == ratio) {
      phase = 0;
      ++base;
    }
  }
  return peak;
}

}  // namespace

bool lib_polyphase_interpolator_t::deal_cyclic_interpolation(const lib_iq_data_arr_t& points,
                                                            uint32 ratio,
                                                            const lib_iq_data_arr_t& taps,
                                                            lib_iq_data_arr_t& out,
                                                            uint32 thread_count,
                                                            fp64& largest_component) {
  return deal_cyclic_interpolation(points, ratio, taps, taps.size() / 2, out, thread_count,
                                   largest_component);
}

bool lib_polyphase_interpolator_t::deal_cyclic_interpolation(const lib_iq_data_arr_t& points,
                                                            uint32 ratio,
                                                            const lib_iq_data_arr_t& taps,
                                                            std::size_t centre,
                                                            lib_iq_data_arr_t& out,
                                                            uint32 thread_count,
                                                            fp64& largest_component) {
  largest_component = 0.0;
  if (points.empty() || ratio == 0 || taps.size() < 2) {
    out.clear();
    return false;
  }
  const std::size_t n = points.size();
  const std::size_t r = ratio;
  const polyphase_branches_t branches(taps, r);
  const std::size_t q = branches.branch_length;

  // Output i uses points base(i) - q + 1 .. base(i), base(i) = (i + centre) div r, taken cyclically;
  // extended[e] holds point (e - q) mod n.
  const std::size_t last_base = (n * r - 1 + centre) / r;
  lib_iq_data_arr_t extended(last_base + q + 1);
  std::size_t source = (n - q % n) % n;
  for (auto& point : extended) {
    point = points[source];
    source = source + 1 == n ? 0 : source + 1;
  }

  out.resize(n * r);
  const std::size_t total = n * r;
  const std::size_t threads = std::max<uint32>(thread_count, 1);
  std::vector<fp64> largest(threads, 0.0);
#pragma omp parallel num_threads(static_cast<int>(threads))
  {
    const std::size_t team = static_cast<std::size_t>(omp_get_num_threads());
    const std::size_t thread = static_cast<std::size_t>(omp_get_thread_num());
    const std::size_t begin = total * thread / team;
    const std::size_t end = total * (thread + 1) / team;
    const fp64 peak =
        interpolate_range(branches, extended.data(), begin, end, centre, r, out.data());
    largest[thread] = peak;
  }
  largest_component = *std::max_element(largest.begin(), largest.end());
  return true;
}

}  // namespace nal::common_lib

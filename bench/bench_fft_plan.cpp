// 1,000,000 transforms of length 64 from 2 threads through the plan cache, against calling
// fftw_execute_dft directly on one cached plan with buffers owned by each thread.

#include <fftw3.h>

#include <random>

#include "bench/bench_ratio_reporter.h"
#include "lib/lib_fourier_transform.h"

namespace {

using nal::lib_iq_data_arr_t;

constexpr nal::uint32 length = 64;
constexpr int threads = 2;
constexpr int transforms_per_thread = 500'000;

lib_iq_data_arr_t random_block() {
  std::mt19937 generator(3);
  std::normal_distribution<double> gauss(0.0, 1.0);
  lib_iq_data_arr_t block(length);
  for (auto& s : block) {
    s = {gauss(generator), gauss(generator)};
  }
  return block;
}

void plan_cache(benchmark::State& state) {
  const lib_iq_data_arr_t input = random_block();
  lib_iq_data_arr_t out;
  for (auto _ : state) {
    nal::common_lib::lib_fourier_transform_t::deal_fft(input, out);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations());
}

fftw_plan shared_plan() {
  static const fftw_plan plan = [] {
    fftw_complex* in = fftw_alloc_complex(length);
    fftw_complex* out = fftw_alloc_complex(length);
    const fftw_plan made = fftw_plan_dft_1d(length, in, out, FFTW_FORWARD, FFTW_ESTIMATE);
    fftw_free(in);
    fftw_free(out);
    return made;
  }();
  return plan;
}

void direct_fftw(benchmark::State& state) {
  const lib_iq_data_arr_t input = random_block();
  fftw_complex* in = fftw_alloc_complex(length);
  fftw_complex* out = fftw_alloc_complex(length);
  for (auto _ : state) {
    std::copy(input.begin(), input.end(), reinterpret_cast<std::complex<double>*>(in));
    fftw_execute_dft(shared_plan(), in, out);
    benchmark::DoNotOptimize(out);
  }
  fftw_free(in);
  fftw_free(out);
  state.SetItemsProcessed(state.iterations());
}

}  // namespace

int main(int argc, char** argv) {
  shared_plan();
  benchmark::RegisterBenchmark("plan_cache/deal_fft_64", plan_cache)
      ->Threads(threads)
      ->Iterations(transforms_per_thread)
      ->UseRealTime();
  benchmark::RegisterBenchmark("direct/fftw_execute_dft_64", direct_fftw)
      ->Threads(threads)
      ->Iterations(transforms_per_thread)
      ->UseRealTime();
  return wavelume_bench::run_benchmarks_with_ratios(
      argc, argv, {{"deal_fft / direct fftw_execute_dft (transforms/s)", "plan_cache", "direct"}});
}

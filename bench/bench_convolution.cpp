// Overlap-add filtering of 10,000,000 complex samples with 257 taps, against liquid-dsp on the
// same taps and samples: its FFT-based filter, the fair reference at this length, and its direct
// FIR filter, which shows what the FFT saves.

#include <complex>
// liquid.h picks std::complex<float> for its complex type when <complex> comes first.
#include <liquid/liquid.h>

#include <random>
#include <vector>

#include "bench/bench_ratio_reporter.h"
#include "lib/lib_convolution.h"

namespace {

using nal::lib_iq_data_arr_t;

constexpr std::size_t sample_count = 10'000'000;
constexpr std::size_t tap_count = 257;

struct test_data_t {
  lib_iq_data_arr_t samples;
  lib_iq_data_arr_t taps;
  std::vector<std::complex<float>> samples_float;
  std::vector<std::complex<float>> taps_float;

  test_data_t() {
    std::mt19937 generator(7);
    std::normal_distribution<double> gauss(0.0, 1.0);
    samples.resize(sample_count);
    for (auto& s : samples) {
      s = {gauss(generator), gauss(generator)};
    }
    taps.resize(tap_count);
    for (auto& t : taps) {
      t = {gauss(generator) / 16.0, 0.0};
    }
    samples_float.assign(samples.begin(), samples.end());
    taps_float.assign(taps.begin(), taps.end());
  }
};

const test_data_t& data() {
  static const test_data_t instance;
  return instance;
}

void overlap_add(benchmark::State& state, nal::uint32 threads) {
  lib_iq_data_arr_t out;
  for (auto _ : state) {
    nal::common_lib::lib_convolution_t::deal_fft_convolution(data().samples, data().taps, out,
                                                             threads);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * sample_count));
}

void overlap_add_thread_rule(benchmark::State& state) {
  lib_iq_data_arr_t out;
  for (auto _ : state) {
    nal::common_lib::lib_convolution_t::deal_fft_convolution(data().samples, data().taps, out,
                                                             true);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * sample_count));
}

void liquid_firfilt(benchmark::State& state) {
  auto taps = data().taps_float;
  auto samples = data().samples_float;
  std::vector<std::complex<float>> out(sample_count);
  for (auto _ : state) {
    firfilt_cccf filter = firfilt_cccf_create(taps.data(), static_cast<unsigned>(taps.size()));
    firfilt_cccf_execute_block(filter, samples.data(), static_cast<unsigned>(sample_count),
                               out.data());
    firfilt_cccf_destroy(filter);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * sample_count));
}

// Blocks of 1024 samples, FFTs of 2048: a few times the filter's length, where liquid's block
// filter does well. The input is zero-padded to whole blocks; only the real samples are counted.
void liquid_fftfilt(benchmark::State& state) {
  constexpr unsigned block = 1024;
  auto taps = data().taps_float;
  auto samples = data().samples_float;
  samples.resize((sample_count + block - 1) / block * block);
  std::vector<std::complex<float>> out(samples.size());
  for (auto _ : state) {
    fftfilt_cccf filter =
        fftfilt_cccf_create(taps.data(), static_cast<unsigned>(taps.size()), block);
    for (std::size_t first = 0; first < samples.size(); first += block) {
      fftfilt_cccf_execute(filter, samples.data() + first, out.data() + first);
    }
    fftfilt_cccf_destroy(filter);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * sample_count));
}

}  // namespace

int main(int argc, char** argv) {
  data();
  benchmark::RegisterBenchmark("overlap_add/1_thread", overlap_add, 1u)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(4)
      ->UseRealTime();
  benchmark::RegisterBenchmark("overlap_add/thread_rule", overlap_add_thread_rule)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(4)
      ->UseRealTime();
  benchmark::RegisterBenchmark("overlap_add/2_threads", overlap_add, 2u)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(4)
      ->UseRealTime();
  benchmark::RegisterBenchmark("liquid_fftfilt_cccf", liquid_fftfilt)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(4)
      ->UseRealTime();
  benchmark::RegisterBenchmark("liquid_firfilt_cccf", liquid_firfilt)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(2)
      ->UseRealTime();
  return wavelume_bench::run_benchmarks_with_ratios(
      argc, argv,
      {{"overlap-add, 1 thread / liquid-dsp fftfilt_cccf", "overlap_add/1_thread",
        "liquid_fftfilt"},
       {"overlap-add, 1 thread / liquid-dsp firfilt_cccf", "overlap_add/1_thread",
        "liquid_firfilt"},
       {"overlap-add, 2 threads / 1 thread", "overlap_add/2_threads", "overlap_add/1_thread"},
       {"overlap-add, thread rule / 1 thread", "overlap_add/thread_rule", "overlap_add/1_thread"}});
}

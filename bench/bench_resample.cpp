// Rate change of 1,000,000 complex samples by 7/5: the polyphase deal_resampling, the literal steps
// it replaces (filtering at 7 times the input rate, then keeping one sample in 5), and liquid-dsp's
// rational resampler rresamp_crcf with its default filter (semi-length 12, about 24 taps per
// output against 20 here). Rates are input samples per second.

#include <complex>
// liquid.h picks std::complex<float> for its complex type when <complex> comes first.
#include <liquid/liquid.h>

#include <vector>

#include "bench/bench_ratio_reporter.h"
#include "lib/lib_resample.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::lib_iq_data_arr_t;
using nal::common_lib::lib_resample_t;

constexpr std::size_t sample_count = 1'000'000;
constexpr unsigned interpolation = 7;
constexpr unsigned decimation = 5;

struct test_data_t {
  lib_iq_data_arr_t samples = wavelume_test::random_samples(sample_count, 7);
  std::vector<std::complex<float>> samples_float{samples.begin(), samples.end()};
};

const test_data_t& data() {
  static const test_data_t instance;
  return instance;
}

void polyphase(benchmark::State& state) {
  lib_iq_data_arr_t out;
  for (auto _ : state) {
    lib_resample_t::deal_resampling(data().samples, out, interpolation, decimation);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * sample_count));
}

// The steps as written: edge extension, zero stuffing, cyclic filtering of every sample at the
// interpolated rate, trimming, gain and decimation.
void literal_steps(benchmark::State& state) {
  const nal::uint32 half_length = 10;
  const std::size_t trimmed = 2 * half_length * interpolation;
  lib_iq_data_arr_t out;
  for (auto _ : state) {
    lib_resample_t::_extend_array_edge(data().samples, out, 2 * half_length);
    lib_resample_t::_deal_insert_zero(out, interpolation);
    lib_resample_t::_deal_interpolate_filter(out, interpolation, decimation, half_length);
    out.erase(out.end() - static_cast<std::ptrdiff_t>(trimmed), out.end());
    out.erase(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(trimmed));
    for (auto& s : out) {
      s *= static_cast<double>(interpolation);
    }
    lib_resample_t::_deal_decimation(out, decimation);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * sample_count));
}

void liquid_rresamp(benchmark::State& state) {
  auto samples = data().samples_float;
  const unsigned blocks = sample_count / decimation;
  std::vector<std::complex<float>> out(static_cast<std::size_t>(blocks) * interpolation);
  for (auto _ : state) {
    rresamp_crcf resampler = rresamp_crcf_create_default(interpolation, decimation);
    rresamp_crcf_execute_block(resampler, samples.data(), blocks, out.data());
    rresamp_crcf_destroy(resampler);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * sample_count));
}

}  // namespace

int main(int argc, char** argv) {
  data();
  benchmark::RegisterBenchmark("resample_7_5/polyphase", polyphase)
      ->Unit(benchmark::kMillisecond)
      ->MinTime(1.0)
      ->UseRealTime();
  benchmark::RegisterBenchmark("resample_7_5/literal_steps", literal_steps)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(3)
      ->UseRealTime();
  benchmark::RegisterBenchmark("liquid_rresamp_crcf_7_5", liquid_rresamp)
      ->Unit(benchmark::kMillisecond)
      ->MinTime(1.0)
      ->UseRealTime();
  return wavelume_bench::run_benchmarks_with_ratios(
      argc, argv,
      {{"deal_resampling 7/5 / liquid-dsp rresamp_crcf (input samples)", "resample_7_5/polyphase",
        "liquid_rresamp"},
       {"deal_resampling 7/5 / literal steps", "resample_7_5/polyphase",
        "resample_7_5/literal_steps"}});
}

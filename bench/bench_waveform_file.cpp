// Writing a waveform file of 8,000,000 samples (32 MB, the size of 100,000 64QAM symbols x 10
// frames at oversampling 8): the sealed save, against writing the same encoded bytes with plain
// stdio, and its parts alone (encoding, our MD5 and OpenSSL's on one thread). Rates are bytes per
// second.

#include <openssl/evp.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "bench/bench_ratio_reporter.h"
#include "cfg/cfg_md5.h"
#include "cfg/cfg_waveform_file.h"
#include "lib/lib_normalization.h"
#include "tests/lib/test_signals.h"

namespace {

using nal::cfg_waveform_file_t;

constexpr std::size_t sample_count = 8'000'000;
constexpr double file_bytes = sample_count * 4.0;

struct test_data_t {
  test_data_t() { nal::common_lib::lib_normalization_t::max_normalize(samples); }
  nal::lib_iq_data_arr_t samples = wavelume_test::random_samples(sample_count, 11);
  std::string encoded = cfg_waveform_file_t::encode_samples(samples);
  std::string path =
      (std::filesystem::temp_directory_path() / "wavelume_bench_waveform.ARB").string();
};

const test_data_t& data() {
  static const test_data_t instance;
  return instance;
}

void count_bytes(benchmark::State& state) {
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * file_bytes));
}

void sealed_save(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    std::filesystem::remove(data().path);  // a fresh file each time, as a new save would be
    state.ResumeTiming();
    const bool saved = cfg_waveform_file_t::save_iq_waveform_file(
        "FileType,IQ,SampleRate,8000000,IQData,", data().samples, data().path);
    benchmark::DoNotOptimize(saved);
  }
  count_bytes(state);
}

void plain_stdio_write(benchmark::State& state) {
  for (auto _ : state) {
    std::filesystem::remove(data().path);
    std::FILE* file = std::fopen(data().path.c_str(), "wb");
    std::fwrite(data().encoded.data(), 1, data().encoded.size(), file);
    std::fclose(file);
  }
  count_bytes(state);
}

void encode_only(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(cfg_waveform_file_t::encode_samples(data().samples));
  }
  count_bytes(state);
}

void md5_only(benchmark::State& state) {
  state.SetLabel(nal::cfg_md5_t::uses_vector_lanes() ? "vector lanes" : "general registers");
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        nal::cfg_md5_t::hex_digest_of(data().encoded.data(), data().encoded.size()));
  }
  count_bytes(state);
}

void openssl_md5_only(benchmark::State& state) {
  for (auto _ : state) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    EVP_Digest(data().encoded.data(), data().encoded.size(), digest, &size, EVP_md5(), nullptr);
    benchmark::DoNotOptimize(digest);
  }
  count_bytes(state);
}

BENCHMARK(sealed_save)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(plain_stdio_write)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(encode_only)->Unit(benchmark::kMillisecond);
BENCHMARK(md5_only)->Unit(benchmark::kMillisecond);
BENCHMARK(openssl_md5_only)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  data();  // built before the first timing
  const int status = wavelume_bench::run_benchmarks_with_ratios(
      argc, argv,
      {{"sealed save (MB/s) vs plain stdio write of the encoded bytes", "sealed_save",
        "plain_stdio_write"},
       {"sealed save vs MD5 alone on one thread", "sealed_save", "md5_only"},
       {"our MD5 vs OpenSSL's MD5, one thread", "md5_only", "openssl_md5_only"}});
  std::filesystem::remove(data().path);
  return status;
}

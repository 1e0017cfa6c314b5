// Symbol modulation end to end (symbols to normalised samples): 16QAM with a root raised cosine
// through the waveform generator, and 2FSK Gaussian and MSK, each against liquid-dsp doing the
// same work on the same symbol count.

#include <complex>
// liquid.h picks std::complex<float> for its complex type when <complex> comes first.
#include <liquid/liquid.h>
#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "bench/bench_ratio_reporter.h"
#include "lib/lib_iq_waveform.h"
#include "lib/lib_modulation_fsk.h"

namespace {

using nal::common_lib::lib_iq_waveform_config_t;
using nal::common_lib::lib_iq_waveform_t;

constexpr unsigned symbol_count = 1'000'000;
constexpr unsigned ratio = 8;

lib_iq_waveform_config_t qam_config() {
  lib_iq_waveform_config_t config;
  config.modulator_type = nal::MODULATOR_APSK_QAM;
  config.symbol_rate = 1'000'000;
  config.oversampling = ratio;
  config.data_source_type = 5;  // PN31
  config.symbol_length = symbol_count;
  config.constellation_type = nal::MOD_16QAM;
  config.filter_type = nal::FILTER_ROOT_COSINE;
  config.filter_parameter = 0.35;
  config.filter_length = 32;
  config.waveform_sample_rate = 4'000'000'000u;
  config.carrier_frequency = 1e9;
  return config;
}

lib_iq_waveform_config_t fsk_config(nal::modulation_type_t type, nal::filter_type_t filter) {
  lib_iq_waveform_config_t config = qam_config();
  config.modulator_type = nal::MODULATOR_MFSK;
  config.constellation_type = type;
  config.fsk_deviation = 250'000;
  config.filter_type = filter;
  config.filter_parameter = 0.5;
  config.filter_length = 4;
  return config;
}

void waveform(benchmark::State& state, lib_iq_waveform_config_t config) {
  lib_iq_waveform_t generator;
  generator.set_iq_waveform_config(config);
  for (auto _ : state) {
    generator.generate_iq_signal();
    benchmark::DoNotOptimize(generator.get_baseband_iq().data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * symbol_count * ratio);
}

std::vector<unsigned> random_symbols(unsigned alphabet) {
  std::mt19937 generator(5);
  std::uniform_int_distribution<unsigned> pick(0, alphabet - 1);
  std::vector<unsigned> symbols(symbol_count);
  for (auto& s : symbols) {
    s = pick(generator);
  }
  return symbols;
}

// Largest |I| or |Q| to 0.89996..., as the library's modulators end.
void normalise(std::vector<std::complex<float>>& samples) {
  float largest = 0.0f;
  for (const auto& s : samples) {
    largest = std::max({largest, std::abs(s.real()), std::abs(s.imag())});
  }
  const float scale = 0.89996337890625f / largest;
  for (auto& s : samples) {
    s *= scale;
  }
}

void liquid_qam(benchmark::State& state) {
  const std::vector<unsigned> symbols = random_symbols(16);
  std::vector<std::complex<float>> points(symbol_count);
  std::vector<std::complex<float>> samples(symbol_count * ratio);
  for (auto _ : state) {
    modemcf modem = modemcf_create(LIQUID_MODEM_QAM16);
    firinterp_crcf interpolator =
        firinterp_crcf_create_prototype(LIQUID_FIRFILT_RRC, ratio, 16, 0.35f, 0.0f);
    for (unsigned i = 0; i < symbol_count; ++i) {
      modemcf_modulate(modem, symbols[i], &points[i]);
    }
    firinterp_crcf_execute_block(interpolator, points.data(), symbol_count, samples.data());
    normalise(samples);
    firinterp_crcf_destroy(interpolator);
    modemcf_destroy(modem);
    benchmark::DoNotOptimize(samples.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * symbol_count * ratio);
}

void liquid_cpfsk(benchmark::State& state, int pulse) {
  const std::vector<unsigned> symbols = random_symbols(2);
  std::vector<std::complex<float>> samples(symbol_count * ratio);
  for (auto _ : state) {
    cpfskmod modulator = cpfskmod_create(1, 0.5f, ratio, 3, 0.5f, pulse);
    for (unsigned i = 0; i < symbol_count; ++i) {
      cpfskmod_modulate(modulator, symbols[i], &samples[i * ratio]);
    }
    normalise(samples);
    cpfskmod_destroy(modulator);
    benchmark::DoNotOptimize(samples.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * symbol_count * ratio);
}

long peak_resident_kib() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

}  // namespace

int main(int argc, char** argv) {
  // Peak memory of one 16QAM generation, measured before anything else has grown the process.
  const long before = peak_resident_kib();
  {
    lib_iq_waveform_t generator;
    generator.set_iq_waveform_config(qam_config());
    generator.generate_iq_signal();
  }
  std::printf(
      "16QAM, %u symbols x %u: peak memory %.1f MiB above the %.1f MiB baseline "
      "(the %u-sample result alone is %.1f MiB)\n",
      symbol_count, ratio, (peak_resident_kib() - before) / 1024.0, before / 1024.0,
      symbol_count * ratio, symbol_count * ratio * 16.0 / (1024.0 * 1024.0));

  const auto add = [](const char* name, auto function) {
    benchmark::RegisterBenchmark(name, function)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(4)
        ->UseRealTime();
  };
  add("qam16_rrc/generate_iq_signal", [](benchmark::State& s) { waveform(s, qam_config()); });
  add("qam16_rrc/liquid_modem_firinterp", liquid_qam);
  add("fsk2_gaussian/generate_iq_signal",
      [](benchmark::State& s) { waveform(s, fsk_config(nal::MOD_2FSK, nal::FILTER_GAUSSIAN)); });
  add("fsk2_gaussian/liquid_cpfskmod_gmsk",
      [](benchmark::State& s) { liquid_cpfsk(s, LIQUID_CPFSK_GMSK); });
  add("msk/generate_iq_signal",
      [](benchmark::State& s) { waveform(s, fsk_config(nal::MOD_MSK, nal::FILTER_NONE)); });
  add("msk/liquid_cpfskmod_square",
      [](benchmark::State& s) { liquid_cpfsk(s, LIQUID_CPFSK_SQUARE); });
  return wavelume_bench::run_benchmarks_with_ratios(
      argc, argv,
      {{"16QAM RRC: generator / liquid-dsp (samples/s)", "qam16_rrc/generate", "qam16_rrc/liquid"},
       {"2FSK Gaussian: generator / liquid-dsp cpfskmod", "fsk2_gaussian/generate",
        "fsk2_gaussian/liquid"},
       {"MSK: generator / liquid-dsp cpfskmod", "msk/generate", "msk/liquid"}});
}

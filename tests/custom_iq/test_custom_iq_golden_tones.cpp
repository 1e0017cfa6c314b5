// The chirp and tone-bank paths of the Custom IQ engine against golden vectors: every LFM sweep
// type and the custom segment list sample by sample, and the bins a multitone bank occupies
// once its notch is applied.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "custom_iq/custom_iq.h"
#include "lib/lib_fourier_transform.h"
#include "tests/custom_iq/golden_data.h"

namespace {

using namespace nal;
using wavelume_test::golden_lines;
using wavelume_test::golden_numbers;

void quietly(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  action();
  testing::internal::GetCapturedStdout();
}

struct lfm_case_t {
  std::string name;
  double waveform_length = 0.0;
  uint64 total_sample_points = 0;
  lib_iq_data_arr_t samples;
};

// Settings shared by all cases, then one case per sweep type and one for the segment list.
struct lfm_golden_t {
  double rate = 0.0;
  double sweep_time = 0.0;
  double bandwidth = 0.0;
  double offset = 0.0;
  custom_iq_t::lfm_segment_list_t segments;
  std::vector<lfm_case_t> cases;
};

lfm_golden_t read_lfm_golden() {
  const std::vector<std::string> lines = golden_lines("lfm.txt");
  lfm_golden_t golden;
  if (lines.size() < 2) {
    return golden;
  }
  const std::vector<double> settings = golden_numbers(lines[0]);
  golden.rate = settings.at(0);
  golden.sweep_time = settings.at(1);
  golden.bandwidth = settings.at(2);
  golden.offset = settings.at(3);
  const std::vector<double> rows = golden_numbers(lines[1]);
  for (std::size_t i = 0; i + 2 < rows.size(); i += 3) {
    golden.segments.push_back({rows[i], rows[i + 1], rows[i + 2]});
  }
  for (std::size_t i = 2; i + 1 < lines.size(); i += 2) {
    std::istringstream header(lines[i]);
    lfm_case_t lfm_case;
    header >> lfm_case.name >> lfm_case.waveform_length >> lfm_case.total_sample_points;
    lfm_case.samples = wavelume_test::golden_samples(lines[i + 1]);
    golden.cases.push_back(lfm_case);
  }
  return golden;
}

TEST(CustomIqGoldenLfm, EverySweepTypeAndTheSegmentListFollowTheirDefinition) {
  const lfm_golden_t golden = read_lfm_golden();
  const std::map<std::string, lfm_sweep_type_t> sweep_types{
      {"Triangle", LFM_SWEEP_TRIANGLE}, {"Up", LFM_SWEEP_UP}, {"Down", LFM_SWEEP_DOWN}};
  ASSERT_EQ(golden.cases.size(), sweep_types.size() + 1);
  for (const lfm_case_t& expected : golden.cases) {
    custom_iq_t engine;
    quietly([&] {
      engine.preset();
      engine.set_modulator_type(MODULATOR_LFM);
      engine.set_lfm_sample_rate(golden.rate);
      engine.set_lfm_bandwidth(golden.bandwidth);
      engine.set_lfm_offset(golden.offset);
      engine.set_lfm_sweep_time(golden.sweep_time);
      const auto sweep = sweep_types.find(expected.name);
      if (sweep == sweep_types.end()) {
        engine.set_lfm_mode(true);
        engine.set_lfm_segment_list(golden.segments);
      } else {
        engine.set_lfm_sweep_type(sweep->second);
      }
      engine.update_waveform();
    });
    EXPECT_EQ(engine.get_waveform_length(), expected.waveform_length) << expected.name;
    EXPECT_EQ(engine.get_total_sample_points(), expected.total_sample_points) << expected.name;
    const lib_iq_data_arr_t& samples = engine.get_waveform_data();
    ASSERT_EQ(samples.size(), expected.samples.size()) << expected.name;
    for (std::size_t k = 0; k < samples.size(); ++k) {
      ASSERT_LT(std::abs(samples[k] - expected.samples[k]), 1e-9) << expected.name << " " << k;
    }
  }
}

struct multitone_case_t {
  std::string name;
  std::string program;
  uint32 transform_length = 0;
  uint64 total_sample_points = 0;
  std::set<std::size_t> bins;
};

// Failures name the case instead of dumping its bytes.
void PrintTo(const multitone_case_t& multitone, std::ostream* out) {
  *out << multitone.name;
}

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  const auto last = text.find_last_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::vector<multitone_case_t> read_multitone_golden() {
  std::vector<multitone_case_t> cases;
  for (const std::string& line : golden_lines("multitone.txt")) {
    std::vector<std::string> parts;
    std::istringstream fields(line);
    std::string part;
    while (std::getline(fields, part, '|')) {
      parts.push_back(trimmed(part));
    }
    if (parts.size() != 4) {
      continue;
    }
    multitone_case_t multitone;
    multitone.name = parts[0];
    multitone.program = parts[1];
    std::istringstream sizes(parts[2]);
    sizes >> multitone.transform_length >> multitone.total_sample_points;
    for (const double bin : golden_numbers(parts[3])) {
      multitone.bins.insert(static_cast<std::size_t>(bin));
    }
    cases.push_back(multitone);
  }
  return cases;
}

// Runs a program of "setter=value" steps, in order, so that the cascades of each step apply.
void run_multitone_program(custom_iq_t& engine, const std::string& program) {
  const std::map<std::string, std::function<void(double)>> setters{
      {"rate", [&](double v) { engine.set_multitone_sample_rate(v); }},
      {"mode", [&](double v) { engine.set_multitone_mode(v != 0.0); }},
      {"span", [&](double v) { engine.set_multitone_span(v); }},
      {"start", [&](double v) { engine.set_multitone_start(v); }},
      {"stop", [&](double v) { engine.set_multitone_stop(v); }},
      {"number", [&](double v) { engine.set_multitone_number(static_cast<uint32>(v)); }},
      {"single", [&](double v) { engine.set_multitone_single_side(v != 0.0); }},
      {"notch", [&](double v) { engine.set_multitone_notch_enable(v != 0.0); }},
      {"notch_start", [&](double v) { engine.set_multitone_notch_start(v); }},
      {"notch_stop", [&](double v) { engine.set_multitone_notch_stop(v); }},
  };
  std::istringstream steps(program);
  std::string step;
  while (steps >> step) {
    const auto equals = step.find('=');
    const auto setter = setters.find(step.substr(0, equals));
    ASSERT_NE(setter, setters.end()) << step;
    setter->second(std::stod(step.substr(equals + 1)));
  }
}

class CustomIqGoldenMultitone : public testing::TestWithParam<multitone_case_t> {};

// The phases are random, so the check is on the spectrum: exactly the golden bins are occupied,
// each with the same magnitude.
TEST_P(CustomIqGoldenMultitone, OccupiesTheBinsOfTheSurvivingTones) {
  const multitone_case_t& expected = GetParam();
  custom_iq_t engine;
  quietly([&] {
    engine.preset();
    engine.set_modulator_type(MODULATOR_MULTITONE);
    run_multitone_program(engine, expected.program);
    engine.update_waveform();
  });
  EXPECT_EQ(engine.get_total_sample_points(), expected.total_sample_points);
  const lib_iq_data_arr_t& samples = engine.get_waveform_data();
  ASSERT_EQ(samples.size(), expected.transform_length);

  lib_iq_data_arr_t spectrum;
  ASSERT_TRUE(common_lib::lib_fourier_transform_t::deal_fft(samples, spectrum));
  double largest = 0.0;
  for (const auto& bin : spectrum) {
    largest = std::max(largest, std::abs(bin));
  }
  std::set<std::size_t> occupied;
  for (std::size_t b = 0; b < spectrum.size(); ++b) {
    if (std::abs(spectrum[b]) > 1e-6 * largest) {
      occupied.insert(b);
      EXPECT_NEAR(std::abs(spectrum[b]), largest, 1e-9 * largest) << "bin " << b;
    }
  }
  EXPECT_EQ(occupied, expected.bins);
}

INSTANTIATE_TEST_SUITE_P(Notches, CustomIqGoldenMultitone,
                         testing::ValuesIn(read_multitone_golden()),
                         [](const testing::TestParamInfo<multitone_case_t>& param) {
                           return param.param.name;
                         });

TEST(CustomIqGoldenMultitoneData, AllCasesAreRead) {
  EXPECT_EQ(read_multitone_golden().size(), 6u);
}

}  // namespace

#pragma once
// Readers of the golden vectors in tests/custom_iq/data, which gen_custom_iq_golden.py writes
// from the published definitions (PRBS polynomials, constellation formulas, sweep and tone
// arithmetic). Lines starting with '#' are comments. A missing file reads as no cases, which the
// tests then report.

#include <complex>
#include <fstream>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "lib/lib_types.h"

namespace wavelume_test {

inline std::string golden_path(const std::string& name) {
  return std::string(WAVELUME_TESTS_DIR) + "/custom_iq/data/" + name;
}

// The lines of a data file without its comments.
inline std::vector<std::string> golden_lines(const std::string& name) {
  std::ifstream file(golden_path(name));
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(file, line)) {
    if (!line.empty() && line[0] != '#') {
      lines.push_back(line);
    }
  }
  return lines;
}

inline std::vector<double> golden_numbers(const std::string& line) {
  std::istringstream fields(line);
  std::vector<double> numbers;
  double value = 0.0;
  while (fields >> value) {
    numbers.push_back(value);
  }
  return numbers;
}

inline nal::lib_iq_data_arr_t golden_samples(const std::string& line) {
  const std::vector<double> numbers = golden_numbers(line);
  nal::lib_iq_data_arr_t samples;
  for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) {
    samples.emplace_back(numbers[i], numbers[i + 1]);
  }
  return samples;
}

// First output bits of one PRBS from the all-ones seed.
struct golden_prbs_t {
  std::string name;
  std::vector<int> bits;
};

inline std::vector<golden_prbs_t> read_golden_prbs() {
  std::vector<golden_prbs_t> sequences;
  for (const std::string& line : golden_lines("prbs_bits.txt")) {
    std::istringstream fields(line);
    golden_prbs_t sequence;
    std::string bits;
    fields >> sequence.name >> bits;
    for (const char bit : bits) {
      sequence.bits.push_back(bit == '1' ? 1 : 0);
    }
    sequences.push_back(sequence);
  }
  return sequences;
}

inline golden_prbs_t golden_prbs(const std::string& name) {
  for (const golden_prbs_t& sequence : read_golden_prbs()) {
    if (sequence.name == name) {
      return sequence;
    }
  }
  return {};
}

// One default constellation map, raw (before rms normalisation), points in symbol order.
struct golden_map_t {
  nal::modulation_type_t type = nal::MOD_2ASK;
  std::string name;
  bool gray = false;
  nal::lib_iq_data_arr_t raw_points;
};

inline std::vector<golden_map_t> read_golden_maps() {
  const std::vector<std::string> lines = golden_lines("constellation_maps.txt");
  std::vector<golden_map_t> maps;
  for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
    std::istringstream header(lines[i]);
    golden_map_t map;
    unsigned type = 0;
    int gray = 0;
    header >> type >> map.name >> gray;
    map.type = static_cast<nal::modulation_type_t>(type);
    map.gray = gray == 1;
    map.raw_points = golden_samples(lines[i + 1]);
    maps.push_back(map);
  }
  return maps;
}

inline std::string golden_map_label(const golden_map_t& map) {
  return "m" + map.name + (map.gray ? "_gray" : "_natural");
}

// Failures name the map instead of dumping its bytes.
inline void PrintTo(const golden_map_t& map, std::ostream* out) {
  *out << golden_map_label(map);
}

}  // namespace wavelume_test

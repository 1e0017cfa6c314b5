#include "lib/lib_constellation_base.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "lib/lib_common_container.h"
#include "lib/lib_common_type_cast.h"
#include "lib/lib_normalization.h"
#include "lib/lib_oversampling.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

const char* const validity_report =
    "lib_constellation_base_t::check_constellation_map_validity Report:\n";

// Copies the points out in key order, scales them with `scale`, writes them back.
bool normalize_map_points(lib_constellation_map_t& map, void (*scale)(lib_iq_data_arr_t&)) {
  if (map.empty()) {
    lib_report("lib_constellation_base_t::normalize Report: An EMPTY data map is to normalize!");
    return false;
  }
  lib_iq_data_arr_t points;
  lib_common_container_t::get_map_value_arr(map, points);
  scale(points);
  return lib_common_container_t::set_map_value_arr(points, map);
}

}  // namespace

lib_constellation_base_t::lib_constellation_base_t(modulation_type_t type)
    : _constellation_type(type) {}

bool lib_constellation_base_t::set_constellation(const lib_iq_data_arr_t& points, bool normalize) {
  if (points.empty() || _constellation_map.empty()) {
    lib_report(
        "lib_constellation_base_t::set_constellation Report: Constellation IQ data array or "
        "Constellation Map is EMPTY!");
    return false;
  }
  if (points.size() != _constellation_map.size()) {
    lib_report(
        "lib_constellation_base_t::set_constellation Report: Constellation IQ data array size NOT "
        "EQUAL!");
    return false;
  }
  lib_common_container_t::set_map_value_arr(points, _constellation_map);
  if (normalize) {
    lib_constellation_base_t::normalize(_constellation_map);
  }
  return true;
}

bool lib_constellation_base_t::set_constellation(uint32 symbol, const lib_iq_sample_t& point,
                                                 bool normalize) {
  const auto entry = _constellation_map.find(symbol);
  if (entry == _constellation_map.end()) {
    lib_report("lib_constellation_base_t::set_constellation Report: Symbol NOT FOUND!");
    return false;
  }
  entry->second = point;
  if (normalize) {
    lib_constellation_base_t::normalize(_constellation_map);
  }
  return true;
}

bool lib_constellation_base_t::set_constellation(const lib_constellation_map_t& map,
                                                 bool normalize) {
  if (check_constellation_map_validity(map) != 0) {
    lib_report(
        "lib_constellation_base_t::set_constellation Report: Constellation data Map is ILLEGAL!");
    return false;
  }
  _constellation_map = map;
  if (normalize) {
    lib_constellation_base_t::normalize(_constellation_map);
  }
  return true;
}

void lib_constellation_base_t::get_symbol_iq_data(const lib_symbol_arr_t& symbols,
                                                  lib_iq_data_arr_t& out) {
  out.clear();
  out.reserve(symbols.size());
  // A map keyed 0..n-1 (every valid map) is looked up as a table; a symbol outside it still goes
  // through the checked access below, which reports the miss.
  const std::size_t size = _constellation_map.size();
  const bool dense = size != 0 && _constellation_map.rbegin()->first == size - 1;
  lib_iq_data_arr_t table;
  if (dense) {
    table.reserve(size);
    for (const auto& entry : _constellation_map) {
      table.push_back(entry.second);
    }
  }
  try {
    for (const uint32 symbol : symbols) {
      out.push_back(dense && symbol < size ? table[symbol] : _constellation_map.at(symbol));
    }
  } catch (const std::out_of_range& error) {
    lib_report(std::string("lib_constellation_base_t::get_symbol_iq_data exception: ") +
               error.what());
  }
}

void lib_constellation_base_t::deal_oversampling(const lib_iq_data_arr_t& points, uint32 ratio,
                                                 lib_iq_data_arr_t& out) {
  lib_oversampling_t::deal_oversampling(points, ratio, out, get_oversampling_type());
}

void lib_constellation_base_t::clear_constellation() {
  _constellation_map.clear();
}

void lib_constellation_base_t::update_point_by_map() {
  _constellation_point = static_cast<uint32>(_constellation_map.size());
  _bit_number = bit_number_of(_constellation_point);
}

void lib_constellation_base_t::update_point_by_type() {
  _constellation_point = lib_common_type_cast_t::get_constellation_point(_constellation_type);
  _bit_number = bit_number_of(_constellation_point);
}

bool lib_constellation_base_t::generate_default_constellation() {
  clear_constellation();
  return true;
}

uint32 lib_constellation_base_t::get_oversampling_type() const {
  return _filter_type == FILTER_GAUSSIAN ? OVERSAMPLING_HOLDER : OVERSAMPLING_INSERT_ZERO;
}

bool lib_constellation_base_t::set_constellation_type(modulation_type_t type) {
  if (!is_constellation_type_supported(type)) {
    lib_report("lib_constellation_base_t::set_constellation_type Report: constellation Type " +
               std::to_string(type) + " Not supported!");
    return false;
  }
  _constellation_type = type;
  update_point_by_type();
  return true;
}

bool lib_constellation_base_t::is_constellation_type_supported(modulation_type_t type) const {
  return std::find(_supported_types.begin(), _supported_types.end(), type) !=
         _supported_types.end();
}

bool lib_constellation_base_t::set_gray_code_enable(bool enable) {
  _gray_code_enable = enable;
  return true;
}

void lib_constellation_base_t::copy_setting(const lib_constellation_base_t& other) {
  _gray_code_enable = other._gray_code_enable;
  _filter_type = other._filter_type;
}

bool lib_constellation_base_t::generate_constellation() {
  return generate_default_constellation();
}

std::int32_t lib_constellation_base_t::check_constellation_map_validity(
    const lib_constellation_map_t& map) {
  const uint32 size = static_cast<uint32>(map.size());
  if (!plib_t::is_power_of_2(size)) {
    lib_report(std::string(validity_report) +
               "The number of constellation symbols must be the power of 2.\nCurrent symbol number "
               "is " +
               std::to_string(size) + ".");
    return -1;
  }
  uint32 expected = 0;
  for (const auto& entry : map) {
    if (entry.first >= size) {
      lib_report(std::string(validity_report) +
                 "Error symbol definition: " + std::to_string(entry.first) + ".");
      return -2;
    }
    if (entry.first != expected++) {
      lib_report(std::string(validity_report) + "Duplicate symbol definition exists!");
      return -3;
    }
  }
  lib_iq_data_arr_t points;
  lib_common_container_t::get_map_value_arr(map, points);
  // Stable, so that points of equal magnitude stay in key order and the outcome is reproducible.
  std::stable_sort(
      points.begin(), points.end(),
      [](const lib_iq_sample_t& a, const lib_iq_sample_t& b) { return std::abs(a) > std::abs(b); });
  for (std::size_t i = 1; i < points.size(); ++i) {
    if (std::abs(points[i].real() - points[i - 1].real()) < lib_tolerance &&
        std::abs(points[i].imag() - points[i - 1].imag()) < lib_tolerance) {
      lib_report(std::string(validity_report) + "Duplicate IQ value for different symbols!");
      return -4;
    }
  }
  return 0;
}

bool lib_constellation_base_t::normalize(lib_constellation_map_t& map) {
  return normalize_map_points(map, &lib_normalization_t::rms_normalize);
}

bool lib_constellation_base_t::max_normalize(lib_constellation_map_t& map) {
  return normalize_map_points(map, &lib_normalization_t::max_normalize);
}

void lib_constellation_base_t::_set_supported_types(const lib_symbol_arr_t& types) {
  _supported_types = types;
  lib_constellation_base_t::update_point_by_type();
}

bool lib_constellation_base_t::_generate_with(map_generator_t generate) {
  clear_constellation();
  return generate(_constellation_point, _constellation_map, _gray_code_enable);
}

bool lib_constellation_base_t::_start_power_of_2_map(uint32 points, lib_constellation_map_t& map,
                                                     const char* refusal) {
  map.clear();
  if (!plib_t::is_power_of_2(points)) {
    lib_report(refusal);
    return false;
  }
  return true;
}

uint32 lib_constellation_base_t::bit_number_of(uint32 points) {
  return points == 0 ? 0 : static_cast<uint32>(std::lround(std::log2(static_cast<fp64>(points))));
}

}  // namespace nal::common_lib

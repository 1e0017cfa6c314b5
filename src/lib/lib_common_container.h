#pragma once
// Small container helpers used between maps and arrays of the library.

#include <algorithm>
#include <map>
#include <vector>

#include "lib/lib_report.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_common_container_t {
 public:
  // Clears `keys` and appends the keys of `map` in ascending order.
  template <typename key_t, typename value_t>
  static void get_map_key_arr(const std::map<key_t, value_t>& map, std::vector<key_t>& keys) {
    keys.clear();
    keys.reserve(map.size());
    for (const auto& entry : map) {
      keys.push_back(entry.first);
    }
  }

  // Clears `values` and appends the values of `map` in ascending key order.
  template <typename key_t, typename value_t>
  static void get_map_value_arr(const std::map<key_t, value_t>& map, std::vector<value_t>& values) {
    values.clear();
    values.reserve(map.size());
    for (const auto& entry : map) {
      values.push_back(entry.second);
    }
  }

  // Assigns values[i] to the i-th key in ascending order; the sizes must be equal.
  template <typename key_t, typename value_t>
  static bool set_map_value_arr(const std::vector<value_t>& values, std::map<key_t, value_t>& map) {
    if (values.size() != map.size()) {
      lib_report(
          "lib_common_container_t::set_map_value_arr Report: Value Array size is NOT EQUAL to data "
          "map!");
      return false;
    }
    auto value = values.begin();
    for (auto& entry : map) {
      entry.second = *value++;
    }
    return true;
  }

  // The first of the largest elements. An empty array throws std::out_of_range.
  static uint32 get_max_element(const lib_symbol_arr_t& symbols) {
    const auto largest = std::max_element(symbols.begin(), symbols.end());
    return symbols.at(static_cast<std::size_t>(largest - symbols.begin()));
  }
};

}  // namespace nal::common_lib

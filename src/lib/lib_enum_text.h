#pragma once
// Lookups between enumeration values and their texts, shared by the configuration readers.

#include <map>
#include <string>

#include "lib/lib_report.h"

namespace nal::common_lib {

class lib_enum_text_t {
 public:
  // Walks `map` in key order for an exact, case-sensitive match of `text`. On a hit stores the
  // value in `value` and returns true; on a miss leaves `value` untouched and returns false.
  template <typename enum_t>
  static bool get_enum_value(const std::map<enum_t, std::string>& map, const std::string& text,
                             enum_t& value) {
    if (map.empty()) {
      lib_report("lib_xml_common_t::get_enum_value Warning : Empty enum string mapping!");
      return false;
    }
    for (const auto& [key, key_text] : map) {
      if (key_text == text) {
        value = key;
        return true;
      }
    }
    return false;
  }

  // The text of `value`, or an empty string when the map does not hold it.
  template <typename enum_t>
  static std::string get_enum_text(const std::map<enum_t, std::string>& map, enum_t value) {
    const auto found = map.find(value);
    return found == map.end() ? std::string() : found->second;
  }
};

}  // namespace nal::common_lib

#pragma once
// Enumeration values and their texts as state files store them.

#include <map>
#include <string>

#include "cfg/cfg_enum_miss_recorder.h"
#include "lib/lib_enum_text.h"

namespace nal {

class lib_xml_common_t {
 public:
  // The value whose text equals `text` exactly (bytes, case included); 0 for no match. An empty
  // map is reported.
  template <typename enum_t>
  static enum_t get_enum_value(const std::map<enum_t, std::string>& map, const std::string& text) {
    enum_t value = static_cast<enum_t>(0);
    if (!common_lib::lib_enum_text_t::get_enum_value(map, text, value)) {
      cfg_enum_miss_recorder_t::note(map, text);
    }
    return value;
  }

  // The text of `value`; empty for an unknown value. An empty map is reported.
  template <typename enum_t>
  static std::string get_enum_string(const std::map<enum_t, std::string>& map, enum_t value) {
    if (map.empty()) {
      common_lib::lib_report(
          "lib_xml_common_t::get_enum_value Warning : Empty enum string mapping!");
    }
    return common_lib::lib_enum_text_t::get_enum_text(map, value);
  }
};

}  // namespace nal

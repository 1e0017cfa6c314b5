#pragma once
// Dotted version texts such as "1.0.0.0.0_BETA": whole non-negative fields separated by dots,
// with an optional "_BETA" ending. Stateless.

#include <string>
#include <vector>

#include "lib/lib_types.h"

namespace nal {

class lib_version_manager_t {
 public:
  // The version of the files this build writes.
  static const char* library_version() { return "1.0.0.0.0_BETA"; }

  static bool is_beta_version(const std::string& text);
  // The numeric fields; false and an empty list when a field is no whole non-negative number.
  static bool parse(const std::string& text, std::vector<uint64>& fields);
  // Both parse, to the same number of fields.
  static bool is_same_format(const std::string& a, const std::string& b);
  // Same format, same beta state, same fields.
  static bool is_version_equal(const std::string& a, const std::string& b);
  // The first differing field from the left decides; different formats are reported, false.
  static bool is_version_greater(const std::string& a, const std::string& b);
  static bool is_version_less(const std::string& a, const std::string& b);
};

}  // namespace nal

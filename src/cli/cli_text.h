#pragma once
// Small text helpers shared by the commands.

#include <string>

namespace wavelume::cli {

inline bool ends_with(const std::string& text, const std::string& ending) {
  return text.size() >= ending.size() &&
         text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

// `text` as a JSON string literal, quotes and control characters escaped.
std::string json_string(const std::string& text);

// `value` with an SI prefix and up to four significant digits: "2 MHz", "512 us", "1.024 ks".
std::string engineering(double value, const std::string& unit);

}  // namespace wavelume::cli

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

}  // namespace wavelume::cli

#include "cli/cli_text.h"

#include <cstdio>

namespace wavelume::cli {

std::string json_string(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += c;
    } else if (byte < 0x20) {
      char escaped[8];
      std::snprintf(escaped, sizeof(escaped), "\\u%04x", byte);
      quoted += escaped;
    } else {
      quoted += c;
    }
  }
  return quoted + "\"";
}

}  // namespace wavelume::cli

#include "cli/cli_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <iomanip>
#include <sstream>

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

std::string engineering(double value, const std::string& unit) {
  constexpr std::array<const char*, 9> prefixes{"p", "n", "u", "m", "", "k", "M", "G", "T"};
  constexpr int unprefixed = 4;
  int step = 0;
  if (std::isfinite(value) && value != 0.0) {
    step = static_cast<int>(std::floor(std::log10(std::fabs(value)) / 3.0));
    step =
        std::max(-unprefixed, std::min(step, static_cast<int>(prefixes.size()) - 1 - unprefixed));
  }
  std::ostringstream text;
  text << std::setprecision(4) << value / std::pow(1000.0, step) << " "
       << prefixes[static_cast<std::size_t>(step + unprefixed)] << unit;
  return text.str();
}

}  // namespace wavelume::cli

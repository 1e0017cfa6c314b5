#include "lib/lib_report.h"

#include <cstdio>
#include <sstream>

namespace nal::common_lib {

void lib_report(const std::string& line) {
  const std::string text = line + '\n';
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

void lib_report(const std::string& line, fp64 value) {
  std::ostringstream text;
  text << line << value;
  lib_report(text.str());
}

void lib_report(const std::string& line, long long value) {
  lib_report(line + std::to_string(value));
}

}  // namespace nal::common_lib

#pragma once
// The library's one error style: a failing operation prints a single line to standard output,
// "class::method Report: message", flushes it, and returns a neutral value. Lines from several
// threads never interleave because each is written by one stdio call.

#include <string>

#include "lib/lib_types.h"

namespace nal::common_lib {

// Prints `line` followed by a line feed and flushes standard output.
void lib_report(const std::string& line);
// Prints `line` with `value` appended, as an ostream would print it ("0", "1e-13").
void lib_report(const std::string& line, fp64 value);
void lib_report(const std::string& line, long long value);

}  // namespace nal::common_lib

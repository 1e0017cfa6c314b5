#include "toolkit/toolkit_text_column_reader.h"

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "lib/lib_report.h"
#include "toolkit/toolkit_regular_file.h"

namespace nal {

namespace {

constexpr std::size_t quoted_line_limit = 80;

bool open_text_file(const std::string& path, const char* method, std::ifstream& file) {
  std::string problem;
  if (toolkit_is_regular_file(path, problem)) {
    file.open(path);
    problem = "cannot be read";
  }
  if (file.is_open()) {
    return true;
  }
  common_lib::lib_report(std::string("toolkit_text_column_reader_t::") + method +
                         " Report: Error: Failed to open ascii/txt/dat file. " + path + ": " +
                         problem);
  return false;
}

std::string trimmed(const std::string& text) {
  const char* blanks = " \t\r\n\v\f";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string> split_fields(const std::string& line) {
  std::vector<std::string> fields;
  if (line.find(',') != std::string::npos) {
    std::size_t start = 0;
    for (std::size_t comma = line.find(','); comma != std::string::npos;
         comma = line.find(',', start)) {
      fields.push_back(trimmed(line.substr(start, comma - start)));
      start = comma + 1;
    }
    // A trailing comma ends the row; it does not add an empty field.
    if (const std::string last = trimmed(line.substr(start)); !last.empty()) {
      fields.push_back(last);
    }
    return fields;
  }
  std::istringstream words(line);
  for (std::string word; words >> word;) {
    fields.push_back(word);
  }
  return fields;
}

bool parse_decimal(const std::string& field, fp64& value) {
  if (field.empty()) {
    return false;
  }
  char* end = nullptr;
  errno = 0;
  value = std::strtod(field.c_str(), &end);
  return *end == '\0' && std::isfinite(value) && !(errno == ERANGE && std::fabs(value) > 1.0);
}

bool parse_hexadecimal(const std::string& field, const toolkit_text_number_format_t& format,
                       fp64& value) {
  if (field.empty()) {
    return false;
  }
  char* end = nullptr;
  errno = 0;
  const long long number = std::strtoll(field.c_str(), &end, 16);
  if (*end != '\0' || errno == ERANGE) {
    return false;
  }
  std::uint16_t word = static_cast<std::uint16_t>(number);
  if (format.swap_bytes) {
    word = static_cast<std::uint16_t>((word << 8) | (word >> 8));
  }
  value = format.unsigned_words ? fp64(word) : fp64(static_cast<std::int16_t>(word));
  return true;
}

}  // namespace

bool toolkit_text_column_reader_t::count_lines(const std::string& path, uint32& line_count) {
  line_count = 0;
  std::ifstream file;
  if (!open_text_file(path, "count_lines", file)) {
    return false;
  }
  for (std::string line; std::getline(file, line);) {
    ++line_count;
  }
  return true;
}

bool toolkit_text_column_reader_t::read_columns(const std::string& path,
                                                const toolkit_text_number_format_t& format,
                                                std::size_t column_count,
                                                std::vector<lib_fp_data_arr_t>& columns) {
  columns.assign(column_count, {});
  std::ifstream file;
  if (!open_text_file(path, "read_columns", file)) {
    return false;
  }
  std::size_t line_number = 0;
  for (std::string line; std::getline(file, line);) {
    ++line_number;
    const std::vector<std::string> fields = split_fields(line);
    for (std::size_t k = 0; k < column_count && k < fields.size(); ++k) {
      fp64 value = 0;
      const bool parsed = format.hexadecimal ? parse_hexadecimal(fields[k], format, value)
                                             : parse_decimal(fields[k], value);
      if (!parsed) {
        const std::string quoted =
            line.size() > quoted_line_limit ? line.substr(0, quoted_line_limit) + "..." : line;
        common_lib::lib_report(
            "toolkit_text_column_reader_t::read_columns Report: " + path + ", line " +
            std::to_string(line_number) + ": field " + std::to_string(k + 1) + " \"" + fields[k] +
            "\" is not a " +
            (format.hexadecimal ? "hexadecimal integer" : "finite decimal number") + " in \"" +
            trimmed(quoted) + "\"");
        columns.assign(column_count, {});
        return false;
      }
      columns[k].push_back(value);
    }
  }
  return true;
}

}  // namespace nal

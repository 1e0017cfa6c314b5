#pragma once
// Reader of waveform values from text files: one sample row per line, fields split at commas
// when the line holds one, at white space otherwise (decided line by line, so a file may mix
// both). Columns are taken from the left; further columns are ignored. A white-space line
// that is empty contributes nothing, and one with fewer fields than asked for leaves the later
// columns short, so columns may come out of different lengths; the caller decides.
//
// Decimal fields must be finite reals written in full ("1.5e-3"; "1.5V" or "nan" is refused).
// Hexadecimal fields ("7FFF", "0x8000", "-1") keep their low 16 bits, optionally byte-swapped,
// as a signed or unsigned word.
//
// Stateless. Reports are one line "toolkit_text_column_reader_t::method Report: ..." on
// standard output naming the file and, for a field that does not parse, its line number and text.

#include <cstddef>
#include <string>
#include <vector>

#include "lib/lib_types.h"
#include "toolkit/toolkit_text_number_format.h"

namespace nal {

class toolkit_text_column_reader_t {
 public:
  // Counts the lines of `path` as the line reader sees them. False, with `line_count` 0, when
  // the path is not a readable regular file.
  static bool count_lines(const std::string& path, uint32& line_count);

  // Replaces `columns` by `column_count` (1 or 2) columns of `path`. False, with every column
  // empty, when the file cannot be opened or a field does not parse.
  static bool read_columns(const std::string& path, const toolkit_text_number_format_t& format,
                           std::size_t column_count, std::vector<lib_fp_data_arr_t>& columns);
};

}  // namespace nal

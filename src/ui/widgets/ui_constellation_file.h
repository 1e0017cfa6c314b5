#pragma once
// Custom constellation text files: one point per line, "symbol, I, Q", the symbol a whole number
// and I and Q decimal numbers; commas, semicolons, tabs or spaces separate them. "#" starts a
// comment to the end of the line; blank lines are skipped. Example:
//   # QPSK, Gray coded
//   0, 0.7071, 0.7071
//   1, -0.7071, 0.7071
// Rows keep the file's order, so that a checker can name what is wrong before the rows become a
// map (where a doubled symbol would silently vanish).

#include <QString>
#include <vector>

#include "lib/lib_types.h"

namespace nal {

struct ui_constellation_row_t {
  uint32 symbol = 0;
  lib_iq_sample_t point;
};
using ui_constellation_rows_t = std::vector<ui_constellation_row_t>;

class ui_constellation_file_t {
 public:
  // Symbols run from 0 to max_points - 1.
  static constexpr uint32 max_points = 65536;

  // Reads every line; the first faulty line gives false and a message "Line 4: ...", and leaves
  // `rows` untouched.
  static bool parse(const QString& text, ui_constellation_rows_t& rows, QString& error);
  // The file text of `rows`, which parse() reads back exactly.
  static QString print(const ui_constellation_rows_t& rows);
  static bool read(const QString& path, ui_constellation_rows_t& rows, QString& error);
  static bool write(const QString& path, const ui_constellation_rows_t& rows, QString& error);

  // Empty for rows that make a usable constellation, else the first problem: no points, a symbol
  // given twice, a count that is no power of two, symbols not numbered 0 to n-1, two symbols on
  // one point (which also catches an all-zero table).
  static QString check(const ui_constellation_rows_t& rows);

  static lib_constellation_map_t to_map(const ui_constellation_rows_t& rows);
  static ui_constellation_rows_t from_map(const lib_constellation_map_t& map);
};

}  // namespace nal

#pragma once
// Custom bit pattern text: the characters "0" and "1" in air order, first bit first. White space
// only groups the bits and "#" starts a comment to the end of the line, so files may be laid out
// as one likes; any other character is an error.

#include <QString>

namespace nal {

class ui_bit_pattern_file_t {
 public:
  // The bits of `text` as a string of '0' and '1'. The first other character gives false, a
  // message "Line 2, column 7: "x" is not a bit (0 or 1)" and leaves `bits` untouched.
  static bool parse(const QString& text, QString& bits, QString& error);
  // `bits` in lines of 64, which parse() reads back.
  static QString print(const QString& bits);
  static bool read(const QString& path, QString& bits, QString& error);
  static bool write(const QString& path, const QString& bits, QString& error);
};

}  // namespace nal

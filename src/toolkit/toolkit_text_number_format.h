#pragma once
// How the fields of an imported text file are written.

namespace nal {

struct toolkit_text_number_format_t {
  // Fields are hexadecimal integers of which the low 16 bits are kept; otherwise decimal reals.
  bool hexadecimal = false;
  // Hexadecimal only: exchange the two bytes of each 16-bit word.
  bool swap_bytes = false;
  // Hexadecimal only: the word is 0 to 65535 rather than -32768 to 32767.
  bool unsigned_words = false;
};

}  // namespace nal

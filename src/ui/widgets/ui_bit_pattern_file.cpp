#include "ui/widgets/ui_bit_pattern_file.h"

#include <QCoreApplication>

#include "ui/widgets/ui_text_file.h"

namespace nal {
namespace {

constexpr int bits_per_line = 64;

}  // namespace

bool ui_bit_pattern_file_t::parse(const QString& text, QString& bits, QString& error) {
  QString read_bits;
  read_bits.reserve(text.size());
  int line = 1;
  int column = 0;
  bool in_comment = false;
  for (const QChar c : text) {
    ++column;
    if (c == QLatin1Char('\n')) {
      ++line;
      column = 0;
      in_comment = false;
    } else if (in_comment || c.isSpace()) {
      continue;
    } else if (c == QLatin1Char('#')) {
      in_comment = true;
    } else if (c == QLatin1Char('0') || c == QLatin1Char('1')) {
      read_bits += c;
    } else {
      error = QCoreApplication::translate("ui_bit_pattern_file_t",
                                          "Line %1, column %2: \"%3\" is not a bit (0 or 1)")
                  .arg(line)
                  .arg(column)
                  .arg(c);
      return false;
    }
  }
  bits = read_bits;
  return true;
}

QString ui_bit_pattern_file_t::print(const QString& bits) {
  QString text;
  for (int start = 0; start < bits.size(); start += bits_per_line) {
    text += bits.mid(start, bits_per_line) + QLatin1Char('\n');
  }
  return text;
}

bool ui_bit_pattern_file_t::read(const QString& path, QString& bits, QString& error) {
  QString text;
  return ui_text_file_t::read(path, text, error) && parse(text, bits, error);
}

bool ui_bit_pattern_file_t::write(const QString& path, const QString& bits, QString& error) {
  return ui_text_file_t::write(path, print(bits), error);
}

}  // namespace nal

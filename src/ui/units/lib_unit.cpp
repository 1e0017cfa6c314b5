#include "ui/units/lib_unit.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <QStringList>

namespace nal {
namespace {

// Eight prefixes below 1 and eight above: prefix i stands for 10^(3 i - 24) for i < 8 and for
// 10^(3 i - 21) from "k" on.
const char k_prefixes[] = "yzafpnumkMGTPEZY";
constexpr int k_submultiples = 8;
constexpr int k_lowest_exponent = -24;
constexpr int k_highest_exponent = 24;
// Beyond this an exponent can only give 0 or infinity; clamping keeps the sum from overflowing.
constexpr int k_exponent_limit = 100000;

bool is_digit(const QString& text, int pos) {
  return pos < text.size() && text[pos] >= QLatin1Char('0') && text[pos] <= QLatin1Char('9');
}

bool is_sign(const QString& text, int pos) {
  return pos < text.size() && (text[pos] == QLatin1Char('+') || text[pos] == QLatin1Char('-'));
}

// A leading decimal number: its mantissa text, its exponent and the length it takes in the text.
struct number_text_t {
  QString mantissa;
  int exponent = 0;
  int length = 0;
};

// Reads [sign] digits [. digits] [e [sign] digits], with at least one mantissa digit. An "e" or
// "E" not followed by an exponent is left in place: it is the exa prefix or part of a unit.
bool read_number(const QString& text, number_text_t& number) {
  int pos = is_sign(text, 0) ? 1 : 0;
  int digits = 0;
  for (; is_digit(text, pos); ++pos) {
    ++digits;
  }
  if (pos < text.size() && text[pos] == QLatin1Char('.')) {
    for (++pos; is_digit(text, pos); ++pos) {
      ++digits;
    }
  }
  if (digits == 0) {
    return false;
  }
  number.mantissa = text.left(pos);
  number.exponent = 0;
  const bool has_e = pos < text.size() && text[pos].toLower() == QLatin1Char('e');
  const int first = pos + 1 + (is_sign(text, pos + 1) ? 1 : 0);
  if (has_e && is_digit(text, first)) {
    int exponent = 0;
    for (pos = first; is_digit(text, pos); ++pos) {
      exponent = std::min(exponent * 10 + text[pos].digitValue(), k_exponent_limit);
    }
    number.exponent = text[first - 1] == QLatin1Char('-') ? -exponent : exponent;
  }
  number.length = pos;
  return true;
}

// Writes significant `digits` with the decimal point after digit `point` (negative: leading
// zeros), trailing zeros of the fraction dropped.
QString place_point(const QString& digits, int point) {
  QString whole;
  QString fraction;
  if (point >= 0) {
    whole = digits.left(point + 1).leftJustified(point + 1, QLatin1Char('0'));
    fraction = digits.mid(point + 1);
  } else {
    whole = QStringLiteral("0");
    fraction = QString(-point - 1, QLatin1Char('0')) + digits;
  }
  while (fraction.endsWith(QLatin1Char('0'))) {
    fraction.chop(1);
  }
  return fraction.isEmpty() ? whole : whole + QLatin1Char('.') + fraction;
}

int floor_to_multiple_of_3(int exponent) {
  return exponent >= 0 ? exponent / 3 * 3 : -((-exponent + 2) / 3 * 3);
}

}  // namespace

bool lib_unit_t::takes_prefix(const QString& unit) {
  static const QStringList plain = {QStringLiteral("dB"),   QStringLiteral("dBm"),
                                    QStringLiteral("dBc"),  QStringLiteral("dBW"),
                                    QStringLiteral("dBFS"), QStringLiteral("%"),
                                    QStringLiteral("deg"),  QStringLiteral("\u00B0")};
  return !plain.contains(unit);
}

bool lib_unit_t::prefix_exponent(QChar prefix, int& exponent) {
  if (prefix == QChar(0x00B5) || prefix == QChar(0x03BC)) {
    prefix = QLatin1Char('u');
  }
  for (int i = 0; k_prefixes[i] != '\0'; ++i) {
    if (prefix == QLatin1Char(k_prefixes[i])) {
      exponent = k_lowest_exponent + 3 * i + (i < k_submultiples ? 0 : 3);
      return true;
    }
  }
  return false;
}

bool lib_unit_t::parse(const QString& text, const QString& unit, fp64& value) {
  const QString trimmed = text.trimmed();
  number_text_t number;
  if (!read_number(trimmed, number)) {
    return false;
  }
  QString rest = trimmed.mid(number.length).trimmed();
  if (!unit.isEmpty() && rest.endsWith(unit)) {
    rest.chop(unit.size());
  }
  int prefix = 0;
  if (!rest.isEmpty() &&
      (rest.size() != 1 || !takes_prefix(unit) || !prefix_exponent(rest[0], prefix))) {
    return false;
  }
  const QString decimal =
      number.mantissa + QLatin1Char('e') + QString::number(number.exponent + prefix);
  bool ok = false;
  const fp64 result = decimal.toDouble(&ok);
  if (!ok || !std::isfinite(result)) {
    return false;
  }
  value = result;
  return true;
}

QString lib_unit_t::format(fp64 value, const QString& unit, int digits) {
  const QString spaced_unit = unit.isEmpty() ? QString() : QLatin1Char(' ') + unit;
  if (std::isnan(value)) {
    return QStringLiteral("nan") + spaced_unit;
  }
  if (std::isinf(value)) {
    return (value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf")) + spaced_unit;
  }
  if (value == 0.0) {
    return QStringLiteral("0") + spaced_unit;
  }
  // printf rounds the exact binary value once; everything after is text shuffling.
  digits = std::clamp(digits, 1, 17);
  char buffer[48];
  std::snprintf(buffer, sizeof buffer, "%.*e", digits - 1, std::fabs(value));
  const QString printed = QString::fromLatin1(buffer);
  const int e_pos = printed.indexOf(QLatin1Char('e'));
  const QString significant = printed.left(e_pos).remove(QLatin1Char('.'));
  const int exponent = printed.mid(e_pos + 1).toInt();
  const QString sign = value < 0 ? QStringLiteral("-") : QString();

  if (!takes_prefix(unit)) {
    if (exponent >= -5 && exponent < 10) {
      return sign + place_point(significant, exponent) + spaced_unit;
    }
    return sign + place_point(significant, 0) + QLatin1Char('e') + QString::number(exponent) +
           spaced_unit;
  }
  const int engineering = floor_to_multiple_of_3(exponent);
  if (engineering < k_lowest_exponent || engineering > k_highest_exponent) {
    return sign + place_point(significant, 0) + QLatin1Char('e') + QString::number(exponent) +
           spaced_unit;
  }
  const QString mantissa = sign + place_point(significant, exponent - engineering);
  if (engineering == 0) {
    return mantissa + spaced_unit;
  }
  const int index = (engineering - k_lowest_exponent) / 3 - (engineering > 0 ? 1 : 0);
  const QChar prefix = QLatin1Char(k_prefixes[index]);
  return mantissa + QLatin1Char(' ') + prefix + unit;
}

}  // namespace nal

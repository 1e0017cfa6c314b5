#pragma once
// Engineering units: reading and writing values such as "2.5 MHz" with the SI prefixes
// "yzafpnumkMGTPEZY". Stateless, safe on any thread.

#include <QString>

#include "lib/lib_types.h"

namespace nal {

class lib_unit_t {
 public:
  // Reads a number with an optional prefix and unit: "2.5 MHz", "2.5MHz", "10k", "1e6", "-3 dB",
  // " 100 ns ", "1.5 u", "1.5e3 kHz". The unit may be left out of the text; when present it must
  // be `unit` exactly (case matters: "m" is milli, "M" mega). Micro may be written "u" or "µ".
  // Units that take no prefix (see takes_prefix) refuse one. A text carrying another unit, an
  // unknown prefix, no number, or a result that is not finite is refused: false, `value` untouched.
  // The value is rounded once, from the decimal text, so "0.1 u" reads exactly as 1e-7 does.
  static bool parse(const QString& text, const QString& unit, fp64& value);

  // Writes `value` with the prefix that puts the mantissa in [1, 1000), rounded to `digits`
  // significant digits (1 to 17) with trailing zeros dropped: format(2.5e6, "Hz") == "2.5 MHz",
  // format(0, "s") == "0 s", format(-3, "dB") == "-3 dB", format(999.9995, "Hz") == "1 kHz".
  // Beyond the prefixes (below 1 y, from 1000 Y on) and for units without prefixes outside
  // [1e-5, 1e10) the value is written in exponent form, "1e-25 s". Non-finite values are written
  // "nan", "inf" or "-inf" with the unit. parse reads back everything format writes.
  static QString format(fp64 value, const QString& unit, int digits = 6);

  // False for the logarithmic and dimensionless units that take no prefix: dB, dBm, dBc, dBW,
  // dBFS, %, deg and °.
  static bool takes_prefix(const QString& unit);

  // The power of ten of a prefix character, through `exponent`; false for anything else.
  static bool prefix_exponent(QChar prefix, int& exponent);
};

}  // namespace nal

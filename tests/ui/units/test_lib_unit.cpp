// Engineering units: reading and writing prefixed values, and their round trip.

#include <QtTest>
#include <cmath>
#include <random>

#include "ui/units/lib_unit.h"

using nal::fp64;
using nal::lib_unit_t;

class test_lib_unit_t : public QObject {
  Q_OBJECT

 private slots:
  void parse_accepts_data();
  void parse_accepts();
  void parse_refuses_data();
  void parse_refuses();
  void format_writes_data();
  void format_writes();
  void every_prefix_round_trips();
  void random_values_round_trip();
};

void test_lib_unit_t::parse_accepts_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("unit");
  QTest::addColumn<fp64>("expected");
  QTest::newRow("spaced prefix and unit") << "2.5 MHz"
                                          << "Hz" << 2.5e6;
  QTest::newRow("joined, plus sign") << "+2.5MHz"
                                     << "Hz" << 2.5e6;
  QTest::newRow("prefix without unit") << "10k"
                                       << "Hz" << 1e4;
  QTest::newRow("exponent and prefix") << "1.5e3 kHz"
                                       << "Hz" << 1.5e6;
  QTest::newRow("negative exponent") << "25E-1 Hz"
                                     << "Hz" << 2.5;
  QTest::newRow("whitespace around") << " 100 ns "
                                     << "s" << 100e-9;
  QTest::newRow("micro as u") << "1.5 u"
                              << "s" << 1.5e-6;
  QTest::newRow("micro sign") << QString::fromUtf8("1.5 \u00B5s") << "s" << 1.5e-6;
  QTest::newRow("greek mu") << QString::fromUtf8("1.5 \u03BCs") << "s" << 1.5e-6;
  QTest::newRow("decimal rounding once") << "0.1 u"
                                         << "" << 0.1e-6;
  QTest::newRow("leading point") << ".5 kHz"
                                 << "Hz" << 500.0;
  QTest::newRow("trailing point") << "5."
                                  << "" << 5.0;
  QTest::newRow("E as exa") << "2.5EHz"
                            << "Hz" << 2.5e18;
  QTest::newRow("lower m is milli") << "5 m"
                                    << "" << 5e-3;
  QTest::newRow("upper M is mega") << "5 M"
                                   << "" << 5e6;
  QTest::newRow("unit m alone") << "5 m"
                                << "m" << 5.0;
  QTest::newRow("milli of unit m") << "5 mm"
                                   << "m" << 5e-3;
  QTest::newRow("beyond the prefixes") << "1e28 Hz"
                                       << "Hz" << 1e28;
}

void test_lib_unit_t::parse_accepts() {
  QFETCH(QString, text);
  QFETCH(QString, unit);
  QFETCH(fp64, expected);
  fp64 value = 42.0;
  QVERIFY(lib_unit_t::parse(text, unit, value));
  // Exact: the decimal text is rounded once, as the compiler rounds the literal.
  QVERIFY(value == expected);
}

void test_lib_unit_t::parse_refuses_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("unit");
  QTest::newRow("other unit") << "5 kHz"
                              << "s";
  QTest::newRow("unit where none is expected") << "5 Hz"
                                               << "";
  QTest::newRow("dBm for dB") << "5 dBm"
                              << "dB";
  QTest::newRow("prefix on dB") << "3 mdB"
                                << "dB";
  QTest::newRow("unknown prefix") << "5 KHz"
                                  << "Hz";
  QTest::newRow("two prefixes") << "5 kk"
                                << "";
  QTest::newRow("space inside") << "5 M Hz"
                                << "Hz";
  QTest::newRow("no number") << "kHz"
                             << "Hz";
  QTest::newRow("blank") << "   "
                         << "s";
  QTest::newRow("point only") << "."
                              << "";
  QTest::newRow("exponent only") << "e6"
                                 << "";
  QTest::newRow("double sign") << "--5"
                               << "";
  QTest::newRow("decimal comma") << "1,5"
                                 << "";
  QTest::newRow("overflow through prefix") << "1e300 Y"
                                           << "";
  QTest::newRow("huge exponent") << "1e99999999999"
                                 << "";
  QTest::newRow("not a number") << "nan"
                                << "";
}

void test_lib_unit_t::parse_refuses() {
  QFETCH(QString, text);
  QFETCH(QString, unit);
  fp64 value = 42.0;
  QVERIFY(!lib_unit_t::parse(text, unit, value));
  QCOMPARE(value, 42.0);
}

void test_lib_unit_t::format_writes_data() {
  QTest::addColumn<fp64>("value");
  QTest::addColumn<QString>("unit");
  QTest::addColumn<int>("digits");
  QTest::addColumn<QString>("expected");
  QTest::newRow("negative zero") << -0.0 << "s" << 6 << "0 s";
  QTest::newRow("micro") << -1.5e-6 << "s" << 6 << "-1.5 us";
  QTest::newRow("rounds up to the next prefix") << 999.9995 << "Hz" << 6 << "1 kHz";
  QTest::newRow("stays below") << 999.9994 << "Hz" << 6 << "999.999 Hz";
  QTest::newRow("one digit") << 250.0 << "Hz" << 1 << "200 Hz";
  QTest::newRow("digits clamped") << 1.0 / 3.0 << "" << 40 << "333.33333333333331 m";
  QTest::newRow("below the prefixes") << 1e-25 << "s" << 6 << "1e-25 s";
  QTest::newRow("above the prefixes") << -1.5e28 << "Hz" << 6 << "-1.5e28 Hz";
  QTest::newRow("small dB") << 1e-5 << "dB" << 6 << "0.00001 dB";
  QTest::newRow("large dB") << 1.25e12 << "dB" << 6 << "1.25e12 dB";
  QTest::newRow("nan") << std::nan("") << "Hz" << 6 << "nan Hz";
  QTest::newRow("minus infinity") << -HUGE_VAL << "dB" << 6 << "-inf dB";
}

void test_lib_unit_t::format_writes() {
  QFETCH(fp64, value);
  QFETCH(QString, unit);
  QFETCH(int, digits);
  QFETCH(QString, expected);
  QCOMPARE(lib_unit_t::format(value, unit, digits), expected);
}

void test_lib_unit_t::every_prefix_round_trips() {
  const QString prefixes = QStringLiteral("yzafpnumkMGTPEZY");
  for (int i = 0; i < prefixes.size(); ++i) {
    const int exponent = i < 8 ? 3 * i - 24 : 3 * i - 21;  // no prefix between "m" and "k"
    const fp64 value = 12.5 * std::pow(10.0, exponent);
    const QString text = lib_unit_t::format(value, QStringLiteral("Hz"));
    QCOMPARE(text, QStringLiteral("12.5 ") + prefixes[i] + QStringLiteral("Hz"));
    fp64 back = 0.0;
    QVERIFY2(lib_unit_t::parse(text, QStringLiteral("Hz"), back), qPrintable(text));
    QVERIFY2(std::fabs(back - value) <= 1e-15 * value, qPrintable(text));
  }
}

// 17 digits identify a double, so that round trip is exact; 6 digits keep the value within half
// a unit of the sixth digit and the mantissa in [1, 1000).
void test_lib_unit_t::random_values_round_trip() {
  std::mt19937 random(0);
  std::uniform_real_distribution<fp64> mantissa(1.0, 10.0);
  std::uniform_int_distribution<int> exponent(-30, 30);
  for (int n = 0; n < 5000; ++n) {
    const fp64 sign = (n % 2 == 0) ? 1.0 : -1.0;
    const fp64 value = sign * mantissa(random) * std::pow(10.0, exponent(random));
    fp64 exact = 0.0;
    const QString full = lib_unit_t::format(value, QStringLiteral("s"), 17);
    QVERIFY2(lib_unit_t::parse(full, QStringLiteral("s"), exact), qPrintable(full));
    QVERIFY2(exact == value, qPrintable(full));

    const QString shortened = lib_unit_t::format(value, QStringLiteral("s"));
    fp64 rounded = 0.0;
    QVERIFY2(lib_unit_t::parse(shortened, QStringLiteral("s"), rounded), qPrintable(shortened));
    QVERIFY2(std::fabs(rounded - value) <= 5.0000001e-6 * std::fabs(value), qPrintable(shortened));
    const fp64 magnitude = std::fabs(value);
    if (magnitude >= 1e-24 && magnitude < 1e27) {
      const fp64 shown = std::fabs(shortened.section(QLatin1Char(' '), 0, 0).toDouble());
      QVERIFY2(shown >= 1.0 && shown < 1000.0, qPrintable(shortened));
    }
  }
}

QTEST_APPLESS_MAIN(test_lib_unit_t)
#include "test_lib_unit.moc"

// Constellation and bit pattern files and their editors.

#include <QTemporaryDir>
#include <QtTest>
#include <cmath>

#include "custom_iq/custom_iq.h"
#include "lib/lib_constellation_base.h"
#include "test_widget_classes.h"
#include "ui/widgets/ui_bit_pattern_editor_dialog.h"
#include "ui/widgets/ui_bit_pattern_file.h"
#include "ui/widgets/ui_constellation_editor_dialog.h"
#include "ui/widgets/ui_constellation_file.h"

using namespace nal;

namespace {

bool same_rows(const ui_constellation_rows_t& a, const ui_constellation_rows_t& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const ui_constellation_row_t& x, const ui_constellation_row_t& y) {
                      return x.symbol == y.symbol && x.point == y.point;
                    });
}

QString write_text(const QTemporaryDir& dir, const QString& name, const QByteArray& text) {
  const QString path = dir.filePath(name);
  QFile file(path);
  file.open(QIODevice::WriteOnly);
  file.write(text);
  return path;
}

}  // namespace

void test_pattern_editors_t::constellation_file_round_trip() {
  // Values whose shortest decimal form is long or tiny come back exactly, in the order written.
  const ui_constellation_rows_t rows = {{3, {1.0 / 3.0, -std::sqrt(0.5)}},
                                        {0, {1e-300, 0.0}},
                                        {2, {-1234567.890123, 2.5e-7}},
                                        {1, {0.1, 0.2}}};
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("points.txt"));
  QString error;
  QVERIFY(ui_constellation_file_t::write(path, rows, error));
  ui_constellation_rows_t read;
  QVERIFY2(ui_constellation_file_t::read(path, read, error), qPrintable(error));
  QVERIFY(same_rows(read, rows));

  // Through the editor: load, save elsewhere, load again.
  ui_constellation_editor_dialog_t dialog({});
  QVERIFY(dialog.load_file(path));
  const QString copy = dir.filePath(QStringLiteral("copy.txt"));
  QVERIFY(dialog.save_file(copy));
  QVERIFY(ui_constellation_file_t::read(copy, read, error));
  QVERIFY(same_rows(read, rows));

  // Hand-written layout: comments, blank lines, other separators, CR LF line ends.
  QVERIFY(ui_constellation_file_t::parse(
      QStringLiteral("# BPSK\r\n\r\n0;-1;0   # left\r\n1\t1\t0\r\n"), read, error));
  QVERIFY(same_rows(read, {{0, {-1.0, 0.0}}, {1, {1.0, 0.0}}}));
}

void test_pattern_editors_t::malformed_constellation_files_name_the_line_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("message");
  QTest::newRow("two values") << "0, 1, 0\n# note\n1, 1\n"
                              << "Line 3: expected three values \"symbol, I, Q\", found 2";
  QTest::newRow("fractional symbol") << "0, 1, 0\n1.5, -1, 0\n"
                                     << "Line 2: symbol \"1.5\" is not a whole number from 0 "
                                        "to 65535";
  QTest::newRow("only comments") << "# nothing\n\n"
                                 << "The file holds no points";
}

void test_pattern_editors_t::malformed_constellation_files_name_the_line() {
  QFETCH(QString, text);
  QFETCH(QString, message);
  ui_constellation_rows_t rows = {{7, {1.0, 1.0}}};
  QString error;
  QVERIFY(!ui_constellation_file_t::parse(text, rows, error));
  QCOMPARE(error, message);
  QCOMPARE(rows.size(), std::size_t(1));
}

void test_pattern_editors_t::malformed_file_leaves_the_editor_and_engine_alone() {
  custom_iq_t engine;
  const lib_constellation_map_t qpsk = {{0, {1, 1}}, {1, {-1, 1}}, {2, {-1, -1}}, {3, {1, -1}}};
  engine.set_custom_constellation(qpsk);
  QTemporaryDir dir;
  const QString broken = write_text(dir, QStringLiteral("broken.txt"), "0, 1, 1\n1, x, 1\n");
  const QString binary = write_text(dir, QStringLiteral("binary.txt"), QByteArray("0, 1\0\xff", 6));

  ui_constellation_editor_dialog_t dialog(engine.get_custom_constellation());
  QVERIFY(!dialog.load_file(broken));
  QVERIFY(dialog.message().startsWith(QStringLiteral("Line 2:")));
  QVERIFY(!dialog.load_file(binary));
  QVERIFY(dialog.message().contains(QStringLiteral("not a text file")));
  QVERIFY(!dialog.load_file(dir.filePath(QStringLiteral("missing.txt"))));
  QVERIFY(dialog.constellation() == qpsk);
  QVERIFY(dialog.problem().isEmpty());
  QVERIFY(engine.get_custom_constellation() == qpsk);
}

void test_pattern_editors_t::constellation_check_agrees_with_the_modulator() {
  // Each table the editor accepts, the constellation code accepts too, and each it refuses the
  // constellation code refuses as well; except a doubled symbol, which a map cannot hold, and a
  // single point, which the constellation code takes but which carries no bit.
  const std::vector<std::pair<ui_constellation_rows_t, QString>> cases = {
      {{{0, {1, 0}}, {1, {-1, 0}}}, QString()},
      {{{0, {1, 1}}, {1, {-1, 1}}, {2, {-1, -1}}, {3, {1, -1}}}, QString()},
      {{}, QStringLiteral("No points")},
      {{{0, {1, 0}}, {1, {-1, 0}}, {2, {0, 1}}},
       QStringLiteral("3 points: the count must be a power of two (2, 4, 8, ...)")},
      {{{0, {1, 0}}, {2, {-1, 0}}},
       QStringLiteral("Symbols must run from 0 to 1: 2 is out of range")},
      {{{0, {0.5, 0.5}}, {1, {-1, 0}}, {2, {0, 1}}, {3, {0.5, 0.5}}},
       QStringLiteral("Symbols 0 and 3 share the point (0.5, 0.5)")},
      {{{0, {0, 0}}, {1, {0, 0}}}, QStringLiteral("Symbols 0 and 1 share the point (0, 0)")},
  };
  for (const auto& [rows, expected] : cases) {
    const QString problem = ui_constellation_file_t::check(rows);
    QCOMPARE(problem, expected);
    const std::int32_t validity =
        common_lib::lib_constellation_base_t::check_constellation_map_validity(
            ui_constellation_file_t::to_map(rows));
    QCOMPARE(validity == 0, problem.isEmpty());
  }
  QCOMPARE(ui_constellation_file_t::check({{1, {1, 0}}, {1, {-1, 0}}}),
           QStringLiteral("Symbol 1 is given twice"));
  QCOMPARE(ui_constellation_file_t::check({{0, {1, 0}}}),
           QStringLiteral("1 point: the count must be a power of two (2, 4, 8, ...)"));

  // The editor's OK follows the check.
  ui_constellation_editor_dialog_t dialog({{0, {1, 0}}, {1, {1, 0}}});
  QCOMPARE(dialog.problem(), QStringLiteral("Symbols 0 and 1 share the point (1, 0)"));
  QVERIFY(dialog.message().contains(QStringLiteral("share the point")));
}

void test_pattern_editors_t::bit_pattern_file_round_trip_and_errors() {
  QString bits;
  for (int i = 0; i < 200; ++i) {
    bits += QLatin1Char((i * 7 % 3) == 0 ? '1' : '0');
  }
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("bits.txt"));
  ui_bit_pattern_editor_dialog_t dialog(bits);
  QVERIFY(dialog.save_file(path));
  QString read;
  QString error;
  QVERIFY(ui_bit_pattern_file_t::read(path, read, error));
  QCOMPARE(read, bits);

  const QString bad = write_text(dir, QStringLiteral("bad.txt"), "# pattern\n0101\n01 b1\n");
  QVERIFY(!dialog.load_file(bad));
  QCOMPARE(dialog.message(), QStringLiteral("Line 3, column 4: \"b\" is not a bit (0 or 1)"));
  QCOMPARE(dialog.bits(), bits);
  QVERIFY(ui_bit_pattern_file_t::parse(QStringLiteral("01 # 2x\n 1\t0\r\n"), read, error));
  QCOMPARE(read, QStringLiteral("0110"));
}

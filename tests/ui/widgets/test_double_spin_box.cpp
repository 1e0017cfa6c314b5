// The spin box with engineering units: typed text commits only when finished, clamps to the
// limits, and steps by decades.

#include <QLineEdit>
#include <QSignalSpy>
#include <QtTest>

#include "test_widget_classes.h"
#include "ui/widgets/ui_double_spin_box.h"

using nal::fp64;
using nal::ui_double_spin_box_t;

namespace {

void make_hertz_box(ui_double_spin_box_t& box) {
  box.set_unit(QStringLiteral("Hz"));
  box.set_range(0.0, 4e9);
  box.set_value(1e6);
}

void retype(ui_double_spin_box_t& box, const QString& text) {
  QLineEdit* edit = box.findChild<QLineEdit*>();
  edit->selectAll();
  QTest::keyClicks(&box, text);
}

fp64 committed(const QSignalSpy& spy) {
  return spy.last().at(0).toDouble();
}

}  // namespace

void test_double_spin_box_t::typed_units_commit_on_enter_only() {
  ui_double_spin_box_t box;
  make_hertz_box(box);
  QSignalSpy spy(&box, &ui_double_spin_box_t::sig_value_committed);
  QCOMPARE(box.text(), QStringLiteral("1 MHz"));

  // A half-typed number fires nothing.
  retype(box, QStringLiteral("2.5 M"));
  QCOMPARE(spy.count(), 0);
  QTest::keyClicks(&box, QStringLiteral("Hz"));
  QTest::keyClick(&box, Qt::Key_Return);
  QCOMPARE(spy.count(), 1);
  QCOMPARE(committed(spy), 2.5e6);
  QCOMPARE(box.text(), QStringLiteral("2.5 MHz"));

  // Enter again on the unchanged text commits nothing more.
  QTest::keyClick(&box, Qt::Key_Return);
  QCOMPARE(spy.count(), 1);

  const QList<QPair<QString, fp64>> typed = {{"10k", 1e4}, {"5 GHz", 4e9}, {"-3 kHz", 0.0}};
  for (const auto& [text, expected] : typed) {
    retype(box, text);
    QTest::keyClick(&box, Qt::Key_Enter);
    QVERIFY2(committed(spy) == expected, qPrintable(text));
    QCOMPARE(box.value(), expected);
  }
  // Letters that belong to no number or unit never reach the text.
  retype(box, QStringLiteral("12x3"));
  QCOMPARE(box.text(), QStringLiteral("123"));
  // Characters of the alphabet, but no number: the value stays.
  retype(box, QStringLiteral("kHz"));
  QVERIFY(!box.commit_text());
  QCOMPARE(box.value(), 0.0);
}

void test_double_spin_box_t::focus_loss_commits_and_escape_reverts() {
  QWidget window;
  auto* box = new ui_double_spin_box_t(&window);
  auto* other = new QLineEdit(&window);
  other->move(0, 40);
  make_hertz_box(*box);
  window.show();
  QApplication::setActiveWindow(&window);
  QVERIFY(QTest::qWaitForWindowActive(&window));
  QSignalSpy spy(box, &ui_double_spin_box_t::sig_value_committed);

  box->setFocus();
  retype(*box, QStringLiteral("20 k"));
  QTest::keyClick(box, Qt::Key_Escape);
  QCOMPARE(box->text(), QStringLiteral("1 MHz"));
  other->setFocus();
  QCOMPARE(spy.count(), 0);

  box->setFocus();
  retype(*box, QStringLiteral("20 k"));
  other->setFocus();
  QCOMPARE(spy.count(), 1);
  QCOMPARE(committed(spy), 2e4);
}

void test_double_spin_box_t::steps_are_decade_aware() {
  ui_double_spin_box_t box;
  make_hertz_box(box);
  box.set_value(2.5e6);
  box.stepBy(1);
  QCOMPARE(box.value(), 2.6e6);
  box.set_value(1.0);
  box.stepBy(-1);
  QCOMPARE(box.value(), 0.99);
  // From zero: a thousandth of the larger limit's decade.
  box.set_value(0.0);
  box.stepBy(1);
  QCOMPARE(box.value(), 1e6);
  // Never past the limits.
  box.set_value(3.95e9);
  box.stepBy(10);
  QCOMPARE(box.value(), 4e9);
}

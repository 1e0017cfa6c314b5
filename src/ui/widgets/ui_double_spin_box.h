#pragma once
// A spin box for a value with an engineering unit: shows "2.5 MHz", reads typed text such as
// "2.5 MHz", "10k" or "1e6", and clamps to its limits. Typing alone changes nothing: the value is
// committed (sig_value_committed) on Enter, on focus loss, or by a step of the arrow keys, the
// arrow buttons, Page Up/Down or the wheel. Escape returns to the shown value. set_value() and
// set_range() are for the program and never emit, so a model can refresh the box freely.
//
// The step is decade-aware: one unit of the second significant digit of the value (2.5 MHz steps
// by 100 kHz), so stepping works the same on a 1 ns sweep time and a 4 GHz sample rate.
// The wheel steps only while the box has focus: a scrolling setup column never changes values.

#include <QAbstractSpinBox>
#include <QString>

#include "lib/lib_types.h"

namespace nal {

class ui_double_spin_box_t : public QAbstractSpinBox {
  Q_OBJECT

 public:
  explicit ui_double_spin_box_t(QWidget* parent = nullptr);

  // The unit written after the prefix ("Hz", "s", "Sym/s"). Without a unit the value is written
  // as a plain number ("0.7071", "512") but may still be typed with a prefix ("10k").
  void set_unit(const QString& unit);
  const QString& unit() const { return _unit; }
  // Significant digits shown, 1 to 17 (10 by default: enough for every rate in hertz).
  void set_digits(int digits);
  // Whole numbers only: typed and stepped values are rounded to the nearest integer.
  void set_integer(bool integer);
  bool is_integer() const { return _integer; }

  // A fixed step instead of the decade-aware one; 0 returns to decade-aware steps.
  void set_fixed_step(fp64 step) { _fixed_step = step; }

  // Limits of committed values; the shown value is left as it is.
  void set_range(fp64 minimum, fp64 maximum);
  fp64 minimum() const { return _minimum; }
  fp64 maximum() const { return _maximum; }
  // "250 Sym/s to 4 GSym/s", also the box's tooltip.
  QString limits_text() const;

  // Shows `value` as given, without clamping or signal. An edit in progress stays unless the
  // value differs from the one shown before it.
  void set_value(fp64 value);
  fp64 value() const { return _value; }

  // Reads the text being edited. An edit that reads as a value is clamped to the limits, shown,
  // emitted and true is returned; unreadable text returns to the shown value with a message in a
  // tooltip and gives false. An unedited text gives false and emits nothing.
  bool commit_text();

  // The text the box shows for `value`.
  static QString text_of(fp64 value, const QString& unit, int digits, bool integer);

  // See base class.
  void stepBy(int steps) override;
  QValidator::State validate(QString& text, int& position) const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 signals:
  // A value the user chose, already within the limits.
  void sig_value_committed(double value);
  // The limits changed, with the new limits_text().
  void sig_limits_changed(const QString& limits);

 protected:
  // See base class.
  StepEnabled stepEnabled() const override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  fp64 _clamp(fp64 value) const;
  fp64 _step_size(fp64 from, int direction) const;
  void _show_value();
  void _emit_value(fp64 value);

  QString _unit;
  int _digits = 10;
  bool _integer = false;
  fp64 _fixed_step = 0.0;
  fp64 _minimum = 0.0;
  fp64 _maximum = 0.0;
  fp64 _value = 0.0;
  // The text last written by the box; a different text in the editor is an edit in progress.
  QString _shown_text;
};

}  // namespace nal

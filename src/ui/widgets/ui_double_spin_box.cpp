#include "ui/widgets/ui_double_spin_box.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "ui/units/lib_unit.h"

namespace nal {
namespace {

// Characters an edit in progress may hold: a number, a prefix and the letters of a unit.
bool is_number_character(QChar c) {
  return c.isDigit() || c.isSpace() || QStringLiteral("+-.eE").contains(c) ||
         QStringLiteral("yzafpnumkMGTPEZY\u00b5\u03bc").contains(c);
}

}  // namespace

ui_double_spin_box_t::ui_double_spin_box_t(QWidget* parent) : QAbstractSpinBox(parent) {
  setFocusPolicy(Qt::StrongFocus);
  // Typing only edits the text; commit_text() reads it.
  setKeyboardTracking(false);
  setAccelerated(true);
  connect(this, &QAbstractSpinBox::editingFinished, this, &ui_double_spin_box_t::commit_text);
  _show_value();
}

void ui_double_spin_box_t::set_unit(const QString& unit) {
  _unit = unit;
  _show_value();
  set_range(_minimum, _maximum);
}

void ui_double_spin_box_t::set_digits(int digits) {
  _digits = std::clamp(digits, 1, 17);
  _show_value();
}

void ui_double_spin_box_t::set_integer(bool integer) {
  _integer = integer;
  _show_value();
}

void ui_double_spin_box_t::set_range(fp64 minimum, fp64 maximum) {
  const bool changed = minimum != _minimum || maximum != _maximum;
  _minimum = minimum;
  _maximum = std::max(minimum, maximum);
  const QString limits = limits_text();
  setToolTip(tr("Limits: %1").arg(limits));
  if (changed) {
    emit sig_limits_changed(limits);
    updateGeometry();
  }
}

QString ui_double_spin_box_t::limits_text() const {
  return tr("%1 to %2")
      .arg(text_of(_minimum, _unit, _digits, _integer),
           text_of(_maximum, _unit, _digits, _integer));
}

void ui_double_spin_box_t::set_value(fp64 value) {
  // The same value leaves an edit in progress alone.
  if (value == _value) {
    return;
  }
  _value = value;
  _show_value();
}

QString ui_double_spin_box_t::text_of(fp64 value, const QString& unit, int digits, bool integer) {
  if (unit.isEmpty()) {
    if (integer && std::isfinite(value) && std::fabs(value) < 1e15) {
      return QString::number(static_cast<long long>(std::llround(value)));
    }
    return QString::number(value, 'g', digits);
  }
  return lib_unit_t::format(value, unit, digits);
}

fp64 ui_double_spin_box_t::_clamp(fp64 value) const {
  const fp64 whole = _integer ? std::round(value) : value;
  return std::clamp(whole, _minimum, _maximum);
}

void ui_double_spin_box_t::_show_value() {
  _shown_text = text_of(_value, _unit, _digits, _integer);
  lineEdit()->setText(_shown_text);
  update();
}

void ui_double_spin_box_t::_emit_value(fp64 value) {
  _value = value;
  _show_value();
  emit sig_value_committed(value);
}

bool ui_double_spin_box_t::commit_text() {
  const QString text = lineEdit()->text();
  if (text == _shown_text) {
    return false;
  }
  fp64 typed = 0.0;
  if (!lib_unit_t::parse(text, _unit, typed)) {
    _show_value();
    const QString unit_hint = _unit.isEmpty() ? tr("a number") : tr("a value in %1").arg(_unit);
    QToolTip::showText(mapToGlobal(QPoint(0, height())),
                       tr("\"%1\" is not %2; limits %3").arg(text, unit_hint, limits_text()), this);
    return false;
  }
  _emit_value(_clamp(typed));
  return true;
}

fp64 ui_double_spin_box_t::_step_size(fp64 from, int direction) const {
  if (_fixed_step > 0.0) {
    return _fixed_step;
  }
  fp64 magnitude = std::fabs(from);
  if (magnitude < common_lib::lib_tolerance) {
    // From zero: a thousandth of the larger limit, on a decade.
    const fp64 reference = std::max(std::fabs(_minimum), std::fabs(_maximum));
    if (reference < common_lib::lib_tolerance) {
      return 1.0;
    }
    const fp64 step = std::pow(10.0, std::floor(std::log10(reference)) - 3.0);
    return _integer ? std::max(1.0, std::round(step)) : step;
  }
  // Moving towards zero from a decade boundary takes the finer step of the decade below, so that
  // 1.0 steps down to 0.99 and back up to 1.0.
  const bool towards_zero = (direction < 0) == (from > 0);
  if (towards_zero) {
    magnitude *= 1.0 - 1e-12;
  }
  const fp64 step = std::pow(10.0, std::floor(std::log10(magnitude)) - 1.0);
  return _integer ? std::max(1.0, std::round(step)) : step;
}

void ui_double_spin_box_t::stepBy(int steps) {
  if (isReadOnly() || steps == 0) {
    return;
  }
  fp64 from = _value;
  fp64 typed = 0.0;
  if (lineEdit()->text() != _shown_text && lib_unit_t::parse(lineEdit()->text(), _unit, typed)) {
    from = typed;
  }
  const int direction = steps > 0 ? 1 : -1;
  fp64 next = from;
  for (int i = 0; i < std::abs(steps); ++i) {
    const fp64 step = _step_size(next, direction);
    // Snapped to the step, so that repeated steps do not collect rounding residue.
    next = std::round((next + direction * step) / step) * step;
  }
  const fp64 clamped = _clamp(next);
  if (clamped != _value || lineEdit()->text() != _shown_text) {
    _emit_value(clamped);
  }
  selectAll();
}

QValidator::State ui_double_spin_box_t::validate(QString& text, int& /*position*/) const {
  fp64 value = 0.0;
  if (lib_unit_t::parse(text, _unit, value)) {
    return QValidator::Acceptable;
  }
  for (const QChar c : text) {
    if (!is_number_character(c) && !_unit.contains(c)) {
      return QValidator::Invalid;
    }
  }
  return QValidator::Intermediate;
}

QAbstractSpinBox::StepEnabled ui_double_spin_box_t::stepEnabled() const {
  if (isReadOnly() || !isEnabled()) {
    return StepNone;
  }
  StepEnabled enabled = StepNone;
  if (_value > _minimum) {
    enabled |= StepDownEnabled;
  }
  if (_value < _maximum) {
    enabled |= StepUpEnabled;
  }
  return enabled;
}

void ui_double_spin_box_t::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && lineEdit()->text() != _shown_text) {
    _show_value();
    selectAll();
    event->accept();
    return;
  }
  QAbstractSpinBox::keyPressEvent(event);
}

void ui_double_spin_box_t::wheelEvent(QWheelEvent* event) {
  if (!hasFocus()) {
    event->ignore();
    return;
  }
  QAbstractSpinBox::wheelEvent(event);
}

QSize ui_double_spin_box_t::sizeHint() const {
  ensurePolished();
  // Wide enough for either limit and the shown value, plus the arrows and frame.
  const QFontMetrics metrics(font());
  int text_width = metrics.horizontalAdvance(_shown_text);
  for (const fp64 limit : {_minimum, _maximum}) {
    text_width =
        std::max(text_width, metrics.horizontalAdvance(text_of(limit, _unit, _digits, _integer)));
  }
  QSize hint = QAbstractSpinBox::sizeHint();
  hint.setWidth(std::max(hint.width(), text_width + 2 * metrics.averageCharWidth() + 28));
  return hint;
}

QSize ui_double_spin_box_t::minimumSizeHint() const {
  QSize hint = QAbstractSpinBox::minimumSizeHint();
  hint.setWidth(std::max(hint.width(), fontMetrics().averageCharWidth() * 10));
  return hint;
}

}  // namespace nal

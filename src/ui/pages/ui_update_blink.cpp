#include "ui/pages/ui_update_blink.h"

#include <QEasingCurve>
#include <QGraphicsOpacityEffect>
#include <QPropertyAnimation>
#include <QWidget>
#include <cmath>

namespace nal {

namespace {

qreal sine_swing(qreal progress) {
  return std::sin(progress * 3.1415);
}

}  // namespace

ui_update_blink_t::ui_update_blink_t(QWidget* target)
    : QObject(target), _effect(new QGraphicsOpacityEffect(target)) {
  _effect->setOpacity(1.0);
  target->setGraphicsEffect(_effect);
  _animation = new QPropertyAnimation(_effect, "opacity", this);
  _animation->setStartValue(0.1);
  _animation->setEndValue(1.0);
  _animation->setDuration(1000);
  _animation->setLoopCount(-1);
  QEasingCurve curve;
  curve.setCustomType(sine_swing);
  _animation->setEasingCurve(curve);
}

void ui_update_blink_t::set_blink(bool state) {
  if (state) {
    if (!is_blinking()) {
      _animation->start();
    }
    return;
  }
  _animation->stop();
  _effect->setOpacity(1.0);
}

bool ui_update_blink_t::is_blinking() const {
  return _animation->state() == QAbstractAnimation::Running;
}

}  // namespace nal

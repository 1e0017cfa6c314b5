#pragma once
// The blink of a page's Update button: the button's opacity swings between 0.1 and 1 once a
// second for as long as the shown waveform no longer matches the settings.

#include <QObject>

class QGraphicsOpacityEffect;
class QPropertyAnimation;
class QWidget;

namespace nal {

class ui_update_blink_t : public QObject {
  Q_OBJECT

 public:
  // Installs an opacity effect on `target`, which owns it.
  explicit ui_update_blink_t(QWidget* target);

  // True starts the blink; false stops it and makes the button fully opaque.
  void set_blink(bool state);
  bool is_blinking() const;

 private:
  QGraphicsOpacityEffect* _effect;
  QPropertyAnimation* _animation;
};

}  // namespace nal

#pragma once
// Measures start-up: when the widget it watches paints for the first time with its content ready,
// it prints "startup_ms=<milliseconds since the process started>" on standard output and ends the
// application. The start is the kernel's record of the process (10 ms resolution).

#include <QObject>
#include <functional>

namespace nal {

class ui_startup_probe_t : public QObject {
  Q_OBJECT

 public:
  // `ready` tells whether a paint shows the content that counts.
  ui_startup_probe_t(QWidget* watched, std::function<bool()> ready);

  // Milliseconds since the process started; negative when unknown.
  static double milliseconds_since_process_start();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::function<bool()> _ready;
  bool _reported = false;
};

}  // namespace nal

#pragma once
// Measures start-up: when the widget it watches paints for the first time, it prints
// "startup_ms=<milliseconds since the process started>" on standard output and ends the
// application. The start is the kernel's record of the process (10 ms resolution).

#include <QObject>

namespace nal {

class ui_startup_probe_t : public QObject {
  Q_OBJECT

 public:
  explicit ui_startup_probe_t(QWidget* watched);

  // Milliseconds since the process started; negative when unknown.
  static double milliseconds_since_process_start();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool _reported = false;
};

}  // namespace nal

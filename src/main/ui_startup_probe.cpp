#include "main/ui_startup_probe.h"

#include <unistd.h>
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>

namespace nal {

ui_startup_probe_t::ui_startup_probe_t(QWidget* watched, std::function<bool()> ready)
    : QObject(watched), _ready(std::move(ready)) {
  watched->installEventFilter(this);
}

double ui_startup_probe_t::milliseconds_since_process_start() {
  std::ifstream stat_file("/proc/self/stat");
  std::string stat;
  std::getline(stat_file, stat);
  // Field 22, the start time in clock ticks since boot, counted after the command name, which
  // may hold spaces and ends with the last ')'.
  const std::size_t name_end = stat.rfind(')');
  if (name_end == std::string::npos) {
    return -1.0;
  }
  std::istringstream fields(stat.substr(name_end + 2));
  std::string field;
  for (int index = 3; index <= 22 && fields >> field; ++index) {
  }
  const double ticks_per_second = static_cast<double>(sysconf(_SC_CLK_TCK));
  timespec now{};
  if (field.empty() || ticks_per_second <= 0.0 || clock_gettime(CLOCK_BOOTTIME, &now) != 0) {
    return -1.0;
  }
  const double start_s = std::strtod(field.c_str(), nullptr) / ticks_per_second;
  const double now_s = static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
  return (now_s - start_s) * 1e3;
}

bool ui_startup_probe_t::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Paint && !_reported && _ready()) {
    _reported = true;
    std::printf("startup_ms=%.0f\n", milliseconds_since_process_start());
    std::fflush(stdout);
    QTimer::singleShot(0, QCoreApplication::instance(), [] { QCoreApplication::exit(0); });
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace nal

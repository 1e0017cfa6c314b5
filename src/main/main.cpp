// The wavelume desktop application: one main window, an optional path to recall, the event loop.
//
// WAVELUME_STARTUP_PROBE=1 opens a Custom IQ tab, prints the milliseconds from process start to
// the first paint of its I/Q view, and quits (scripts/bench-startup.sh).

#include <QApplication>
#include <QFontDatabase>
#include <cstdlib>

#include "main/ui_application_style.h"
#include "main/ui_main_window.h"
#include "main/ui_startup_probe.h"
#include "ui/chart/ui_iq_waveform_view.h"
#include "ui/chart/ui_vchart_plot_widget.h"
#include "ui/chart/ui_vchart_sampled_curve_item.h"
#include "ui/pages/ui_protocol_page.h"
#include "ui/pages/ui_resources.h"
#include "ui/pages/ui_tab_widget.h"

namespace {

// The product font when the resources carry it; otherwise the system's default stays.
void install_application_font() {
  const int id = QFontDatabase::addApplicationFont(":font/InstrumentSans-Medium.ttf");
  const QStringList families = QFontDatabase::applicationFontFamilies(id);
  if (families.isEmpty()) {
    return;
  }
  QFont font = QApplication::font();
  font.setFamily(families.first());
  font.setPixelSize(15);
  QApplication::setFont(font);
}

}  // namespace

int main(int argc, char* argv[]) {
  QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
  QApplication application(argc, argv);
  QApplication::setApplicationName("Wavelume");
  QApplication::setDesktopFileName("wavelume");
  QApplication::setStyle(new nal::ui_application_style_t);
  nal::ui_register_resources();
  install_application_font();

  nal::ui_main_window_t window;
  if (argc > 1 && argv[1][0] != '\0') {
    window.recall(QString::fromLocal8Bit(argv[1]));
  }
  const char* probe = std::getenv("WAVELUME_STARTUP_PROBE");
  if (probe != nullptr && probe[0] == '1') {
    window.addTabPage("Custom IQ");
    auto* page = qobject_cast<nal::ui_protocol_page_t*>(
        window.tab_widget()->page(window.tab_widget()->current_index()));
    if (page != nullptr) {
      const nal::ui_iq_waveform_view_t* view = page->iq_view();
      new nal::ui_startup_probe_t(view->plot(),
                                  [view] { return view->in_phase()->samples().size() > 0; });
    }
  }
  window.show();
  return QApplication::exec();
}

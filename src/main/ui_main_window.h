#pragma once
// The one top-level window: its own title bar (the window has no system frame), the menu bar and
// the tabs, each tab holding the Home page or a protocol page. File > Recall and Save As read and
// write project files of all tabs. GUI thread only.

#include <QWidget>

#include "main/ui_page_factory.h"

class QMenuBar;

namespace nal {

class ui_frameless_resizer_t;
class ui_tab_widget_t;
class ui_title_bar_t;

class ui_main_window_t : public QWidget {
  Q_OBJECT

 public:
  // `pages` tells which protocol pages exist; tests pass their own.
  explicit ui_main_window_t(ui_page_factory_t pages = ui_page_factory_t::standard());
  ~ui_main_window_t() override;

  ui_tab_widget_t* tab_widget() const { return _tabs; }
  ui_title_bar_t* title_bar() const { return _title_bar; }
  QMenuBar* menu_bar() const { return _menu_bar; }
  // Save As without its dialog: every tab in order and the current index.
  bool save_project(const QString& path);

 signals:
  void sig_update_waveform();

 public slots:
  // Replaces the current tab's page by a new page of the protocol with this text; any other
  // text, or a protocol without a page in this build, does nothing.
  void addTabPage(QString tabName);
  // Reads a project (or state) file into new tabs; an empty name asks with a dialog first.
  void recall(QString fileName);
  void _save();

#ifdef Q_OS_WIN
 protected:
  bool nativeEvent(const QByteArray& eventType, void* message, long* result) override;
#endif

 private:
  void _build_menu();
  void _build_title_bar();
  void _build_tabs();
  void _add_home_page();
  void _add_toolkit_page();
  void _maximise();
  void _restore();

  ui_page_factory_t _pages;
  QMenuBar* _menu_bar = nullptr;
  ui_title_bar_t* _title_bar = nullptr;
  ui_tab_widget_t* _tabs = nullptr;
  ui_frameless_resizer_t* _resizer = nullptr;
};

// The main window among the top-level widgets, or null.
ui_main_window_t* ui_find_main_window();

}  // namespace nal

#include "main/ui_main_window.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QScreen>
#include <QUrl>
#include <QVBoxLayout>
#include <iostream>
#include <vector>

#include "cfg/cfg_protocol_state.h"
#include "main/ui_dialog_about.h"
#include "main/ui_frameless_resizer.h"
#include "main/ui_home_page.h"
#include "main/ui_protocol_tab_text.h"
#include "main/ui_title_bar.h"
#include "ui/pages/ui_protocol_page.h"
#include "ui/pages/ui_tab_widget.h"

#ifdef Q_OS_WIN
#include <windows.h>
#include <windowsx.h>
#endif

namespace nal {

namespace {

constexpr const char* manual_path = "../share/doc/wavelume/wavelume-user-manual.pdf";
constexpr const char* website = "https://wavelume.org";
constexpr int resize_border = 4;

// The order in which addTabPage compares names.
constexpr protocol_type_t add_tab_order[] = {
    PROTOCOL_BLUETOOTH_BR_EDR, PROTOCOL_BLUETOOTH_LE,    PROTOCOL_802154_OQPSK_BPSK,
    PROTOCOL_802154_SUN_FSK,   PROTOCOL_802154_SUN_OFDM, PROTOCOL_G9959,
    PROTOCOL_CUSTOM_OFDM,      PROTOCOL_CUSTOM_IQ,       PROTOCOL_TOOLKIT,
};

}  // namespace

ui_main_window_t::ui_main_window_t(ui_page_factory_t pages)
    : QWidget(nullptr), _pages(std::move(pages)) {
  resize(1200, 740);
  setWindowFlags(Qt::FramelessWindowHint | Qt::WindowMinimizeButtonHint);
  setWindowTitle("Wavelume");
  setWindowIcon(QIcon(":/image/Wavelume.pro"));
  setObjectName("MainWindow");
  // Qt 5 reads a "file:///" style sheet only at application level, so the window takes the
  // sheet's text from the resource tree.
  QFile sheet(":/qss/windows_ui.qss");
  if (sheet.open(QIODevice::ReadOnly | QIODevice::Text)) {
    setStyleSheet(QString::fromUtf8(sheet.readAll()));
  }
  _build_menu();
  _build_title_bar();
  _build_tabs();
  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(0);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(_title_bar);
  layout->addWidget(_menu_bar);
  layout->addWidget(_tabs, 1);
#ifndef Q_OS_WIN
  _resizer = new ui_frameless_resizer_t(this, resize_border);
#endif
}

ui_main_window_t::~ui_main_window_t() = default;

void ui_main_window_t::_build_menu() {
  _menu_bar = new QMenuBar(this);
  QMenu* file = _menu_bar->addMenu("&File");
  file->addAction(
      "Recall...", this, [this] { recall(QString()); }, QKeySequence("Ctrl+O"));
  file->addAction("Save As...", this, &ui_main_window_t::_save, QKeySequence("Ctrl+S"));
  file->addSeparator();
  file->addAction(
      "Exit", qApp, [] { QApplication::exit(0); }, QKeySequence("Alt+F4"));

  QMenu* tools = _menu_bar->addMenu("&Tools");
  tools->addAction("Toolkit", this, &ui_main_window_t::_add_toolkit_page);

  QMenu* help = _menu_bar->addMenu("&Help");
  help->addAction("Contents...", this, [] {
    const QString path = QDir(QCoreApplication::applicationDirPath()).filePath(manual_path);
    if (!QFileInfo::exists(path)) {
      std::cerr << "The user manual is not installed: " << QFile::encodeName(path).constData()
                << std::endl;
      return;
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
  });
  help->addSeparator();
  help->addAction("Website...", this, [] { QDesktopServices::openUrl(QUrl(website)); });
  help->addSeparator();
  help->addAction("About...", this, [this] {
    ui_dialog_about_t about(this);
    about.exec();
  });
}

void ui_main_window_t::_build_title_bar() {
  _title_bar = new ui_title_bar_t(this);
  _title_bar->move(0, 0);
  _title_bar->set_title_icon(":/image/Wavelume.png", QSize(196, 20));
  _title_bar->set_button_type(1);
  connect(_title_bar, &ui_title_bar_t::signalButtonMinClicked, this, &QWidget::showMinimized);
  connect(_title_bar, &ui_title_bar_t::signalButtonRestoreClicked, this,
          &ui_main_window_t::_restore);
  connect(_title_bar, &ui_title_bar_t::signalButtonMaxClicked, this, &ui_main_window_t::_maximise);
  connect(_title_bar, &ui_title_bar_t::signalButtonCloseClicked, this, &QWidget::close);
}

void ui_main_window_t::_build_tabs() {
  _tabs = new ui_tab_widget_t(this);
  _add_home_page();
  connect(_tabs, &ui_tab_widget_t::sig_add_home, this, &ui_main_window_t::_add_home_page);
}

void ui_main_window_t::_add_home_page() {
  _tabs->add_page(new ui_home_page_t, protocol_tab_text(PROTOCOL_HOME), QIcon(":/image/Home.png"));
}

void ui_main_window_t::_add_toolkit_page() {
  if (ui_protocol_page_t* page = _pages.create(PROTOCOL_TOOLKIT)) {
    _tabs->add_page(page, protocol_tab_text(PROTOCOL_TOOLKIT));
  }
}

// The frameless window is never put in the system's maximised state: full size is a geometry.
void ui_main_window_t::_maximise() {
  _title_bar->save_restore_info(pos(), size());
  QScreen* current = screen() != nullptr ? screen() : QGuiApplication::primaryScreen();
  setGeometry(current->availableGeometry());
  if (_resizer != nullptr) {
    _resizer->set_enabled(false);
  }
}

void ui_main_window_t::_restore() {
  QPoint position;
  QSize restored_size;
  _title_bar->get_restore_info(position, restored_size);
  setGeometry(QRect(position, restored_size));
  if (_resizer != nullptr) {
    _resizer->set_enabled(true);
  }
}

void ui_main_window_t::addTabPage(QString tabName) {
  for (protocol_type_t type : add_tab_order) {
    if (tabName == protocol_tab_text(type)) {
      if (ui_protocol_page_t* page = _pages.create(type)) {
        _tabs->replace_current_page(page, tabName);
      }
      return;
    }
  }
}

void ui_main_window_t::recall(QString fileName) {
  if (fileName.isEmpty()) {
    fileName = QFileDialog::getOpenFileName(this, "Recall", QString(), "Project Files (*.project)");
    if (fileName.isEmpty()) {
      return;
    }
  }
  const QFileInfo file(fileName);
  if (!file.isFile() || (file.suffix() != "project" && file.suffix() != "state")) {
    std::cerr << "error: fileName = " << QFile::encodeName(fileName).constData() << std::endl;
    return;
  }
  std::vector<std::unique_ptr<cfg_protocol_base_t>> configurations;
  uint64 current_index = 0;
  if (!cfg_protocol_state_t::load_protocol_state(QFile::encodeName(fileName).toStdString(),
                                                 configurations, current_index)) {
    return;
  }
  _tabs->remove_all_pages();
  for (std::unique_ptr<cfg_protocol_base_t>& configuration : configurations) {
    ui_protocol_page_t* page =
        configuration ? _pages.create(configuration->protocol_type()) : nullptr;
    if (page == nullptr) {
      _add_home_page();
      continue;
    }
    _tabs->add_page(page, protocol_tab_text(configuration->protocol_type()));
    page->set_configuration(std::move(configuration));
  }
  if (_tabs->count() == 0) {
    _add_home_page();
  }
  _tabs->set_current_index(static_cast<int>(std::min<uint64>(current_index, INT32_MAX)));
  _title_bar->set_title_content(file.fileName());
}

void ui_main_window_t::_save() {
  QString path = QFileDialog::getSaveFileName(this, "Save", QString(), "Project Files (*.project)");
  if (path.isEmpty()) {
    return;
  }
  if (QFileInfo(path).suffix().isEmpty()) {
    path += ".project";
  }
  save_project(path);
}

bool ui_main_window_t::save_project(const QString& path) {
  std::vector<const cfg_protocol_base_t*> configurations;
  for (int i = 0; i < _tabs->count(); ++i) {
    auto* page = qobject_cast<ui_protocol_page_t*>(_tabs->page(i));
    configurations.push_back(page != nullptr ? &page->configuration() : nullptr);
  }
  const int current = std::max(_tabs->current_index(), 0);
  const bool saved = cfg_protocol_state_t::save_protocol_state(
      QFile::encodeName(path).toStdString(), configurations, static_cast<uint64>(current));
  if (saved) {
    _title_bar->set_title_content(QFileInfo(path).fileName());
  }
  return saved;
}

#ifdef Q_OS_WIN
bool ui_main_window_t::nativeEvent(const QByteArray& eventType, void* message, long* result) {
  const MSG* msg = static_cast<const MSG*>(message);
  if (msg->message != WM_NCHITTEST) {
    return QWidget::nativeEvent(eventType, message, result);
  }
  const int x = static_cast<short>(msg->lParam & 0xFFFF) - this->x();
  const int y = static_cast<int>(msg->lParam >> 16) - this->y();
  const bool left = x >= 0 && x < resize_border;
  const bool right = x > width() - resize_border && x <= width();
  const bool top = y >= 0 && y < resize_border;
  const bool bottom = y > height() - resize_border && y <= height();
  *result = HTCLIENT;
  if (top && left) {
    *result = HTTOPLEFT;
  } else if (top && right) {
    *result = HTTOPRIGHT;
  } else if (bottom && left) {
    *result = HTBOTTOMLEFT;
  } else if (bottom && right) {
    *result = HTBOTTOMRIGHT;
  } else if (left) {
    *result = HTLEFT;
  } else if (right) {
    *result = HTRIGHT;
  } else if (top) {
    *result = HTTOP;
  } else if (bottom) {
    *result = HTBOTTOM;
  }
  return true;
}
#endif

ui_main_window_t* ui_find_main_window() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (auto* main_window = qobject_cast<ui_main_window_t*>(widget)) {
      return main_window;
    }
  }
  return nullptr;
}

}  // namespace nal

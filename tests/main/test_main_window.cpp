// The main window: tab rules with the Home page, Tools > Toolkit against the Home button, project
// files with a Home tab in the middle, bad paths given to recall (in process and on the command
// line), the title bar's full size and restore, and the edges that resize the frameless window.

#include <QAction>
#include <QMenuBar>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>
#include <iostream>
#include <sstream>

#include "cfg/cfg_custom_iq.h"
#include "main/ui_frameless_resizer.h"
#include "main/ui_home_page.h"
#include "main/ui_home_square_btn.h"
#include "main/ui_main_window.h"
#include "main/ui_title_bar.h"
#include "tests/ui/pages/test_tone_page.h"
#include "ui/pages/ui_close_button.h"
#include "ui/pages/ui_custom_iq_page.h"
#include "ui/pages/ui_resources.h"
#include "ui/pages/ui_tab_bar.h"
#include "ui/pages/ui_tab_button.h"
#include "ui/pages/ui_tab_widget.h"

using nal::ui_main_window_t;

namespace {

void delete_closed_widgets() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Standard error while `action` runs.
template <typename action_t>
std::string captured_stderr(action_t action) {
  std::ostringstream captured;
  std::streambuf* old = std::cerr.rdbuf(captured.rdbuf());
  action();
  std::cerr.rdbuf(old);
  return captured.str();
}

QAction* menu_action(ui_main_window_t& window, const QString& text) {
  for (QAction* menu : window.menu_bar()->actions()) {
    for (QAction* action : menu->menu()->actions()) {
      if (action->text() == text) {
        return action;
      }
    }
  }
  return nullptr;
}

nal::ui_home_square_btn_t* home_button(QWidget* home_page, const QString& text) {
  for (auto* button : home_page->findChildren<nal::ui_home_square_btn_t*>()) {
    if (button->text() == text) {
      return button;
    }
  }
  return nullptr;
}

// The standard pages with the tests' tone page as the Toolkit.
nal::ui_page_factory_t pages_with_toolkit() {
  nal::ui_page_factory_t pages = nal::ui_page_factory_t::standard();
  pages.add(nal::PROTOCOL_TOOLKIT, [] { return new wavelume_test::tone_page_t; });
  return pages;
}

// A left-button drag on `widget`; the move goes straight to it, as the window system would send it
// while the button is held.
void drag(QWidget* widget, const QPoint& from, const QPoint& to) {
  QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, from);
  QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                   Qt::NoModifier);
  QApplication::sendEvent(widget, &move);
  QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, to);
}

template <typename page_t>
bool is_page(ui_main_window_t& window, int index) {
  return qobject_cast<page_t*>(window.tab_widget()->page(index)) != nullptr;
}

}  // namespace

class MainWindow : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() { nal::ui_register_resources(); }
  void cleanup() {
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    delete_closed_widgets();
  }

  void closing_the_only_tab_gives_a_new_home_tab() {
    ui_main_window_t window;
    window.addTabPage("Custom IQ");
    QPointer<QWidget> page = window.tab_widget()->page(0);
    QTest::mouseClick(window.tab_widget()->tab_bar()->tab_button(0)->close_button(),
                      Qt::LeftButton);
    delete_closed_widgets();
    QVERIFY(page.isNull());
    QCOMPARE(window.tab_widget()->count(), 1);
    QVERIFY(is_page<nal::ui_home_page_t>(window, 0));
    QCOMPARE(window.tab_widget()->current_index(), 0);
    QCOMPARE(window.tab_widget()->tab_bar()->current_index(), 0);
    QVERIFY(window.tab_widget()->tab_bar()->tab_button(0)->is_selected());
  }

  void home_choice_replaces_the_home_page_in_place() {
    ui_main_window_t window;
    QTest::mouseClick(window.tab_widget()->tab_bar()->add_button(), Qt::LeftButton);
    QTest::mouseClick(window.tab_widget()->tab_bar()->add_button(), Qt::LeftButton);
    QCOMPARE(window.tab_widget()->count(), 3);
    window.tab_widget()->set_current_index(1);
    QWidget* first = window.tab_widget()->page(0);

    QTest::mouseClick(home_button(window.tab_widget()->page(1), "Custom IQ"), Qt::LeftButton);
    delete_closed_widgets();
    QCOMPARE(window.tab_widget()->count(), 3);
    QCOMPARE(window.tab_widget()->current_index(), 1);
    QVERIFY(is_page<nal::ui_custom_iq_page_t>(window, 1));
    QCOMPARE(window.tab_widget()->page(0), first);
    nal::ui_tab_button_t* tab = window.tab_widget()->tab_bar()->tab_button(1);
    QCOMPARE(tab->text(), QString("Custom IQ"));
    QVERIFY(tab->icon().isNull());
  }

  void toolkit_menu_adds_while_the_home_button_replaces() {
    ui_main_window_t window(pages_with_toolkit());
    QWidget* home = window.tab_widget()->page(0);
    menu_action(window, "Toolkit")->trigger();
    QCOMPARE(window.tab_widget()->count(), 2);
    QCOMPARE(window.tab_widget()->page(0), home);
    QVERIFY(qobject_cast<wavelume_test::tone_page_t*>(window.tab_widget()->page(1)));
    QCOMPARE(window.tab_widget()->tab_bar()->tab_button(1)->text(), QString("Toolkit"));

    window.tab_widget()->set_current_index(0);
    QTest::mouseClick(home_button(home, "Toolkit"), Qt::LeftButton);
    delete_closed_widgets();
    QCOMPARE(window.tab_widget()->count(), 2);
    QVERIFY(qobject_cast<wavelume_test::tone_page_t*>(window.tab_widget()->page(0)));
    QCOMPARE(window.tab_widget()->current_index(), 0);
  }

  void project_with_a_home_tab_in_the_middle_recalls_in_order() {
    QTemporaryDir folder;
    const QString project = folder.filePath("three.project");
    {
      ui_main_window_t window;
      window.addTabPage("Custom IQ");
      qobject_cast<nal::ui_custom_iq_page_t*>(window.tab_widget()->page(0))
          ->custom_iq_configuration()
          .engine()
          .set_apsk_qam_type(nal::MOD_16QAM);
      QTest::mouseClick(window.tab_widget()->tab_bar()->add_button(), Qt::LeftButton);
      QTest::mouseClick(window.tab_widget()->tab_bar()->add_button(), Qt::LeftButton);
      window.addTabPage("Custom IQ");
      QCOMPARE(window.tab_widget()->current_index(), 2);
      QVERIFY(window.save_project(project));
    }
    ui_main_window_t window;
    window.recall(project);
    delete_closed_widgets();
    QCOMPARE(window.tab_widget()->count(), 3);
    QVERIFY(is_page<nal::ui_custom_iq_page_t>(window, 0));
    QVERIFY(is_page<nal::ui_home_page_t>(window, 1));
    QVERIFY(is_page<nal::ui_custom_iq_page_t>(window, 2));
    QCOMPARE(window.tab_widget()->current_index(), 2);
    QCOMPARE(window.tab_widget()->tab_bar()->current_index(), 2);
    QCOMPARE(window.tab_widget()->tab_bar()->tab_button(1)->text(), QString("Home"));
    auto* first = qobject_cast<nal::ui_custom_iq_page_t*>(window.tab_widget()->page(0));
    QCOMPARE(first->custom_iq_configuration().engine().get_apsk_qam_type(), nal::MOD_16QAM);
    QVERIFY(!first->custom_iq_configuration().engine().get_waveform_data().empty());
  }

  void bad_recall_paths_print_the_error_line_and_change_nothing() {
    QTemporaryDir folder;
    const QString text_file = folder.filePath("notes.txt");
    QFile(text_file).open(QIODevice::WriteOnly);
    const QString upper = folder.filePath("upper.PROJECT");
    QFile(upper).open(QIODevice::WriteOnly);
    ui_main_window_t window;
    for (const QString& path : {QString("/nonexistent/a.project"), text_file, upper}) {
      const std::string errors = captured_stderr([&] { window.recall(path); });
      QCOMPARE(QString::fromStdString(errors), "error: fileName = " + path + "\n");
      QCOMPARE(window.tab_widget()->count(), 1);
      QVERIFY(is_page<nal::ui_home_page_t>(window, 0));
    }
  }

  void command_line_with_a_missing_file_still_opens() {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    process.setProcessEnvironment(environment);
    process.start(WAVELUME_EXECUTABLE, {"/nonexistent/settings.project"});
    QVERIFY(process.waitForStarted());
    // Still running: the window is open.
    QVERIFY(!process.waitForFinished(1500));
    process.kill();
    process.waitForFinished();
    QVERIFY(QString::fromLocal8Bit(process.readAllStandardError())
                .contains("error: fileName = /nonexistent/settings.project\n"));
  }

  void title_bar_full_size_and_restore_are_geometry_changes() {
    ui_main_window_t window;
    window.move(40, 30);
    nal::ui_title_bar_t* bar = window.title_bar();
    const QRect normal = window.geometry();
    QTest::mouseDClick(bar, Qt::LeftButton, Qt::NoModifier, QPoint(400, 10));
    QVERIFY(bar->is_maximized_shown());
    QCOMPARE(window.geometry(), QGuiApplication::primaryScreen()->availableGeometry());
    QVERIFY(!window.isMaximized());
    // No drag at full size.
    drag(bar, QPoint(400, 10), QPoint(450, 40));
    QCOMPARE(window.geometry(), QGuiApplication::primaryScreen()->availableGeometry());
    QTest::mouseDClick(bar, Qt::LeftButton, Qt::NoModifier, QPoint(400, 10));
    QVERIFY(!bar->is_maximized_shown());
    QCOMPARE(window.geometry(), normal);
  }

  void resize_edges_of_the_frameless_window() {
    QWidget window;
    window.resize(300, 200);
    nal::ui_frameless_resizer_t resizer(&window, 4);
    QCOMPARE(resizer.edges_at(QPoint(0, 100)), Qt::Edges(Qt::LeftEdge));
    QCOMPARE(resizer.edges_at(QPoint(2, 2)), Qt::TopEdge | Qt::LeftEdge);
    QCOMPARE(resizer.edges_at(QPoint(150, 100)), Qt::Edges());
    QCOMPARE(resizer.edges_at(QPoint(-1, 100)), Qt::Edges());
  }
};

QTEST_MAIN(MainWindow)
#include "test_main_window.moc"

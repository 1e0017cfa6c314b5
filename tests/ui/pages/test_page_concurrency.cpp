// Background pages under load: Updates pressed again and again while settings change and tabs
// close and open, with tasks overlapping on the pool. Run under ThreadSanitizer in CI. Afterwards
// every page shows exactly the waveform of its last settings.

#include <QAction>
#include <QDoubleSpinBox>
#include <QThreadPool>
#include <QtTest>
#include <map>
#include <random>

#include "tests/ui/pages/test_tone_page.h"
#include "ui/chart/ui_iq_waveform_view.h"
#include "ui/chart/ui_vchart_sampled_curve_item.h"
#include "ui/pages/ui_resources.h"
#include "ui/pages/ui_tab_widget.h"

using wavelume_test::tone_configuration_t;
using wavelume_test::tone_page_t;

class PageConcurrency : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() { nal::ui_register_resources(); }

  void updates_edits_and_closes_race_with_running_tasks() {
    tone_configuration_t::delay_ms = 2;
    // The last first sample each live page showed; outlives the pages.
    std::map<tone_page_t*, double> shown;
    nal::ui_tab_widget_t tabs;
    auto add_page = [&] {
      auto* page = new tone_page_t;
      connect(page, &nal::ui_protocol_page_t::sig_waveform_shown, &tabs, [&shown, page] {
        shown[page] = page->iq_view()->in_phase()->samples().values().front();
      });
      connect(page, &QObject::destroyed, &tabs, [&shown, page] { shown.erase(page); });
      tabs.add_page(page, "Tone");
    };
    for (int i = 0; i < 4; ++i) {
      add_page();
    }
    auto page_at = [&](int index) { return static_cast<tone_page_t*>(tabs.page(index)); };

    std::mt19937 random(0);
    std::uniform_int_distribution<int> action(0, 9);
    const int started = tone_configuration_t::computations;
    for (int step = 0; step < 400; ++step) {
      tone_page_t* page = page_at(static_cast<int>(random() % tabs.count()));
      const int choice = action(random);
      if (choice < 5) {
        page->update_action()->trigger();
      } else if (choice < 9) {
        page->amplitude_box()->setValue(static_cast<double>(random() % 1000) / 1000.0);
        page->tone().set_length(500 + static_cast<nal::uint32>(random() % 1000));
      } else {
        tabs.remove_all_pages();
        for (int i = 0; i < 4; ++i) {
          add_page();
        }
      }
      if (step % 7 == 0) {
        QTest::qWait(1);
      }
    }
    for (int i = 0; i < tabs.count(); ++i) {
      page_at(i)->update_action()->trigger();
    }
    QTRY_VERIFY_WITH_TIMEOUT(
        [&] {
          for (int i = 0; i < tabs.count(); ++i) {
            if (page_at(i)->is_computing()) {
              return false;
            }
          }
          return true;
        }(),
        20000);
    QVERIFY(tone_configuration_t::computations - started > 50);
    for (int i = 0; i < tabs.count(); ++i) {
      tone_page_t* page = page_at(i);
      QVERIFY(!page->is_update_blinking());
      QCOMPARE(shown.at(page), page->tone().amplitude());
    }
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
};

QTEST_MAIN(PageConcurrency)
#include "test_page_concurrency.moc"

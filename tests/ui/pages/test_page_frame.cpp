// The protocol page frame: tab rules of the shared tab widget, the Update blink, background runs
// (one more run after a busy Update, results of closed pages dropped, failures shown), and the
// page's Save and Recall on state and waveform files.

#include <QAction>
#include <QDoubleSpinBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>
#include <fstream>
#include <memory>

#include "cfg/cfg_custom_iq.h"
#include "comm/visa_device_manager.h"
#include "tests/ui/pages/test_tone_page.h"
#include "tools/instrument_sim/sim_instrument.h"
#include "ui/chart/ui_fft_spectrum_view.h"
#include "ui/chart/ui_iq_waveform_view.h"
#include "ui/chart/ui_vchart_sampled_curve_item.h"
#include "ui/chart/ui_vchart_span_item.h"
#include "ui/pages/ui_close_button.h"
#include "ui/pages/ui_custom_iq_page.h"
#include "ui/pages/ui_resources.h"
#include "ui/pages/ui_tab_bar.h"
#include "ui/pages/ui_tab_button.h"
#include "ui/pages/ui_tab_widget.h"

using wavelume_test::tone_configuration_t;
using wavelume_test::tone_page_t;

namespace {

// The first I value and the length of every waveform a page's I/Q view shows, in order.
class shown_waveforms_t : public QObject {
 public:
  explicit shown_waveforms_t(nal::ui_protocol_page_t* page) {
    QObject::connect(page, &nal::ui_protocol_page_t::sig_waveform_shown, this, [this, page] {
      const std::vector<double>& in_phase = page->iq_view()->in_phase()->samples().values();
      first_i.push_back(in_phase.empty() ? -1.0 : in_phase.front());
      sizes.push_back(in_phase.size());
    });
  }
  std::vector<double> first_i;
  std::vector<std::size_t> sizes;
};

void delete_closed_widgets() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QWidget* closable_page() {
  auto* page = new QWidget;
  page->setAttribute(Qt::WA_DeleteOnClose);
  return page;
}

}  // namespace

class PageFrame : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() { nal::ui_register_resources(); }
  void init() {
    tone_configuration_t::delay_ms = 0;
    tone_configuration_t::fail = false;
  }
  void cleanup() {
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    delete_closed_widgets();
  }

  void tab_selection_and_close_rules() {
    nal::ui_tab_widget_t tabs;
    QSignalSpy add_home(&tabs, &nal::ui_tab_widget_t::sig_add_home);
    QPointer<QWidget> pages[3] = {closable_page(), closable_page(), closable_page()};
    for (int i = 0; i < 3; ++i) {
      tabs.add_page(pages[i], QString("Tab %1").arg(i));
      QCOMPARE(tabs.current_index(), i);
    }
    nal::ui_tab_bar_t* bar = tabs.tab_bar();
    QTest::mouseClick(bar->tab_button(0), Qt::LeftButton);
    QCOMPARE(bar->current_index(), 0);
    QCOMPARE(tabs.current_index(), 0);
    QVERIFY(bar->tab_button(0)->is_selected());
    QVERIFY(!bar->tab_button(2)->is_selected());

    // Closing a tab before the current one keeps the current page.
    bar->set_current_index(2);
    QTest::mouseClick(bar->tab_button(0)->close_button(), Qt::LeftButton);
    delete_closed_widgets();
    QVERIFY(pages[0].isNull());
    QCOMPARE(tabs.count(), 2);
    QCOMPARE(tabs.page(tabs.current_index()), pages[2].data());
    QCOMPARE(bar->current_index(), 1);

    // Closing the current first tab: the tab that takes its place is shown and selected.
    bar->set_current_index(0);
    QTest::mouseClick(bar->tab_button(0)->close_button(), Qt::LeftButton);
    delete_closed_widgets();
    QCOMPARE(tabs.count(), 1);
    QCOMPARE(tabs.page(tabs.current_index()), pages[2].data());
    QVERIFY(bar->tab_button(0)->is_selected());
    QCOMPARE(add_home.count(), 0);

    // The last tab asks for a new Home tab at once.
    QTest::mouseClick(bar->tab_button(0)->close_button(), Qt::LeftButton);
    QCOMPARE(add_home.count(), 1);
    QCOMPARE(bar->current_index(), -1);
  }

  void change_blinks_and_update_stops_it_at_once() {
    tone_page_t page;
    QVERIFY(!page.is_update_blinking());
    page.amplitude_box()->setValue(0.75);
    QVERIFY(page.is_update_blinking());
    tone_configuration_t::delay_ms = 200;
    page.update_action()->trigger();
    QVERIFY(page.is_computing());
    QVERIFY(!page.is_update_blinking());
    QTRY_VERIFY(!page.is_computing());
  }

  void update_during_a_run_runs_once_more_with_the_latest_settings() {
    tone_page_t page;
    shown_waveforms_t shown(&page);
    tone_configuration_t::delay_ms = 150;
    const int before = tone_configuration_t::computations;
    page.update_action()->trigger();
    page.amplitude_box()->setValue(0.25);
    page.update_action()->trigger();
    page.amplitude_box()->setValue(0.875);
    page.update_action()->trigger();
    page.update_action()->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(!page.is_computing(), 5000);
    QCOMPARE(tone_configuration_t::computations - before, 2);
    QCOMPARE(shown.first_i, (std::vector<double>{0.5, 0.875}));
    QVERIFY(!page.is_update_blinking());
  }

  void closing_a_page_during_a_run_drops_its_result() {
    auto* page = new tone_page_t;
    QPointer<tone_page_t> alive(page);
    tone_configuration_t::delay_ms = 100;
    const int before = tone_configuration_t::computations;
    page->update_action()->trigger();
    page->close();
    delete_closed_widgets();
    QVERIFY(alive.isNull());
    QThreadPool::globalInstance()->waitForDone();
    QCOMPARE(tone_configuration_t::computations - before, 1);
    // The result arrives for a page that is gone.
    QCoreApplication::processEvents();
  }

  void failed_computation_shows_empty_views_and_a_status() {
    tone_page_t page;
    shown_waveforms_t shown(&page);
    tone_configuration_t::fail = true;
    page.update_action()->trigger();
    QTRY_VERIFY(!page.is_computing());
    QCOMPARE(shown.sizes, std::vector<std::size_t>{0});
    QVERIFY(page.status_text().contains("tone generator failed"));
    tone_configuration_t::fail = false;
    page.update_action()->trigger();
    QTRY_VERIFY(!page.is_computing());
    QCOMPARE(shown.sizes.back(), std::size_t{1000});
    QVERIFY(page.status_text().isEmpty());
  }

  // The worker prepares the views from the protocol row; what the GUI thread shows must be what
  // the views make of the same samples themselves, with the row's annotations beside them.
  void background_run_shows_what_the_views_make_of_the_samples() {
    tone_page_t page;
    page.tone().set_amplitude(0.25);
    page.tone().set_length(700);
    page.update_action()->trigger();
    QTRY_VERIFY(!page.is_computing());

    const nal::lib_iq_data_arr_t samples(700, nal::lib_iq_sample_t(0.25, -0.25));
    nal::ui_iq_waveform_view_t iq;
    nal::ui_fft_spectrum_view_t spectrum;
    iq.update_iq_wave(samples);
    spectrum.update_fft_wave(samples, 700e-6, 700);
    QCOMPARE(page.iq_view()->in_phase()->samples().values(), iq.in_phase()->samples().values());
    QCOMPARE(page.iq_view()->quadrature()->samples().values(), iq.quadrature()->samples().values());
    QCOMPARE(page.spectrum_view()->levels()->samples().values(),
             spectrum.levels()->samples().values());
    QCOMPARE(page.spectrum_view()->peak_caption(), spectrum.peak_caption());

    const nal::ui_vchart_span_rows_t& spans = page.iq_view()->annotations()->spans();
    QCOMPARE(spans.row_count(), 2);
    QCOMPARE(spans.row(0).front().label, std::string("tone"));
    QCOMPARE(spans.row(0).front().end, 700.0);
    QCOMPARE(spans.row(1).back().label, std::string("second half"));
    QCOMPARE(spans.row(1).back().begin, 350.0);
  }

  void page_whose_settings_cannot_be_copied_says_so_and_computes_nothing() {
    const int before = tone_configuration_t::computations;
    tone_page_t page(false);
    QVERIFY(page.status_text().contains("cannot be copied"));
    page.update_action()->trigger();
    QTRY_VERIFY(!page.is_computing());
    QCOMPARE(tone_configuration_t::computations, before);
    QCOMPARE(page.iq_view()->in_phase()->samples().size(), std::size_t{0});
    QVERIFY(page.status_text().contains("cannot be copied"));
  }

  void custom_iq_opens_computed_and_updates_on_the_gui_thread() {
    nal::ui_custom_iq_page_t page;
    nal::custom_iq_t& engine = page.custom_iq_configuration().engine();
    QVERIFY(!engine.get_waveform_data().empty());
    QVERIFY(!page.is_update_blinking());

    shown_waveforms_t shown(&page);
    QVERIFY(engine.set_apsk_qam_type(nal::MOD_64QAM));
    QVERIFY(engine.set_symbol_length(200));
    QVERIFY(page.is_update_blinking());
    page.update_action()->trigger();
    QVERIFY(!page.is_update_blinking());
    QCOMPARE(shown.sizes.size(), std::size_t{1});
    QCOMPARE(shown.sizes[0], engine.get_waveform_data().size());
    QCOMPARE(shown.sizes[0], std::size_t{200} * engine.get_oversampling());

    // Its frames reach the I/Q view through its protocol row, in equal thirds.
    QVERIFY(engine.set_frame_number(3));
    page.update_action()->trigger();
    const std::vector<nal::ui_vchart_span_rows_t::span_t>& frames =
        page.iq_view()->annotations()->spans().row(0);
    QCOMPARE(frames.size(), std::size_t{3});
    QCOMPARE(frames[1].label, std::string("frame 2"));
    QCOMPARE(frames[1].begin, static_cast<double>(shown.sizes.back() / 3));
    QCOMPARE(frames[2].end, static_cast<double>(shown.sizes.back()));
  }

  void state_file_round_trip_and_waveform_file() {
    QTemporaryDir folder;
    const QString state = folder.filePath("qam.state");
    nal::ui_custom_iq_page_t saved_page;
    saved_page.custom_iq_configuration().engine().set_apsk_qam_type(nal::MOD_64QAM);
    QVERIFY(saved_page.save_to_path(state));

    nal::ui_custom_iq_page_t page;
    shown_waveforms_t shown(&page);
    QVERIFY(page.recall_from_path(state));
    QCOMPARE(page.custom_iq_configuration().engine().get_apsk_qam_type(), nal::MOD_64QAM);
    QCOMPARE(shown.sizes.size(), std::size_t{1});

    const QString arb = folder.filePath("qam.ARB");
    QVERIFY(page.save_to_path(arb));
    std::ifstream file(arb.toStdString(), std::ios::binary);
    std::string head(10, '\0');
    file.read(head.data(), 10);
    QCOMPARE(QString::fromStdString(head), QString("CheckCode,"));
  }

  void recalled_state_of_another_protocol_leaves_the_page_unchanged() {
    QTemporaryDir folder;
    const QString custom_iq_state = folder.filePath("custom.state");
    {
      nal::ui_custom_iq_page_t page;
      QVERIFY(page.save_to_path(custom_iq_state));
    }
    tone_page_t tone;
    tone.amplitude_box()->setValue(0.125);
    nal::cfg_protocol_base_t* before = &tone.configuration();
    QVERIFY(!tone.recall_from_path(custom_iq_state));
    QCOMPARE(&tone.configuration(), before);
    QCOMPARE(tone.tone().amplitude(), 0.125);
    QVERIFY(tone.status_text().contains("another protocol"));

    // The tone's type has no registry row and no text in state files: its state file recalls as
    // nothing, into any page.
    QVERIFY(nal::cfg_protocol_registry_t::find(wavelume_test::k_tone_protocol_type) == nullptr);
    const QString tone_state = folder.filePath("tone.state");
    QVERIFY(tone.save_to_path(tone_state));
    QVERIFY(!tone.recall_from_path(tone_state));
    nal::ui_custom_iq_page_t page;
    page.custom_iq_configuration().engine().set_apsk_qam_type(nal::MOD_8PSK);
    QVERIFY(!page.recall_from_path(tone_state));
    QCOMPARE(page.custom_iq_configuration().engine().get_apsk_qam_type(), nal::MOD_8PSK);
    QVERIFY(!page.recall_from_path(folder.filePath("missing.state")));
  }

  // The Download dialog's "Current Setting" road: the page makes the device current, its
  // configuration sends the sealed block, and the answer goes back to the dialog.
  void current_setting_reaches_the_instrument() {
    wavelume_sim::sim_instrument_t instrument;
    wavelume_sim::sim_instrument_options_t options;
    options.set_keeping(wavelume_sim::sim_block_keeping_t::bytes);
    QVERIFY(instrument.start(options));
    const QString resource = QString::fromStdString(instrument.hislip_resource());
    nal::visa_device_manager_t::instance().add_resource(resource);

    nal::ui_custom_iq_page_t page;
    QSignalSpy answers(&page, &nal::ui_protocol_page_t::sig_download_data_callback);
    page.download_waveform_to_instrument(resource);
    QCOMPARE(answers.size(), 1);
    QCOMPARE(answers[0][0].toString(), resource);
    QVERIFY(answers[0][1].toBool());
    QVERIFY(instrument.record().wait_for_blocks(1, std::chrono::seconds(5)));
    const std::string block = instrument.record().blocks()[0].bytes;
    QVERIFY(block.rfind("IQDA CheckCode,", 0) == 0);
    const std::size_t samples = page.custom_iq_configuration().engine().get_waveform_data().size();
    QCOMPARE(block.size() - (block.find(",IQData,") + 8), samples * 4);

    // A device that cannot be reached answers false.
    page.download_waveform_to_instrument("TCPIP0::127.0.0.1::1::SOCKET");
    QCOMPARE(answers.size(), 2);
    QVERIFY(!answers[1][1].toBool());
  }
};

QTEST_MAIN(PageFrame)
#include "test_page_frame.moc"

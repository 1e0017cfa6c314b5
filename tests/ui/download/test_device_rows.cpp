// The device list and the Download button over a recording VISA double: rows and separators,
// the texts of each identification and status, the enabling rule, the keys, and a download of
// the current setting answered by a page.

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "comm/comm_deal.h"
#include "comm/visa_device_manager.h"
#include "tests/comm/test_recording_visa.h"
#include "tests/ui/download/test_dialog_helpers.h"
#include "tests/ui/download/test_suites.h"
#include "ui/download/ui_devices_model.h"

namespace test_ui_download {

namespace {

using nal::ui_dev_item_t;
using nal::ui_dialog_download_waveform_data_t;

const QString first = QStringLiteral("GPIB0::7::INSTR");
const QString second = QStringLiteral("TCPIP0::10.0.0.7::inst0::INSTR");
const QString silent = QStringLiteral("USB0::0x1AB1::0x0641::B::INSTR");

// The recording double, with a search that finds `found` in order.
class listing_visa_t : public test_comm::recording_visa_t {
 public:
  std::vector<std::string> found;

  nal::comm_vi_status_t find_resources(nal::comm_vi_session_t, const char*,
                                       nal::comm_vi_session_t& list, std::uint32_t& count,
                                       char* description) override {
    _next = 0;
    count = static_cast<std::uint32_t>(found.size());
    list = 99;
    return count == 0 ? nal::VI_ERROR_RSRC_NFOUND : find_next(list, description);
  }
  nal::comm_vi_status_t find_next(nal::comm_vi_session_t, char* description) override {
    if (_next >= found.size()) {
      return nal::VI_ERROR_RSRC_NFOUND;
    }
    const std::string& name = found[_next++];
    name.copy(description, name.size());
    description[name.size()] = '\0';
    return nal::VI_SUCCESS;
  }

 private:
  std::size_t _next = 0;
};

// Three instruments found: two that answer, one that never does.
struct recorded_link_t {
  static std::shared_ptr<listing_visa_t> make_visa() {
    auto visa = std::make_shared<listing_visa_t>();
    visa->found = {silent.toStdString(), second.toStdString(), first.toStdString()};
    visa->instruments[first.toStdString()] = "Acme,SG1,7,1.0";
    visa->instruments[second.toStdString()] = "Acme,SG2,8,2.0";
    return visa;
  }

  std::shared_ptr<listing_visa_t> visa = make_visa();
  // Searches at once, so the instruments are set up first.
  nal::visa_device_manager_t devices{visa};
  nal::comm_deal_t deal{devices};
};

QPushButton* download_button(const ui_dialog_download_waveform_data_t& dialog) {
  return dialog.findChild<QPushButton*>(QStringLiteral("Download"));
}

}  // namespace

class device_rows_tests : public QObject {
  Q_OBJECT

 private slots:
  void rows_are_sorted_and_separated() {
    recorded_link_t link;
    ui_dialog_download_waveform_data_t dialog(link.deal);
    // The overlay stands until the link has listed the devices.
    QVERIFY(dialog.get_dev_list()->is_overlay_visible());
    QCOMPARE(dialog.get_dev_list()->count(), 0);
    QVERIFY(show_and_list(dialog));
    const QStringList order = {first, second, silent};
    QCOMPARE(dialog.get_dev_list()->count(), 5);
    for (int index = 0; index < dialog.get_dev_list()->count(); ++index) {
      QListWidgetItem* item = dialog.get_dev_list()->item(index);
      QWidget* widget = dialog.get_dev_list()->itemWidget(item);
      if (index % 2 == 0) {
        auto* device_row = qobject_cast<ui_dev_item_t*>(widget);
        QVERIFY(device_row != nullptr);
        QCOMPARE(device_row->get_resource_name(), order[index / 2]);
      } else {
        QCOMPARE(widget->objectName(), QStringLiteral("SplitLine"));
        QCOMPARE(item->flags(), Qt::NoItemFlags);
      }
    }
  }

  void row_texts_follow_identification_and_status() {
    recorded_link_t link;
    ui_dialog_download_waveform_data_t dialog(link.deal);
    QVERIFY(show_and_list(dialog));
    QCOMPARE(info_label(row(dialog, first))->text(), unknown_text);
    QCOMPARE(status_label(row(dialog, first))->text(), status_texts[0]);

    QTest::mouseDClick(row(dialog, first), Qt::LeftButton);
    QCOMPARE(info_label(row(dialog, first))->text(), known_text("Acme,SG1,7,1.0"));
    // No answer: the row goes back to unknown, with no box.
    QTest::mouseDClick(row(dialog, silent), Qt::LeftButton);
    QCOMPARE(info_label(row(dialog, silent))->text(), unknown_text);
    QVERIFY(QApplication::activeModalWidget() == nullptr);

    // The statuses that a download of the current setting passes through.
    tick(dialog, first);
    connect(&dialog, &ui_dialog_download_waveform_data_t::sig_download_curr_waveform_to_inst, this,
            [] {});
    QTest::mouseClick(download_button(dialog), Qt::LeftButton);
    QCOMPARE(status_label(row(dialog, first))->text(), status_texts[1]);
    dialog.on_download_data_callback(first, true);
    QCOMPARE(status_label(row(dialog, first))->text(), status_texts[2]);
    dialog.on_download_data_callback(first, false);
    QCOMPARE(status_label(row(dialog, first))->text(), status_texts[3]);
    // Identification and status do not disturb each other.
    QCOMPARE(info_label(row(dialog, first))->text(), known_text("Acme,SG1,7,1.0"));
  }

  void download_is_enabled_by_a_ticked_identified_device() {
    recorded_link_t link;
    ui_dialog_download_waveform_data_t dialog(link.deal);
    QVERIFY(show_and_list(dialog));
    QPushButton* download = download_button(dialog);
    QVERIFY(!download->isEnabled());

    tick(dialog, silent);
    QVERIFY2(!download->isEnabled(), "ticked, never connected");
    QTest::mouseDClick(row(dialog, silent), Qt::LeftButton);
    QVERIFY2(!download->isEnabled(), "ticked, not answering");
    QTest::mouseDClick(row(dialog, first), Qt::LeftButton);
    QVERIFY2(!download->isEnabled(), "identified, not ticked");
    tick(dialog, first);
    QVERIFY(download->isEnabled());
    tick(dialog, first);
    QVERIFY(!download->isEnabled());
    tick(dialog, first);
    QVERIFY(download->isEnabled());

    // The instrument stops answering: a new connection forgets its identification.
    link.visa->instruments[first.toStdString()] = "";
    QTest::mouseDClick(row(dialog, first), Qt::LeftButton);
    QCOMPARE(info_label(row(dialog, first))->text(), unknown_text);
    QVERIFY(!download->isEnabled());
  }

  void current_setting_goes_to_the_page_for_each_ready_device() {
    recorded_link_t link;
    ui_dialog_download_waveform_data_t dialog(link.deal);
    QVERIFY(show_and_list(dialog));
    connect_and_tick(dialog, first);
    connect_and_tick(dialog, second);
    tick(dialog, silent);
    QSignalSpy asked(&dialog,
                     &ui_dialog_download_waveform_data_t::sig_download_curr_waveform_to_inst);
    QSignalSpy statuses(&dialog.get_devices_model(),
                        &nal::ui_devices_model_t::sig_update_download_status);
    link.visa->calls.clear();

    QTest::mouseClick(download_button(dialog), Qt::LeftButton);
    QCOMPARE(asked.count(), 2);
    QCOMPARE(asked.at(0).at(0).toString(), first);
    QCOMPARE(asked.at(1).at(0).toString(), second);
    QVERIFY2(link.visa->calls.empty(), "the page, not the dialog, sends the current setting");
    QCOMPARE(statuses.count(), 2);
    QCOMPARE(status_label(row(dialog, silent))->text(), status_texts[0]);

    // The page answers.
    dialog.on_download_data_callback(second, false);
    dialog.on_download_data_callback(first, true);
    QCOMPARE(status_label(row(dialog, first))->text(), status_texts[2]);
    QCOMPARE(status_label(row(dialog, second))->text(), status_texts[3]);
    // An answer for a device the dialog does not show changes nothing.
    dialog.on_download_data_callback(QStringLiteral("ASRL1::INSTR"), true);
    QCOMPARE(dialog.get_devices_model().get_devices().size(), 3);
  }

  void current_setting_without_a_page_fails_at_once() {
    recorded_link_t link;
    ui_dialog_download_waveform_data_t dialog(link.deal);
    QVERIFY(show_and_list(dialog));
    connect_and_tick(dialog, first);
    QTest::mouseClick(download_button(dialog), Qt::LeftButton);
    QCOMPARE(status_label(row(dialog, first))->text(), status_texts[3]);
  }

  void keys_tick_connect_and_close() {
    recorded_link_t link;
    ui_dialog_download_waveform_data_t dialog(link.deal);
    QSignalSpy asked(&dialog,
                     &ui_dialog_download_waveform_data_t::sig_download_curr_waveform_to_inst);
    QVERIFY(show_and_list(dialog));
    nal::ui_dev_list_widget_t* list = dialog.get_dev_list();
    list->setFocus();
    list->setCurrentRow(0);
    QTest::keyClick(list, Qt::Key_Space);
    QVERIFY(dialog.get_devices_model().get_devices().value(first).selected);
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(info_label(row(dialog, first))->text(), known_text("Acme,SG1,7,1.0"));
    QVERIFY(download_button(dialog)->isEnabled());
    QCOMPARE(asked.count(), 0);

    // Enter outside the list presses "Download"; Esc closes.
    download_button(dialog)->setFocus();
    QTest::keyClick(&dialog, Qt::Key_Return);
    QCOMPARE(asked.count(), 1);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
  }
};

int run_device_rows_tests(int argc, char** argv) {
  device_rows_tests tests;
  return QTest::qExec(&tests, argc, argv);
}

}  // namespace test_ui_download

#include "test_device_rows.moc"

// The Download dialog against the loopback instrument simulator: a double click connects, a
// waveform file reaches the instrument as "IQDA " and its bytes, a cancelled file box or an
// instrument gone sends nothing and fails, an address added by hand connects over VXI-11.

#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "comm/comm_deal.h"
#include "comm/visa_device_manager.h"
#include "tests/ui/download/test_dialog_helpers.h"
#include "tests/ui/download/test_suites.h"
#include "tools/instrument_sim/sim_instrument.h"
#include "tools/instrument_sim/sim_listing_visa.h"
#include "tools/instrument_sim/sim_message_sink.h"
#include "ui/download/ui_dialog_add_new_resource.h"

namespace test_ui_download {

namespace {

using nal::ui_dialog_download_waveform_data_t;
using wavelume_sim::sim_transport_t;

constexpr auto block_timeout = std::chrono::seconds(20);

// The simulator's identification as the row shows it, without its line feed.
QString simulator_idn() {
  return QString::fromLatin1(wavelume_sim::sim_message_sink_t::identification).trimmed();
}

// One simulated instrument, found by the search over its socket and its HiSLIP name, and the
// link's device list and front over it. Blocks are kept whole.
struct simulated_link_t {
  simulated_link_t() {
    wavelume_sim::sim_instrument_options_t options;
    options.set_keeping(wavelume_sim::sim_block_keeping_t::bytes);
    options.raw_socket.block_idle_gap = std::chrono::milliseconds(100);
    started = instrument.start(options);
    setenv("WAVELUME_VXI11_PORTMAPPER_PORT", std::to_string(instrument.portmapper_port()).c_str(),
           1);
    socket = QString::fromStdString(instrument.socket_resource());
    hislip = QString::fromStdString(instrument.hislip_resource());
    devices = std::make_unique<nal::visa_device_manager_t>(
        std::make_shared<wavelume_sim::sim_listing_visa_t>(
            std::vector<std::string>{socket.toStdString(), hislip.toStdString()}));
    deal = std::make_unique<nal::comm_deal_t>(*devices);
  }

  wavelume_sim::sim_instrument_t instrument;
  bool started = false;
  QString socket;
  QString hislip;
  std::unique_ptr<nal::visa_device_manager_t> devices;
  std::unique_ptr<nal::comm_deal_t> deal;
};

// A small waveform file: a text header, then samples holding every byte value.
QByteArray waveform_file_bytes() {
  QByteArray bytes("CheckCode,00000000000000000000000000000000,FileType,IQ,Version,3.0,IQData,");
  for (int i = 0; i < 4096; ++i) {
    bytes.append(static_cast<char>((i * 7) & 0xFF));
  }
  return bytes;
}

// The file "burst.ARB" in `folder`; empty when it could not be written.
QString write_waveform_file(const QTemporaryDir& folder) {
  QFile file(folder.filePath(QStringLiteral("burst.ARB")));
  if (!folder.isValid() || !file.open(QIODevice::WriteOnly) ||
      file.write(waveform_file_bytes()) != waveform_file_bytes().size()) {
    return QString();
  }
  return file.fileName();
}

// Wide enough for the simulator's whole identification, which a dialog of the usual width
// shortens.
bool show_wide_and_list(ui_dialog_download_waveform_data_t& dialog) {
  dialog.resize(900, 440);
  return show_and_list(dialog);
}

void download_from(ui_dialog_download_waveform_data_t& dialog, const QString& path) {
  dialog.set_file_chooser([path](QWidget*, const QString&, const QString&) { return path; });
  QTest::mouseClick(dialog.findChild<QRadioButton*>(QStringLiteral("FromFile")), Qt::LeftButton);
  QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("Download")), Qt::LeftButton);
}

bool any_block_written(const std::vector<wavelume_sim::sim_wire_event_t>& events) {
  for (const auto& event : events) {
    if (event.kind == wavelume_sim::sim_wire_event_t::WRITE && event.head.rfind("IQDA", 0) == 0) {
      return true;
    }
  }
  return false;
}

}  // namespace

class download_to_simulator_tests : public QObject {
  Q_OBJECT

 private slots:
  void double_click_connects_and_shows_the_identification() {
    simulated_link_t link;
    QVERIFY(link.started);
    // Connected before the dialog's own slots, so it runs when the connection has ended and
    // before the row is told.
    QString on_screen_during_connection;
    std::unique_ptr<paint_spy_t> painted;
    QObject::connect(link.deal.get(), &nal::comm_deal_t::sig_update_resource_info, [&] {
      if (painted) {
        on_screen_during_connection = painted->last_painted();
      }
    });
    ui_dialog_download_waveform_data_t dialog(*link.deal);
    QVERIFY(show_wide_and_list(dialog));
    painted = std::make_unique<paint_spy_t>(info_label(row(dialog, link.hislip)));
    QCOMPARE(info_label(row(dialog, link.hislip))->text(), unknown_text);

    QTest::mouseDClick(row(dialog, link.hislip), Qt::LeftButton);
    QCOMPARE(on_screen_during_connection, connecting_text);
    QCOMPARE(info_label(row(dialog, link.hislip))->text(), known_text(simulator_idn()));
    QCOMPARE(info_label(row(dialog, link.socket))->text(), unknown_text);
  }

  void waveform_file_reaches_every_ticked_instrument() {
    simulated_link_t link;
    QVERIFY(link.started);
    QString on_screen_during_transfer;
    std::unique_ptr<paint_spy_t> painted;
    QObject::connect(link.deal.get(), &nal::comm_deal_t::sig_download_data_to_inst_callback,
                     [&](const QString& resName) {
                       if (resName == link.socket) {
                         on_screen_during_transfer = painted->last_painted();
                       }
                     });
    ui_dialog_download_waveform_data_t dialog(*link.deal);
    QVERIFY(show_and_list(dialog));
    painted = std::make_unique<paint_spy_t>(status_label(row(dialog, link.socket)));
    connect_and_tick(dialog, link.socket);
    connect_and_tick(dialog, link.hislip);
    QTemporaryDir folder;
    const QString path = write_waveform_file(folder);
    QVERIFY(!path.isEmpty());
    download_from(dialog, path);
    QCOMPARE(on_screen_during_transfer, status_texts[1]);
    QCOMPARE(status_label(row(dialog, link.socket))->text(), status_texts[2]);
    QCOMPARE(status_label(row(dialog, link.hislip))->text(), status_texts[2]);
    QVERIFY(link.instrument.record().wait_for_blocks(2, block_timeout));
    const std::string expected = "IQDA " + waveform_file_bytes().toStdString();
    std::vector<sim_transport_t> transports;
    for (const auto& block : link.instrument.record().blocks()) {
      QVERIFY2(block.bytes == expected, "the block is \"IQDA \" and the file's bytes, unchanged");
      transports.push_back(block.transport);
    }
    std::sort(transports.begin(), transports.end());
    QVERIFY((transports ==
             std::vector<sim_transport_t>{sim_transport_t::raw_socket, sim_transport_t::hislip}));
  }

  // A cancelled file box, or a file that cannot be read whole, gives an empty array: the link
  // refuses it before anything is written, and the row fails.
  void no_file_bytes_send_nothing_and_fail_data() {
    QTest::addColumn<QString>("chosen");
    QTest::newRow("cancelled") << QString();
    QTest::newRow("device that never ends") << QStringLiteral("/dev/zero");
  }

  void no_file_bytes_send_nothing_and_fail() {
    QFETCH(QString, chosen);
    simulated_link_t link;
    QVERIFY(link.started);
    ui_dialog_download_waveform_data_t dialog(*link.deal);
    QVERIFY(show_and_list(dialog));
    connect_and_tick(dialog, link.socket);
    download_from(dialog, chosen);
    QCOMPARE(status_label(row(dialog, link.socket))->text(), status_texts[3]);
    // Whatever might still be under way on the wire has had time to arrive.
    QTest::qWait(300);
    QVERIFY(!any_block_written(link.instrument.record().events()));
    QVERIFY(link.instrument.record().blocks().empty());
  }

  void instrument_gone_fails_and_shows_unknown() {
    simulated_link_t link;
    QVERIFY(link.started);
    ui_dialog_download_waveform_data_t dialog(*link.deal);
    QVERIFY(show_wide_and_list(dialog));
    connect_and_tick(dialog, link.hislip);
    QCOMPARE(info_label(row(dialog, link.hislip))->text(), known_text(simulator_idn()));
    link.instrument.stop();
    QTemporaryDir folder;
    const QString path = write_waveform_file(folder);
    QVERIFY(!path.isEmpty());

    download_from(dialog, path);
    QCOMPARE(status_label(row(dialog, link.hislip))->text(), status_texts[3]);
    QCOMPARE(info_label(row(dialog, link.hislip))->text(), unknown_text);
    QVERIFY(!dialog.findChild<QPushButton*>(QStringLiteral("Download"))->isEnabled());
  }

  // "Add New..." with the simulator's address gives its VXI-11 name, which then connects.
  void added_address_connects_over_vxi11() {
    simulated_link_t link;
    QVERIFY(link.started);
    ui_dialog_download_waveform_data_t dialog(*link.deal);
    QVERIFY(show_wide_and_list(dialog));
    QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("AddNewResource")),
                      Qt::LeftButton);
    auto* add_new = dialog.findChild<nal::ui_dialog_add_new_resource_t*>();
    QVERIFY(add_new != nullptr);
    QVERIFY(QTest::qWaitForWindowExposed(add_new));
    add_new->findChild<QLineEdit*>(QStringLiteral("IpAddress"))
        ->setText(QStringLiteral("127.0.0.1"));
    QTest::keyClick(add_new, Qt::Key_Return);

    const QString vxi11 = QString::fromStdString(link.instrument.vxi11_resource());
    QVERIFY(row(dialog, vxi11) != nullptr);
    QTest::mouseDClick(row(dialog, vxi11), Qt::LeftButton);
    QCOMPARE(info_label(row(dialog, vxi11))->text(), known_text(simulator_idn()));
  }
};

int run_download_to_simulator_tests(int argc, char** argv) {
  download_to_simulator_tests tests;
  return QTest::qExec(&tests, argc, argv);
}

}  // namespace test_ui_download

#include "test_download_to_simulator.moc"

// "Add New Resource": which addresses pass, what a refused one shows, and the rows an added
// address gives in the Download dialog.

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <memory>

#include "comm/comm_deal.h"
#include "comm/visa_device_manager.h"
#include "tests/comm/test_recording_visa.h"
#include "tests/ui/download/test_dialog_helpers.h"
#include "tests/ui/download/test_suites.h"
#include "ui/download/ui_dialog_add_new_resource.h"

namespace test_ui_download {

namespace {

using nal::ui_dialog_add_new_resource_t;
using nal::ui_dialog_download_waveform_data_t;

// Types `address` and presses the accepting button; the address sent out, if any, and the
// message box shown, if any.
struct submission_t {
  QString sent;
  QString box_title;
  QString box_text;
  QMessageBox::Icon box_icon = QMessageBox::NoIcon;
  bool still_open = false;
};

submission_t submit(ui_dialog_add_new_resource_t& dialog, const QString& address) {
  QSignalSpy added(&dialog, &ui_dialog_add_new_resource_t::sig_add_new_tcpip_resource);
  auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("IpAddress"));
  edit->setText(address);
  message_box_answer_t answer;
  QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("AddResource")), Qt::LeftButton);
  submission_t result;
  result.sent = added.isEmpty() ? QString() : added.at(0).at(0).toString();
  result.box_title = answer.title;
  result.box_text = answer.text;
  result.box_icon = answer.icon;
  result.still_open = dialog.isVisible();
  return result;
}

}  // namespace

class add_new_resource_tests : public QObject {
  Q_OBJECT

 private slots:
  void addresses_data() {
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("dotted quad") << "192.168.1.10" << true;
    // Any one character stands between the numbers: the dots of the pattern are unescaped, so
    // hexadecimal-looking letters pass as well as any other.
    QTest::newRow("other separators") << "1x2y3z4" << true;
    QTest::newRow("letters between the numbers") << "1a2b3c4" << true;
    QTest::newRow("two characters between numbers") << "1ab2.3.4" << false;
    QTest::newRow("no separator") << "1234" << false;
    QTest::newRow("number above 255") << "192.168.1.300" << false;
    QTest::newRow("three numbers") << "10.0.0" << false;
    QTest::newRow("five numbers") << "10.0.0.1.2" << false;
    QTest::newRow("host name") << "siggen.lab" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("localhost") << "localhost" << true;
    QTest::newRow("localhost in capitals") << "LOCALHOST" << false;
    QTest::newRow("blanks around a pasted address") << " 10.0.0.7 " << true;
  }

  void addresses() {
    QFETCH(QString, address);
    QFETCH(bool, accepted);
    ui_dialog_add_new_resource_t dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));

    const submission_t result = submit(dialog, address);
    if (accepted) {
      QCOMPARE(result.sent, address.trimmed());
      QVERIFY(!result.still_open);
      QCOMPARE(dialog.result(), int(QDialog::Accepted));
      QVERIFY(result.box_text.isEmpty());
    } else {
      QVERIFY(result.sent.isEmpty());
      QVERIFY2(result.still_open, "a refused address keeps the dialog open for correction");
      QCOMPARE(result.box_title, QStringLiteral("Error"));
      QCOMPARE(result.box_text, QStringLiteral("Invalid IP Address."));
      QCOMPARE(result.box_icon, QMessageBox::Critical);
    }
  }

  // Through the Download dialog: the rows that added addresses give.
  void added_addresses_become_rows_once() {
    auto visa = std::make_shared<test_comm::recording_visa_t>();
    nal::visa_device_manager_t devices(visa);
    nal::comm_deal_t deal(devices);
    ui_dialog_download_waveform_data_t dialog(deal);
    QVERIFY(show_and_list(dialog));
    QCOMPARE(dialog.get_dev_list()->count(), 0);

    for (const QString address : {"10.0.0.7", "10.0.0.7", "localhost"}) {
      QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("AddNewResource")),
                        Qt::LeftButton);
      ui_dialog_add_new_resource_t* add_new = nullptr;
      for (auto* child : dialog.findChildren<ui_dialog_add_new_resource_t*>()) {
        if (child->isVisible()) {
          add_new = child;
        }
      }
      QVERIFY(add_new != nullptr);
      QVERIFY(QTest::qWaitForWindowExposed(add_new));
      QVERIFY(submit(*add_new, address).sent == address);
    }

    const QStringList expected = {"LOCALHOST", "TCPIP0::10.0.0.7::inst0::INSTR"};
    QCOMPARE(dialog.get_devices_model().get_devices().keys(), expected);
    QCOMPARE(dialog.get_dev_list()->count(), 3);
    for (const QString& name : expected) {
      QVERIFY2(dialog.get_dev_list()->get_item(name) != nullptr, qPrintable(name));
      QCOMPARE(info_label(dialog.get_dev_list()->get_item(name))->text(), unknown_text);
    }
  }
};

int run_add_new_resource_tests(int argc, char** argv) {
  add_new_resource_tests tests;
  return QTest::qExec(&tests, argc, argv);
}

}  // namespace test_ui_download

#include "test_add_new_resource.moc"

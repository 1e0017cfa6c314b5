#include <gtest/gtest.h>

#include <QSignalSpy>
#include <memory>

#include "comm/comm_deal.h"
#include "comm/visa_device_manager.h"
#include "comm/visa_resource.h"
#include "tests/comm/test_recording_visa.h"

namespace {

using nal::comm_deal_t;
using nal::visa_device_manager_t;
using test_comm::recording_visa_t;

const QString first = QStringLiteral("TCPIP0::10.0.0.7::inst0::INSTR");
const QString second = QStringLiteral("USB0::0x1AB1::0x0641::B::INSTR");

class DeviceManager : public ::testing::Test {
 protected:
  std::shared_ptr<recording_visa_t> visa = make_visa();
  visa_device_manager_t devices{visa};
  comm_deal_t deal{devices};

  static std::shared_ptr<recording_visa_t> make_visa() {
    auto visa = std::make_shared<recording_visa_t>();
    visa->found = {second.toStdString()};
    visa->instruments[first.toStdString()] = "Acme,SG1,7,1.0";
    visa->instruments[second.toStdString()] = "Acme,SG2,8,2.0";
    return visa;
  }
};

TEST_F(DeviceManager, DownloadFromFileFollowsTheWireSequence) {
  devices.add_tcpip_resource("10.0.0.7");
  ASSERT_TRUE(devices.connect_resource(first));
  visa->calls.clear();
  QSignalSpy done(&deal, &comm_deal_t::sig_download_data_to_inst_callback);
  const QByteArray file =
      QByteArray("CheckCode,0123,FileType,IQ,IQData,") + QByteArray(300, '\x7f');

  deal.download_waveform_data_to_inst(first, file);

  const std::string name = first.toStdString();
  EXPECT_EQ(visa->calls,
            (std::vector<std::string>{
                "viClose 101", "viOpen " + name + " 0 2000", "viWrite " + name + " *IDN?",
                "viRead 256", "viWrite " + name + " *IDN?", "viRead 256",
                "viWrite " + name + " IQDA CheckCode,0123,FileType,IQ,IQData,\x7f...(339)"}));
  ASSERT_EQ(done.count(), 1);
  EXPECT_EQ(done.at(0).at(1).toBool(), true);
  EXPECT_EQ(devices.get_resource_info(first).idn, "Acme,SG1,7,1.0");
}

TEST_F(DeviceManager, TickedDevicesAreServedOneAfterTheOther) {
  devices.add_tcpip_resource("10.0.0.7");
  QSignalSpy done(&deal, &comm_deal_t::sig_download_data_to_inst_callback);
  deal.download_waveform_data_to_inst(first, "abc");
  deal.download_waveform_data_to_inst(second, "abc");
  ASSERT_EQ(done.count(), 2);
  EXPECT_EQ(done.at(0).at(0).toString(), first);
  EXPECT_EQ(done.at(1).at(0).toString(), second);
  EXPECT_TRUE(done.at(0).at(1).toBool() && done.at(1).at(1).toBool());
  ASSERT_NE(devices.get_current_resource(), nullptr);
  EXPECT_EQ(devices.get_current_resource()->get_resource_name(), second);

  // An empty array (a cancelled file box) or an unknown resource ends in failure.
  deal.download_waveform_data_to_inst(first, QByteArray());
  deal.download_waveform_data_to_inst("TCPIP0::10.9.9.9::inst0::INSTR", "abc");
  EXPECT_FALSE(done.at(2).at(1).toBool());
  EXPECT_FALSE(done.at(3).at(1).toBool());
  EXPECT_EQ(devices.get_current_resource(), nullptr);
}

TEST_F(DeviceManager, SilentInstrumentIsReopenedOnceThenRefused) {
  devices.add_tcpip_resource("10.0.0.7");
  ASSERT_TRUE(devices.connect_resource(first));
  visa->instruments[first.toStdString()] = "";
  visa->calls.clear();
  EXPECT_FALSE(devices.send_to_current("abc", 3, QByteArray()));
  const auto opens =
      std::count_if(visa->calls.begin(), visa->calls.end(),
                    [](const std::string& call) { return call.rfind("viOpen", 0) == 0; });
  EXPECT_EQ(opens, 1);
  EXPECT_EQ(visa->calls.back(), "viRead 256");
}

TEST_F(DeviceManager, ListsFoundAndAddedNamesWithTheirIdentification) {
  QSignalSpy listed(&deal, &comm_deal_t::sig_list_resources);
  QSignalSpy info(&deal, &comm_deal_t::sig_update_resource_info);
  deal.add_tcpip_inst_res("10.0.0.7");
  deal.add_tcpip_inst_res("10.0.0.7");
  deal.add_tcpip_inst_res("localhost");
  ASSERT_EQ(listed.count(), 3);
  EXPECT_EQ(listed.at(2).at(0).value<QVector<QString>>(),
            (QVector<QString>{second, "LOCALHOST", first}));
  EXPECT_FALSE(deal.connect_resource("LOCALHOST"));
  EXPECT_EQ(info.last().at(0).toString(), "LOCALHOST");
  EXPECT_TRUE(info.last().at(1).toString().isEmpty());

  EXPECT_TRUE(deal.connect_resource(second));
  EXPECT_EQ(info.last().at(1).toString(), "Acme,SG2,8,2.0");
  EXPECT_EQ(devices.get_resource_info(second).symbolic_name, "Symbolic Name");

  // A new search drops names no longer found, and the current resource with them.
  visa->found.clear();
  devices.update_resource_list();
  EXPECT_TRUE(devices.get_found_names().isEmpty());
  EXPECT_EQ(devices.get_current_resource(), nullptr);
  EXPECT_FALSE(devices.refresh_current());
}

}  // namespace

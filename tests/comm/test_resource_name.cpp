#include <gtest/gtest.h>

#include "comm/comm_resource_name.h"

namespace {

using nal::comm_resource_name_t;

comm_resource_name_t parsed(const std::string& text) {
  comm_resource_name_t name;
  std::string error;
  EXPECT_TRUE(comm_resource_name_t::parse(text, name, error)) << text << ": " << error;
  return name;
}

TEST(ResourceName, LanFormsWithKeywordsInAnyCase) {
  const comm_resource_name_t socket = parsed("tcpip3::192.168.1.20::5025::socket");
  EXPECT_EQ(socket.kind, comm_resource_name_t::KIND_SOCKET);
  EXPECT_EQ(socket.board, 3);
  EXPECT_EQ(socket.host, "192.168.1.20");
  EXPECT_EQ(socket.port, 5025);

  const comm_resource_name_t vxi11 = parsed("TCPIP0::siggen-3.lab.example::inst1::INSTR");
  EXPECT_EQ(vxi11.kind, comm_resource_name_t::KIND_VXI11);
  EXPECT_EQ(vxi11.host, "siggen-3.lab.example");
  EXPECT_EQ(vxi11.device_name, "inst1");
  // The device name and even ::INSTR may be left out.
  EXPECT_EQ(parsed("TCPIP::10.0.0.1::INSTR").device_name, "inst0");
  EXPECT_EQ(parsed("TCPIP::10.0.0.1").kind, comm_resource_name_t::KIND_VXI11);

  const comm_resource_name_t hislip = parsed("TCPIP0::127.0.0.1::HiSLIP0::INSTR");
  EXPECT_EQ(hislip.kind, comm_resource_name_t::KIND_HISLIP);
  EXPECT_EQ(hislip.device_name, "HiSLIP0");
  EXPECT_EQ(hislip.port, 4880);
  EXPECT_EQ(parsed("TCPIP0::127.0.0.1::hislip0,50123::INSTR").port, 50123);
  // An address the Add New dialog lets through (any character between the numbers) passes as
  // a host name; opening it fails later.
  EXPECT_EQ(parsed("TCPIP0::1x2y3z4::inst0::INSTR").host, "1x2y3z4");
}

TEST(ResourceName, UsbForms) {
  const comm_resource_name_t usb = parsed("USB0::0x1AB1::0x0641::DG4E123456789::INSTR");
  EXPECT_EQ(usb.kind, comm_resource_name_t::KIND_USBTMC);
  EXPECT_EQ(usb.usb_vendor, 0x1AB1);
  EXPECT_EQ(usb.usb_product, 0x0641);
  EXPECT_EQ(usb.usb_serial, "DG4E123456789");
  EXPECT_EQ(usb.usb_interface, -1);
  const comm_resource_name_t decimal = parsed("usb1::2391::6040::MY1234::2::INSTR");
  EXPECT_EQ(decimal.usb_vendor, 2391);
  EXPECT_EQ(decimal.usb_interface, 2);
}

TEST(ResourceName, RefusesWhatDoesNotParse) {
  for (const char* text :
       {"", "LOCALHOST", "GPIB0::5::INSTR", "TCPIP0::::inst0::INSTR",
        "TCPIP0::300.1.1.1::inst0::INSTR", "TCPIP0::1.2.3::inst0::INSTR",
        "TCPIP0::host name::inst0::INSTR", "TCPIP0::host::0::SOCKET", "TCPIP0::host::70000::SOCKET",
        "TCPIP0::host::5025::SOCKET::x", "TCPIP0::host::hislip0,99999::INSTR",
        "TCPIP0::host::inst0::INSTR::x", "USB0::0x10000::0x1::SN::INSTR",
        "USB0::0x1AB1::0x0641::::INSTR", "USB0::0x1AB1::INSTR", "TCPIPX::host::INSTR"}) {
    comm_resource_name_t name;
    std::string error;
    EXPECT_FALSE(comm_resource_name_t::parse(text, name, error)) << text;
    EXPECT_FALSE(error.empty()) << text;
  }
}

}  // namespace

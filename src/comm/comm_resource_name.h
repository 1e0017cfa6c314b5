#pragma once
// Resource strings of the built-in transports, parsed into their parts. Keywords are
// case-insensitive and board numbers optional, as in VISA:
//   TCPIP[board]::host::port::SOCKET                     raw SCPI over TCP
//   TCPIP[board]::host[::instN][::INSTR]                 VXI-11 (device name "inst0" if absent)
//   TCPIP[board]::host::hislipN[,port][::INSTR]          HiSLIP (port 4880 if absent)
//   USB[board]::vendor::product::serial[::interface][::INSTR]   USBTMC
// A host is a dotted IPv4 address or a host name. Stateless.

#include <cstdint>
#include <string>

namespace nal {

struct comm_resource_name_t {
  enum kind_t { KIND_SOCKET, KIND_VXI11, KIND_HISLIP, KIND_USBTMC };

  kind_t kind = KIND_SOCKET;
  int board = 0;
  std::string host;
  // TCP port of SOCKET and HiSLIP resources.
  std::uint16_t port = 0;
  // The VXI-11 device name or the HiSLIP sub-address, as written ("inst0", "hislip0").
  std::string device_name;
  std::uint16_t usb_vendor = 0;
  std::uint16_t usb_product = 0;
  std::string usb_serial;
  // -1: the first USBTMC interface of the device.
  int usb_interface = -1;

  static constexpr std::uint16_t hislip_default_port = 4880;

  // False, with `error` saying which part is wrong, for a string that does not parse.
  static bool parse(const std::string& text, comm_resource_name_t& result, std::string& error);
};

}  // namespace nal

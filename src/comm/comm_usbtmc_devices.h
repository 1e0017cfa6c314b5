#pragma once
// The instruments that the Linux usbtmc kernel driver serves, found through sysfs: each
// /sys/class/usbmisc/usbtmcN names its USB interface (bInterfaceNumber) and, one level up, its
// device (idVendor, idProduct, serial); the device file is /dev/usbtmcN. The environment
// variables WAVELUME_USBTMC_SYSFS_ROOT and WAVELUME_USBTMC_DEV_ROOT replace "/sys" and "/dev"
// (a test tree). Stateless; reads the file system on every call.

#include <cstdint>
#include <string>
#include <vector>

namespace nal {

struct comm_usbtmc_device_t {
  std::string device_file;
  std::uint16_t vendor = 0;
  std::uint16_t product = 0;
  std::string serial;
  int interface_number = 0;

  // "USB0::0x1AB1::0x0641::DG4E1234::INSTR"; the interface number is written when not 0.
  std::string resource_name() const;
};

class comm_usbtmc_devices_t {
 public:
  // Sorted by device file name.
  static std::vector<comm_usbtmc_device_t> list();
};

}  // namespace nal

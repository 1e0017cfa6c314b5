#include "comm/comm_usbtmc_devices.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace nal {

namespace {

std::string root(const char* variable, const char* fallback) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0' ? value : fallback;
}

std::string first_line(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) {
    line.pop_back();
  }
  return line;
}

bool read_hex(const std::string& path, long& value) {
  const std::string text = first_line(path);
  char* end = nullptr;
  value = std::strtol(text.c_str(), &end, 16);
  return !text.empty() && end != nullptr && *end == '\0';
}

}  // namespace

std::string comm_usbtmc_device_t::resource_name() const {
  char ids[32];
  std::snprintf(ids, sizeof ids, "USB0::0x%04X::0x%04X::", vendor, product);
  std::string name = ids + serial;
  if (interface_number != 0) {
    name += "::" + std::to_string(interface_number);
  }
  return name + "::INSTR";
}

std::vector<comm_usbtmc_device_t> comm_usbtmc_devices_t::list() {
  namespace fs = std::filesystem;
  const std::string class_dir = root("WAVELUME_USBTMC_SYSFS_ROOT", "/sys") + "/class/usbmisc";
  const std::string dev_dir = root("WAVELUME_USBTMC_DEV_ROOT", "/dev");
  std::vector<comm_usbtmc_device_t> devices;
  std::error_code error;
  for (fs::directory_iterator entry(class_dir, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (name.rfind("usbtmc", 0) != 0) {
      continue;
    }
    const std::string interface_dir = entry->path().string() + "/device";
    long vendor = 0;
    long product = 0;
    long interface_number = 0;
    if (!read_hex(interface_dir + "/../idVendor", vendor) ||
        !read_hex(interface_dir + "/../idProduct", product)) {
      continue;
    }
    read_hex(interface_dir + "/bInterfaceNumber", interface_number);
    comm_usbtmc_device_t device;
    device.serial = first_line(interface_dir + "/../serial");
    // USBTMC requires a serial number; without one the resource string would not parse.
    if (device.serial.empty()) {
      continue;
    }
    device.device_file = dev_dir + "/" + name;
    device.vendor = static_cast<std::uint16_t>(vendor);
    device.product = static_cast<std::uint16_t>(product);
    device.interface_number = static_cast<int>(interface_number);
    devices.push_back(device);
  }
  std::sort(devices.begin(), devices.end(),
            [](const comm_usbtmc_device_t& a, const comm_usbtmc_device_t& b) {
              return a.device_file < b.device_file;
            });
  return devices;
}

}  // namespace nal

#include "comm/comm_usbtmc_transport.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>

#include "comm/comm_usbtmc_devices.h"

namespace nal {

namespace {

// USBTMC_IOCTL_SET_TIMEOUT of <linux/usb/tmc.h>, in milliseconds.
constexpr unsigned long usbtmc_set_timeout = _IOW(91, 10, std::uint32_t);
// USBTMC_IOCTL_EOM_ENABLE: whether a write sets EOM on its last transfer (Linux 4.20 and later).
constexpr unsigned long usbtmc_eom_enable = _IOW(91, 11, std::uint8_t);
// The driver refuses timeouts below 100 ms.
constexpr std::uint32_t driver_min_timeout_ms = 100;

}  // namespace

comm_vi_status_t comm_usbtmc_transport_t::open(const comm_resource_name_t& name,
                                               std::unique_ptr<comm_transport_t>& transport) {
  for (const comm_usbtmc_device_t& device : comm_usbtmc_devices_t::list()) {
    if (device.vendor != name.usb_vendor || device.product != name.usb_product ||
        device.serial != name.usb_serial ||
        (name.usb_interface >= 0 && device.interface_number != name.usb_interface)) {
      continue;
    }
    struct stat status {};
    if (::stat(device.device_file.c_str(), &status) != 0) {
      return VI_ERROR_RSRC_NFOUND;
    }
    const bool kernel_driver = S_ISCHR(status.st_mode);
    const int file = ::open(device.device_file.c_str(),
                            O_RDWR | O_CLOEXEC | O_NOCTTY | (kernel_driver ? 0 : O_NONBLOCK));
    if (file < 0) {
      return VI_ERROR_RSRC_NFOUND;
    }
    transport.reset(new comm_usbtmc_transport_t(file, kernel_driver));
    return VI_SUCCESS;
  }
  return VI_ERROR_RSRC_NFOUND;
}

comm_usbtmc_transport_t::~comm_usbtmc_transport_t() {
  ::close(_file);
}

comm_vi_status_t comm_usbtmc_transport_t::_prepare(short events, std::uint32_t timeout_ms) {
  if (_kernel_driver) {
    const std::uint32_t driver_timeout = std::max(timeout_ms, driver_min_timeout_ms);
    if (driver_timeout != _driver_timeout_ms &&
        ::ioctl(_file, usbtmc_set_timeout, &driver_timeout) == 0) {
      _driver_timeout_ms = driver_timeout;
    }
    return VI_SUCCESS;
  }
  pollfd entry{_file, events, 0};
  const int wait = timeout_ms == VI_TMO_INFINITE
                       ? -1
                       : static_cast<int>(std::min<std::uint32_t>(timeout_ms, INT_MAX));
  int ready = 0;
  do {
    ready = ::poll(&entry, 1, wait);
  } while (ready < 0 && errno == EINTR);
  return ready > 0 ? VI_SUCCESS : ready == 0 ? VI_ERROR_TMO : VI_ERROR_IO;
}

comm_vi_status_t comm_usbtmc_transport_t::write(const unsigned char* data, std::size_t size,
                                                bool end, std::uint32_t timeout_ms) {
  if (_kernel_driver && end != _eom_enabled) {
    const std::uint8_t eom = end ? 1 : 0;
    if (::ioctl(_file, usbtmc_eom_enable, &eom) != 0) {
      return VI_ERROR_IO;
    }
    _eom_enabled = end;
  }
  std::size_t sent = 0;
  while (sent < size) {
    const comm_vi_status_t ready = _prepare(POLLOUT, timeout_ms);
    if (ready != VI_SUCCESS) {
      return ready;
    }
    const ssize_t written = ::write(_file, data + sent, size - sent);
    if (written < 0) {
      if (errno == EINTR || errno == EAGAIN) {
        continue;
      }
      return errno == ETIMEDOUT ? VI_ERROR_TMO : VI_ERROR_IO;
    }
    sent += static_cast<std::size_t>(written);
  }
  return VI_SUCCESS;
}

comm_vi_status_t comm_usbtmc_transport_t::read(unsigned char* buffer, std::size_t size,
                                               std::size_t& received, std::uint32_t timeout_ms) {
  received = 0;
  for (;;) {
    const comm_vi_status_t ready = _prepare(POLLIN, timeout_ms);
    if (ready != VI_SUCCESS) {
      return ready;
    }
    const ssize_t got = ::read(_file, buffer, size);
    if (got < 0 && (errno == EINTR || errno == EAGAIN)) {
      continue;
    }
    if (got < 0) {
      return errno == ETIMEDOUT ? VI_ERROR_TMO : VI_ERROR_IO;
    }
    if (got == 0 && size > 0) {
      return VI_ERROR_CONN_LOST;
    }
    received = static_cast<std::size_t>(got);
    return received < size ? VI_SUCCESS : VI_SUCCESS_MAX_CNT;
  }
}

}  // namespace nal

#pragma once
// USB instruments through the Linux usbtmc kernel driver (/dev/usbtmcN). The driver frames each
// write as one message with EOM on its last transfer (for a write that does not end the
// message, its ioctl turns EOM off first), and a read that returns fewer bytes than
// asked for has reached the end of the reply. The driver keeps its own timeout, set through
// its ioctl, and does not announce reply data through poll; anything else standing at the
// path (a pseudo-terminal in tests) is waited on with poll instead.

#include <memory>

#include "comm/comm_resource_name.h"
#include "comm/comm_transport.h"

namespace nal {

class comm_usbtmc_transport_t : public comm_transport_t {
 public:
  // Finds the device of `name` among comm_usbtmc_devices_t::list() and opens its file.
  static comm_vi_status_t open(const comm_resource_name_t& name,
                               std::unique_ptr<comm_transport_t>& transport);
  ~comm_usbtmc_transport_t() override;

  // See base class.
  comm_vi_status_t write(const unsigned char* data, std::size_t size, bool end,
                         std::uint32_t timeout_ms) override;
  // See base class.
  comm_vi_status_t read(unsigned char* buffer, std::size_t size, std::size_t& received,
                        std::uint32_t timeout_ms) override;

 private:
  comm_usbtmc_transport_t(int file, bool kernel_driver)
      : _file(file), _kernel_driver(kernel_driver) {}
  // Prepares one system call: sets the driver's timeout, or polls for `events`.
  comm_vi_status_t _prepare(short events, std::uint32_t timeout_ms);

  int _file;
  bool _kernel_driver;
  std::uint32_t _driver_timeout_ms = 0;
  // The driver's EOM setting, on when the file is opened.
  bool _eom_enabled = true;
};

}  // namespace nal

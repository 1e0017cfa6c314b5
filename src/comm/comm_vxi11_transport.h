#pragma once
// VXI-11 (TCPIP::host[::instN]::INSTR): the core channel of the VXI-11 specification over ONC
// RPC. The portmapper on port 111 names the core channel's port; the environment variable
// WAVELUME_VXI11_PORTMAPPER_PORT moves the portmapper elsewhere (a test instrument without
// privileges). A write is cut into device_write calls of at most the server's maxRecvSize,
// with the END flag on the last one only, and not even there when the write does not end the
// message; a read asks device_read until the reply's END.
// The link is destroyed with the object.

#include <memory>
#include <string>

#include "comm/comm_onc_rpc_client.h"
#include "comm/comm_transport.h"

namespace nal {

class comm_vxi11_transport_t : public comm_transport_t {
 public:
  static comm_vi_status_t open(const std::string& host, const std::string& device_name,
                               std::uint32_t timeout_ms,
                               std::unique_ptr<comm_transport_t>& transport);
  ~comm_vxi11_transport_t() override;

  // See base class.
  comm_vi_status_t write(const unsigned char* data, std::size_t size, bool end,
                         std::uint32_t timeout_ms) override;
  // See base class.
  comm_vi_status_t read(unsigned char* buffer, std::size_t size, std::size_t& received,
                        std::uint32_t timeout_ms) override;

 private:
  comm_vxi11_transport_t();

  comm_onc_rpc_client_t _core;
  bool _linked = false;
  std::uint32_t _link_id = 0;
  std::uint32_t _max_receive_size = 0;
  std::uint32_t _last_timeout_ms = comm_default_timeout_ms;
};

}  // namespace nal

#pragma once
// The built-in VISA layer for Linux, used when no system VISA library is installed: TCPIP
// SOCKET, VXI-11 and HiSLIP resources over TCP, and USB resources through the usbtmc kernel
// driver (see comm_resource_name_t for the strings). viFindRsrc lists the usbtmc devices; LAN
// instruments are not discovered and are opened by name. An instrument session starts with a
// timeout of comm_default_timeout_ms, which VI_ATTR_TMO_VALUE changes, and with END after each
// write, which VI_ATTR_SEND_END_EN turns off for a block written in several writes. Failed opens
// print one report line with the reason. The session table is thread-safe and each session
// serialises its own I/O; a session closed while another thread uses it is freed when that use
// ends.

#include <map>
#include <memory>
#include <mutex>

#include "comm/comm_visa_api.h"

namespace nal {

class comm_visa_builtin_t : public comm_visa_api_t {
 public:
  comm_visa_builtin_t();
  ~comm_visa_builtin_t() override;

  // See base class.
  comm_vi_status_t open_default_rm(comm_vi_session_t& rm) override;
  // See base class. `timeout_ms` bounds the connection; 0 means comm_default_timeout_ms.
  comm_vi_status_t open(comm_vi_session_t rm, const char* name, std::uint32_t access_mode,
                        std::uint32_t timeout_ms, comm_vi_session_t& vi) override;
  // See base class. Closing a manager session closes what was opened through it.
  comm_vi_status_t close(comm_vi_session_t object) override;
  // See base class. The expression is VISA's: '?' any character, '*' and '+' repeat the one
  // before, [set], alternatives with '|'; case-insensitive. Attribute filters are refused.
  comm_vi_status_t find_resources(comm_vi_session_t rm, const char* expression,
                                  comm_vi_session_t& find_list, std::uint32_t& count,
                                  char* description) override;
  // See base class.
  comm_vi_status_t find_next(comm_vi_session_t find_list, char* description) override;
  // See base class.
  comm_vi_status_t read(comm_vi_session_t vi, unsigned char* buffer, std::uint32_t count,
                        std::uint32_t& read_count) override;
  // See base class.
  comm_vi_status_t write(comm_vi_session_t vi, const unsigned char* buffer, std::uint32_t count,
                         std::uint32_t& written_count) override;
  // See base class. VI_ATTR_TMO_VALUE and VI_ATTR_SEND_END_EN on instrument sessions only.
  comm_vi_status_t set_attribute(comm_vi_session_t vi, std::uint32_t attribute,
                                 comm_vi_attr_state_t value) override;

 private:
  struct object_t;

  comm_vi_session_t _add(std::shared_ptr<object_t> object);
  std::shared_ptr<object_t> _find(comm_vi_session_t session, int kind);

  std::mutex _mutex;
  std::map<comm_vi_session_t, std::shared_ptr<object_t>> _objects;
  comm_vi_session_t _last_session = 0;
};

}  // namespace nal

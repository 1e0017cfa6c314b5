#pragma once
// The VISA operations the program uses, as one interface with two implementations: the system's
// VISA library loaded at run time, and the built-in transports for Linux. Arguments, results
// and status values follow the VISA functions of the same names.

#include <cstdint>

#include "comm/comm_visa_types.h"

namespace nal {

class comm_visa_api_t {
 public:
  virtual ~comm_visa_api_t() = default;

  // viOpenDefaultRM.
  virtual comm_vi_status_t open_default_rm(comm_vi_session_t& rm) = 0;
  // viOpen: `name` is zero-terminated; `timeout_ms` bounds the connection.
  virtual comm_vi_status_t open(comm_vi_session_t rm, const char* name, std::uint32_t access_mode,
                                std::uint32_t timeout_ms, comm_vi_session_t& vi) = 0;
  // viClose on an instrument session, a manager session or a find list.
  virtual comm_vi_status_t close(comm_vi_session_t object) = 0;
  // viFindRsrc: `description` holds VI_FIND_BUFLEN bytes and receives the first match.
  virtual comm_vi_status_t find_resources(comm_vi_session_t rm, const char* expression,
                                          comm_vi_session_t& find_list, std::uint32_t& count,
                                          char* description) = 0;
  // viFindNext: `description` holds VI_FIND_BUFLEN bytes.
  virtual comm_vi_status_t find_next(comm_vi_session_t find_list, char* description) = 0;
  // viRead: up to `count` bytes into `buffer`.
  virtual comm_vi_status_t read(comm_vi_session_t vi, unsigned char* buffer, std::uint32_t count,
                                std::uint32_t& read_count) = 0;
  // viWrite: the whole of `buffer` as one message.
  virtual comm_vi_status_t write(comm_vi_session_t vi, const unsigned char* buffer,
                                 std::uint32_t count, std::uint32_t& written_count) = 0;
  // viSetAttribute.
  virtual comm_vi_status_t set_attribute(comm_vi_session_t vi, std::uint32_t attribute,
                                         comm_vi_attr_state_t value) = 0;
};

}  // namespace nal

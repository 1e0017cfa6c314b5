#pragma once
// The system's VISA library, loaded at run time so that vendor drivers keep working and the
// program runs where none is installed. A library counts only when all eight functions the
// program uses resolve. Calls go straight to the library, whose own thread-safety applies.

#include <memory>
#include <string>

#include "comm/comm_visa_api.h"

namespace nal {

class comm_visa_system_library_t : public comm_visa_api_t {
 public:
  // The library at `path` (a file name is searched the way dlopen searches), or null when it
  // does not load or lacks one of the functions.
  static std::unique_ptr<comm_visa_system_library_t> load(const std::string& path);
  ~comm_visa_system_library_t() override;

  // See base class.
  comm_vi_status_t open_default_rm(comm_vi_session_t& rm) override;
  // See base class.
  comm_vi_status_t open(comm_vi_session_t rm, const char* name, std::uint32_t access_mode,
                        std::uint32_t timeout_ms, comm_vi_session_t& vi) override;
  // See base class.
  comm_vi_status_t close(comm_vi_session_t object) override;
  // See base class.
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
  // See base class.
  comm_vi_status_t set_attribute(comm_vi_session_t vi, std::uint32_t attribute,
                                 comm_vi_attr_state_t value) override;

 private:
  // The C signatures of VISA's functions.
  using open_default_rm_t = comm_vi_status_t (*)(comm_vi_session_t*);
  using open_t = comm_vi_status_t (*)(comm_vi_session_t, const char*, std::uint32_t, std::uint32_t,
                                      comm_vi_session_t*);
  using close_t = comm_vi_status_t (*)(comm_vi_session_t);
  using find_resources_t = comm_vi_status_t (*)(comm_vi_session_t, const char*, comm_vi_session_t*,
                                                std::uint32_t*, char*);
  using find_next_t = comm_vi_status_t (*)(comm_vi_session_t, char*);
  using read_t = comm_vi_status_t (*)(comm_vi_session_t, unsigned char*, std::uint32_t,
                                      std::uint32_t*);
  using write_t = comm_vi_status_t (*)(comm_vi_session_t, const unsigned char*, std::uint32_t,
                                       std::uint32_t*);
  using set_attribute_t = comm_vi_status_t (*)(comm_vi_session_t, std::uint32_t,
                                               comm_vi_attr_state_t);

  explicit comm_visa_system_library_t(void* handle) : _handle(handle) {}

  void* _handle;
  open_default_rm_t _open_default_rm = nullptr;
  open_t _open = nullptr;
  close_t _close = nullptr;
  find_resources_t _find_resources = nullptr;
  find_next_t _find_next = nullptr;
  read_t _read = nullptr;
  write_t _write = nullptr;
  set_attribute_t _set_attribute = nullptr;
};

}  // namespace nal

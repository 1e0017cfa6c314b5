#include "comm/comm_visa_system_library.h"

#include <dlfcn.h>

namespace nal {

namespace {

template <typename function_t>
bool resolve(void* handle, const char* name, function_t& function) {
  function = reinterpret_cast<function_t>(dlsym(handle, name));
  return function != nullptr;
}

}  // namespace

std::unique_ptr<comm_visa_system_library_t> comm_visa_system_library_t::load(
    const std::string& path) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    return nullptr;
  }
  std::unique_ptr<comm_visa_system_library_t> library(new comm_visa_system_library_t(handle));
  const bool complete =
      resolve(handle, "viOpenDefaultRM", library->_open_default_rm) &&
      resolve(handle, "viOpen", library->_open) && resolve(handle, "viClose", library->_close) &&
      resolve(handle, "viFindRsrc", library->_find_resources) &&
      resolve(handle, "viFindNext", library->_find_next) &&
      resolve(handle, "viRead", library->_read) && resolve(handle, "viWrite", library->_write) &&
      resolve(handle, "viSetAttribute", library->_set_attribute);
  return complete ? std::move(library) : nullptr;
}

comm_visa_system_library_t::~comm_visa_system_library_t() {
  dlclose(_handle);
}

comm_vi_status_t comm_visa_system_library_t::open_default_rm(comm_vi_session_t& rm) {
  return _open_default_rm(&rm);
}

comm_vi_status_t comm_visa_system_library_t::open(comm_vi_session_t rm, const char* name,
                                                  std::uint32_t access_mode,
                                                  std::uint32_t timeout_ms, comm_vi_session_t& vi) {
  return _open(rm, name, access_mode, timeout_ms, &vi);
}

comm_vi_status_t comm_visa_system_library_t::close(comm_vi_session_t object) {
  return _close(object);
}

comm_vi_status_t comm_visa_system_library_t::find_resources(comm_vi_session_t rm,
                                                            const char* expression,
                                                            comm_vi_session_t& find_list,
                                                            std::uint32_t& count,
                                                            char* description) {
  return _find_resources(rm, expression, &find_list, &count, description);
}

comm_vi_status_t comm_visa_system_library_t::find_next(comm_vi_session_t find_list,
                                                       char* description) {
  return _find_next(find_list, description);
}

comm_vi_status_t comm_visa_system_library_t::read(comm_vi_session_t vi, unsigned char* buffer,
                                                  std::uint32_t count, std::uint32_t& read_count) {
  return _read(vi, buffer, count, &read_count);
}

comm_vi_status_t comm_visa_system_library_t::write(comm_vi_session_t vi,
                                                   const unsigned char* buffer, std::uint32_t count,
                                                   std::uint32_t& written_count) {
  return _write(vi, buffer, count, &written_count);
}

comm_vi_status_t comm_visa_system_library_t::set_attribute(comm_vi_session_t vi,
                                                           std::uint32_t attribute,
                                                           comm_vi_attr_state_t value) {
  return _set_attribute(vi, attribute, value);
}

}  // namespace nal

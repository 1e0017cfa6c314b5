#include "comm/comm_visa_backend.h"

#include <cstdlib>

#include "comm/comm_visa_builtin.h"
#include "comm/comm_visa_system_library.h"
#include "lib/lib_report.h"

namespace nal {

std::vector<std::string> comm_visa_backend_t::library_candidates() {
  return {"libvisa.so",
          "libvisa.so.0",
          "/usr/local/vxipnp/linux/lib64/libvisa.so",
          "libktvisa32.so",
          "/opt/keysight/iolibs/libktvisa32.so",
          "librsvisa.so",
          "/usr/lib/librsvisa.so"};
}

std::shared_ptr<comm_visa_api_t> comm_visa_backend_t::choose(std::string& description) {
  const char* configured = std::getenv("WAVELUME_VISA_LIBRARY");
  const std::vector<std::string> candidates = configured != nullptr && *configured != '\0'
                                                  ? std::vector<std::string>{configured}
                                                  : library_candidates();
  for (const std::string& candidate : candidates) {
    if (std::shared_ptr<comm_visa_api_t> library = comm_visa_system_library_t::load(candidate)) {
      description = candidate;
      return library;
    }
  }
  if (configured != nullptr && *configured != '\0') {
    common_lib::lib_report(std::string("comm_visa_backend_t::choose Report: ") + configured +
                           " is no usable VISA library, the built-in one is used");
  }
  description = "built-in";
  return std::make_shared<comm_visa_builtin_t>();
}

std::shared_ptr<comm_visa_api_t> comm_visa_backend_t::process_backend() {
  static const std::shared_ptr<comm_visa_api_t> backend = []() {
    std::string description;
    return choose(description);
  }();
  return backend;
}

}  // namespace nal

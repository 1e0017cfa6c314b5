#pragma once
// The built-in VISA layer with a search that finds the simulator: the built-in layer discovers
// no LAN instruments, so the device list would otherwise know only names added by hand, and
// those are VXI-11 names. Every search answers the names given, in order; everything else goes
// to the built-in layer unchanged. For tests and benchmarks of the link against the simulator.

#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "comm/comm_visa_builtin.h"

namespace wavelume_sim {

class sim_listing_visa_t : public nal::comm_visa_api_t {
 public:
  explicit sim_listing_visa_t(std::vector<std::string> names) : _names(std::move(names)) {}

  // See base class.
  nal::comm_vi_status_t open_default_rm(nal::comm_vi_session_t& rm) override {
    return _builtin.open_default_rm(rm);
  }
  // See base class.
  nal::comm_vi_status_t open(nal::comm_vi_session_t rm, const char* name, std::uint32_t access_mode,
                             std::uint32_t timeout_ms, nal::comm_vi_session_t& vi) override {
    return _builtin.open(rm, name, access_mode, timeout_ms, vi);
  }
  // See base class.
  nal::comm_vi_status_t close(nal::comm_vi_session_t object) override {
    return object == find_list ? nal::VI_SUCCESS : _builtin.close(object);
  }
  // See base class.
  nal::comm_vi_status_t find_resources(nal::comm_vi_session_t, const char*,
                                       nal::comm_vi_session_t& list, std::uint32_t& count,
                                       char* description) override {
    _next = 0;
    list = find_list;
    count = static_cast<std::uint32_t>(_names.size());
    return _names.empty() ? nal::VI_ERROR_RSRC_NFOUND : find_next(list, description);
  }
  // See base class.
  nal::comm_vi_status_t find_next(nal::comm_vi_session_t, char* description) override {
    if (_next >= _names.size()) {
      return nal::VI_ERROR_RSRC_NFOUND;
    }
    std::strncpy(description, _names[_next++].c_str(), nal::VI_FIND_BUFLEN - 1);
    description[nal::VI_FIND_BUFLEN - 1] = '\0';
    return nal::VI_SUCCESS;
  }
  // See base class.
  nal::comm_vi_status_t read(nal::comm_vi_session_t vi, unsigned char* buffer, std::uint32_t count,
                             std::uint32_t& read_count) override {
    return _builtin.read(vi, buffer, count, read_count);
  }
  // See base class.
  nal::comm_vi_status_t write(nal::comm_vi_session_t vi, const unsigned char* buffer,
                              std::uint32_t count, std::uint32_t& written_count) override {
    return _builtin.write(vi, buffer, count, written_count);
  }
  // See base class.
  nal::comm_vi_status_t set_attribute(nal::comm_vi_session_t vi, std::uint32_t attribute,
                                      nal::comm_vi_attr_state_t value) override {
    return _builtin.set_attribute(vi, attribute, value);
  }

 private:
  // Far above the built-in layer's own session numbers, which count from 1.
  static constexpr nal::comm_vi_session_t find_list = 0x7FFF0000u;

  nal::comm_visa_builtin_t _builtin;
  std::vector<std::string> _names;
  std::size_t _next = 0;
};

}  // namespace wavelume_sim

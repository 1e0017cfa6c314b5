#pragma once
// A VISA double that records every call as one line of text and answers reads from a script,
// so that tests can check the read rules.

#include <deque>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "comm/comm_visa_api.h"

namespace test_comm {

using namespace nal;

class recording_visa_t : public comm_visa_api_t {
 public:
  struct read_step_t {
    comm_vi_status_t status;
    std::string bytes;
  };

  std::vector<std::string> calls;
  // Resources that viOpen accepts; the value is the *IDN? reply, empty for a silent one.
  std::map<std::string, std::string> instruments;
  // Scripted reads; when empty, a read answers with the identification of the session.
  std::deque<read_step_t> reads;
  // Attributes that viSetAttribute refuses, as a library without them would.
  std::set<std::uint32_t> refused_attributes;
  // Writes so far, and the one, counted from 1, that fails with a lost connection; 0 for none.
  std::size_t writes = 0;
  std::size_t failing_write = 0;

  comm_vi_status_t open_default_rm(comm_vi_session_t& rm) override {
    calls.push_back("viOpenDefaultRM");
    rm = 1;
    return VI_SUCCESS;
  }
  comm_vi_status_t open(comm_vi_session_t, const char* name, std::uint32_t mode,
                        std::uint32_t timeout, comm_vi_session_t& vi) override {
    calls.push_back("viOpen " + std::string(name) + " " + std::to_string(mode) + " " +
                    std::to_string(timeout));
    if (instruments.count(name) == 0) {
      return VI_ERROR_RSRC_NFOUND;
    }
    vi = ++_last_session;
    _names[vi] = name;
    return VI_SUCCESS;
  }
  comm_vi_status_t close(comm_vi_session_t object) override {
    calls.push_back("viClose " + std::to_string(object));
    return object == 0 ? VI_WARN_NULL_OBJECT : VI_SUCCESS;
  }
  comm_vi_status_t find_resources(comm_vi_session_t, const char*, comm_vi_session_t&,
                                  std::uint32_t& count, char*) override {
    count = 0;
    return VI_ERROR_RSRC_NFOUND;
  }
  comm_vi_status_t find_next(comm_vi_session_t, char*) override { return VI_ERROR_RSRC_NFOUND; }
  comm_vi_status_t read(comm_vi_session_t vi, unsigned char* buffer, std::uint32_t count,
                        std::uint32_t& read_count) override {
    calls.push_back("viRead " + std::to_string(count));
    read_step_t step{VI_ERROR_TMO, ""};
    if (!reads.empty()) {
      step = reads.front();
      reads.pop_front();
    } else if (!instruments[_names[vi]].empty()) {
      step = {VI_SUCCESS, instruments[_names[vi]] + "\n"};
    }
    read_count =
        static_cast<std::uint32_t>(step.bytes.copy(reinterpret_cast<char*>(buffer), count));
    return step.status;
  }
  comm_vi_status_t write(comm_vi_session_t vi, const unsigned char* buffer, std::uint32_t count,
                         std::uint32_t& written) override {
    calls.push_back("viWrite " + _names[vi] + " " +
                    std::string(reinterpret_cast<const char*>(buffer), count));
    if (++writes == failing_write) {
      written = 0;
      return VI_ERROR_CONN_LOST;
    }
    written = count;
    return VI_SUCCESS;
  }
  comm_vi_status_t set_attribute(comm_vi_session_t, std::uint32_t attribute,
                                 comm_vi_attr_state_t value) override {
    calls.push_back("viSetAttribute " + std::to_string(attribute) + " " + std::to_string(value));
    return refused_attributes.count(attribute) != 0 ? VI_ERROR_NSUP_ATTR : VI_SUCCESS;
  }

 private:
  comm_vi_session_t _last_session = 100;
  std::map<comm_vi_session_t, std::string> _names;
};

}  // namespace test_comm

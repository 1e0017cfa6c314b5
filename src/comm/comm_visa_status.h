#pragma once
// Names and short explanations of the VISA status values, for messages a person reads.

#include <string>

#include "comm/comm_visa_types.h"

namespace nal {

class comm_visa_status_t {
 public:
  // "VI_ERROR_TMO (timeout expired)" for a known value, "VISA status 0xBFFF0099" otherwise.
  static std::string text(comm_vi_status_t status);
};

}  // namespace nal

#pragma once
// One open instrument connection of the built-in VISA layer. A write sends a message, or with
// `end` false the first or middle part of one that the next write continues, cut into pieces as
// the protocol requires and marked as ended (where the protocol has such a mark) after the last
// byte of a write with `end` true; a read returns what arrived of the reply with
// VISA's read statuses: VI_SUCCESS when the reply's end was reached, VI_SUCCESS_MAX_CNT when
// `size` bytes were read before it. Timeouts count from the last progress. One user at a time.

#include <cstddef>
#include <cstdint>

#include "comm/comm_visa_types.h"

namespace nal {

class comm_transport_t {
 public:
  virtual ~comm_transport_t() = default;

  virtual comm_vi_status_t write(const unsigned char* data, std::size_t size, bool end,
                                 std::uint32_t timeout_ms) = 0;
  virtual comm_vi_status_t read(unsigned char* buffer, std::size_t size, std::size_t& received,
                                std::uint32_t timeout_ms) = 0;
};

}  // namespace nal

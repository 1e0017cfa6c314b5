#pragma once
// VISA's numeric types and the status values the instrument link uses. The numbers are VISA's
// own, so a system VISA library and the built-in transports report alike and callers can test
// a status by number.

#include <cstdint>
#include <type_traits>

namespace nal {

// ViSession, ViObject and ViFindList: 0 (VI_NULL) is no object.
using comm_vi_session_t = std::uint32_t;
// ViStatus: negative values are errors, positive values are warnings or qualified successes.
using comm_vi_status_t = std::int32_t;
// ViAttrState is 64 bits wide on 64-bit platforms.
using comm_vi_attr_state_t = std::conditional_t<sizeof(void*) == 8, std::uint64_t, std::uint32_t>;

constexpr comm_vi_status_t comm_vi_status(std::uint32_t bits) {
  return static_cast<comm_vi_status_t>(bits);
}

constexpr comm_vi_status_t VI_SUCCESS = 0;
// A read stopped at the termination character; more of the reply may follow.
constexpr comm_vi_status_t VI_SUCCESS_TERM_CHAR = comm_vi_status(0x3FFF0005u);
// A read filled the requested count; more of the reply may follow.
constexpr comm_vi_status_t VI_SUCCESS_MAX_CNT = comm_vi_status(0x3FFF0006u);
// viClose on VI_NULL.
constexpr comm_vi_status_t VI_WARN_NULL_OBJECT = comm_vi_status(0x3FFF0082u);
constexpr comm_vi_status_t VI_ERROR_SYSTEM_ERROR = comm_vi_status(0xBFFF0000u);
constexpr comm_vi_status_t VI_ERROR_INV_OBJECT = comm_vi_status(0xBFFF000Eu);
constexpr comm_vi_status_t VI_ERROR_INV_EXPR = comm_vi_status(0xBFFF0010u);
constexpr comm_vi_status_t VI_ERROR_RSRC_NFOUND = comm_vi_status(0xBFFF0011u);
constexpr comm_vi_status_t VI_ERROR_INV_RSRC_NAME = comm_vi_status(0xBFFF0012u);
constexpr comm_vi_status_t VI_ERROR_TMO = comm_vi_status(0xBFFF0015u);
constexpr comm_vi_status_t VI_ERROR_NSUP_ATTR = comm_vi_status(0xBFFF001Du);
constexpr comm_vi_status_t VI_ERROR_IO = comm_vi_status(0xBFFF003Eu);
constexpr comm_vi_status_t VI_ERROR_CONN_LOST = comm_vi_status(0xBFFF00A6u);

constexpr std::uint32_t VI_ATTR_TMO_VALUE = 0x3FFF001Au;
// Whether a write ends its message (END); off, the next write continues the same message.
constexpr std::uint32_t VI_ATTR_SEND_END_EN = 0x3FFF0016u;
constexpr std::uint32_t VI_TMO_INFINITE = 0xFFFFFFFFu;
constexpr std::uint32_t VI_NO_LOCK = 0;
// Size of the description buffers of viFindRsrc and viFindNext, terminator included.
constexpr std::uint32_t VI_FIND_BUFLEN = 256;

// The session timeout of a newly opened instrument, in milliseconds.
constexpr std::uint32_t comm_default_timeout_ms = 2000;

}  // namespace nal

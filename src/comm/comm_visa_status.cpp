#include "comm/comm_visa_status.h"

#include <cstdio>

namespace nal {

std::string comm_visa_status_t::text(comm_vi_status_t status) {
  struct entry_t {
    comm_vi_status_t status;
    const char* text;
  };
  static constexpr entry_t entries[] = {
      {VI_SUCCESS, "VI_SUCCESS (operation completed)"},
      {VI_SUCCESS_TERM_CHAR, "VI_SUCCESS_TERM_CHAR (termination character read)"},
      {VI_SUCCESS_MAX_CNT, "VI_SUCCESS_MAX_CNT (requested count read)"},
      {VI_WARN_NULL_OBJECT, "VI_WARN_NULL_OBJECT (object reference is uninitialized)"},
      {VI_ERROR_SYSTEM_ERROR, "VI_ERROR_SYSTEM_ERROR (system error)"},
      {VI_ERROR_INV_OBJECT, "VI_ERROR_INV_OBJECT (invalid session or object)"},
      {VI_ERROR_INV_EXPR, "VI_ERROR_INV_EXPR (invalid search expression)"},
      {VI_ERROR_RSRC_NFOUND, "VI_ERROR_RSRC_NFOUND (resource not found)"},
      {VI_ERROR_INV_RSRC_NAME, "VI_ERROR_INV_RSRC_NAME (invalid resource string)"},
      {VI_ERROR_TMO, "VI_ERROR_TMO (timeout expired)"},
      {VI_ERROR_NSUP_ATTR, "VI_ERROR_NSUP_ATTR (attribute not supported)"},
      {VI_ERROR_IO, "VI_ERROR_IO (input/output error)"},
      {VI_ERROR_CONN_LOST, "VI_ERROR_CONN_LOST (connection lost)"},
  };
  for (const entry_t& entry : entries) {
    if (entry.status == status) {
      return entry.text;
    }
  }
  char unknown[32];
  std::snprintf(unknown, sizeof unknown, "VISA status 0x%08X", static_cast<unsigned>(status));
  return unknown;
}

}  // namespace nal

#include "custom_iq/plib_func.h"

#include "lib/lib_enum_types.h"
#include "lib/lib_report.h"

namespace nal {

namespace {
constexpr uint32 driver_custom_modulator = 2;
constexpr uint32 tab_custom_constellation = 32;
}  // namespace

uint32 plib_func_t::transfer_modulator_type(uint32 type) {
  switch (type) {
    case MODULATOR_APSK_QAM:
    case MODULATOR_MFSK:
      return type;
    case MODULATOR_CUSTOM:
      return driver_custom_modulator;
    default:
      common_lib::lib_report(
          "plib_func_t::transfer_modulator_type Report: Unexpected Modulator Type!");
      return 0;
  }
}

uint32 plib_func_t::transfer_constellation_type(uint32 type) {
  if (type <= MOD_16FSK) {
    return type;
  }
  if (type == tab_custom_constellation) {
    return MOD_MULTITONE2;
  }
  common_lib::lib_report(
      "plib_func_t::transfer_constellation_type Report: Unexpected Constellation Type!");
  return 0;
}

}  // namespace nal

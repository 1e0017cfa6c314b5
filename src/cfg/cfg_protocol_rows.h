#pragma once
// Every protocol of the program, one row each, in the order the command line lists them:
//
//   ROW(protocol type, command-line name, configuration class, page class)
//
// `protocol_not_built_t` stands for a configuration or page this build does not have yet. The
// configuration registry (src/cfg) and the page factory (src/main) both expand this list, so that
// adding a protocol is one row here; their two .cpp files include the classes' headers.

namespace nal {
struct protocol_not_built_t;
}  // namespace nal

// clang-format off
#define WAVELUME_PROTOCOL_ROWS(ROW)                                                             \
  ROW(PROTOCOL_CUSTOM_IQ, "custom-iq", cfg_custom_iq_t, ui_custom_iq_page_t)                    \
  ROW(PROTOCOL_CUSTOM_OFDM, "custom-ofdm", protocol_not_built_t, protocol_not_built_t)          \
  ROW(PROTOCOL_BLUETOOTH_BR_EDR, "bluetooth-br-edr", protocol_not_built_t, protocol_not_built_t) \
  ROW(PROTOCOL_BLUETOOTH_LE, "bluetooth-le", protocol_not_built_t, protocol_not_built_t)        \
  ROW(PROTOCOL_802154_OQPSK_BPSK, "802154-oqpsk-bpsk", protocol_not_built_t,                    \
      protocol_not_built_t)                                                                     \
  ROW(PROTOCOL_802154_SUN_FSK, "802154-sun-fsk", protocol_not_built_t, protocol_not_built_t)    \
  ROW(PROTOCOL_802154_SUN_OFDM, "802154-sun-ofdm", protocol_not_built_t, protocol_not_built_t)  \
  ROW(PROTOCOL_G9959, "g9959", protocol_not_built_t, protocol_not_built_t)                      \
  ROW(PROTOCOL_TOOLKIT, "toolkit", protocol_not_built_t, protocol_not_built_t)
// clang-format on

#pragma once
// The page and configuration kinds of the program.

#include <map>
#include <string>

#include "lib/lib_types.h"

namespace nal {

enum protocol_type_t : uint32 {
  PROTOCOL_HOME = 0,
  PROTOCOL_BLUETOOTH_LE = 1,
  PROTOCOL_BLUETOOTH_BR_EDR = 2,
  PROTOCOL_CUSTOM_OFDM = 3,
  PROTOCOL_802154_OQPSK_BPSK = 4,
  PROTOCOL_802154_SUN_FSK = 5,
  PROTOCOL_802154_SUN_OFDM = 6,
  PROTOCOL_G9959 = 7,
  PROTOCOL_CUSTOM_IQ = 8,
  PROTOCOL_TOOLKIT = 9,
};

// The ProtocolType texts of state files, Home included; read-only after first use.
const std::map<protocol_type_t, std::string>& protocol_type_state_text_map();

}  // namespace nal

#include "cfg/cfg_protocol_type.h"

namespace nal {

const std::map<protocol_type_t, std::string>& protocol_type_state_text_map() {
  static const std::map<protocol_type_t, std::string> map = {
      {PROTOCOL_HOME, "Empty Protocol"},
      {PROTOCOL_BLUETOOTH_LE, "Bluetooth LE"},
      {PROTOCOL_BLUETOOTH_BR_EDR, "Bluetooth BR/EDR"},
      {PROTOCOL_CUSTOM_OFDM, "Custom OFDM"},
      {PROTOCOL_802154_OQPSK_BPSK, "802.15.4 OQPSK BPSK"},
      {PROTOCOL_802154_SUN_FSK, "802.15.4 SUN FSK"},
      {PROTOCOL_802154_SUN_OFDM, "802.15.4 SUN OFDM"},
      {PROTOCOL_G9959, "Z-wave"},
      {PROTOCOL_CUSTOM_IQ, "Custom IQ"},
      {PROTOCOL_TOOLKIT, "Toolkit"},
  };
  return map;
}

}  // namespace nal

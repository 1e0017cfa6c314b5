#include "main/ui_protocol_tab_text.h"

namespace nal {

const std::map<protocol_type_t, QString>& protocol_type_tab_text_map() {
  static const std::map<protocol_type_t, QString> map = {
      {PROTOCOL_HOME, "Home"},
      {PROTOCOL_BLUETOOTH_LE, "Bluetooth Low Energy"},
      {PROTOCOL_BLUETOOTH_BR_EDR, "Bluetooth BR+EDR"},
      {PROTOCOL_CUSTOM_OFDM, "Custom OFDM"},
      {PROTOCOL_802154_OQPSK_BPSK, "802.105.4 O-QPSK BPSK"},
      {PROTOCOL_802154_SUN_FSK, "802.15.4 SUN FSK"},
      {PROTOCOL_802154_SUN_OFDM, "802.15.4 SUN OFDM"},
      {PROTOCOL_G9959, "ITU-T G.9959"},
      {PROTOCOL_CUSTOM_IQ, "Custom IQ"},
      {PROTOCOL_TOOLKIT, "Toolkit"},
  };
  return map;
}

QString protocol_tab_text(protocol_type_t type) {
  const auto& map = protocol_type_tab_text_map();
  const auto entry = map.find(type);
  return entry == map.end() ? QString() : entry->second;
}

namespace {

// Built during static initialisation, before main, like the other text tables.
[[maybe_unused]] const auto& built_before_main = protocol_type_tab_text_map();

}  // namespace

}  // namespace nal

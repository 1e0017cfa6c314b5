#include "cfg/cfg_protocol_factory.h"

#include <iostream>

#include "cfg/cfg_custom_iq.h"

namespace nal {

std::unique_ptr<cfg_protocol_base_t> cfg_protocol_factory_t::create_protocol_config(
    protocol_type_t type) {
  if (type == PROTOCOL_HOME) {
    return nullptr;
  }
  if (type == PROTOCOL_CUSTOM_IQ) {
    return std::make_unique<cfg_custom_iq_t>();
  }
  const auto& names = protocol_type_state_text_map();
  const auto name = names.find(type);
  if (name == names.end()) {
    std::cerr << "Unknown Protocol Type!" << std::endl;
    return nullptr;
  }
  std::cerr << "The " << name->second << " engine is not available in this build." << std::endl;
  return nullptr;
}

}  // namespace nal

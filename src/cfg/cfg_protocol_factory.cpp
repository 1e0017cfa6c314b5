#include "cfg/cfg_protocol_factory.h"

#include <iostream>

#include "cfg/cfg_protocol_registry.h"

namespace nal {

std::unique_ptr<cfg_protocol_base_t> cfg_protocol_factory_t::create_protocol_config(
    protocol_type_t type) {
  if (type == PROTOCOL_HOME) {
    return nullptr;
  }
  const cfg_protocol_row_t* row = cfg_protocol_registry_t::find(type);
  if (row == nullptr) {
    std::cerr << "Unknown Protocol Type!" << std::endl;
    return nullptr;
  }
  if (!row->has_engine()) {
    std::cerr << "The " << protocol_type_state_text_map().at(type)
              << " engine is not available in this build." << std::endl;
    return nullptr;
  }
  return row->create();
}

}  // namespace nal

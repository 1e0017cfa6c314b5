#pragma once
// Makes the configuration of a protocol type, default constructed.

#include <memory>

#include "cfg/cfg_protocol_base.h"

namespace nal {

class cfg_protocol_factory_t {
 public:
  // Null for the Home page (0), which has no configuration, and, with a line on standard error,
  // for a type that is unknown or whose engine this build does not have yet.
  static std::unique_ptr<cfg_protocol_base_t> create_protocol_config(protocol_type_t type);
};

}  // namespace nal

// libFuzzer target: arbitrary bytes as a state or project archive.

#include <cstddef>
#include <cstdint>
#include <string>

#include "cfg/cfg_protocol_state.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::unique_ptr<nal::cfg_protocol_base_t>> configurations;
  nal::uint64 index = 0;
  nal::cfg_protocol_state_t::parse_protocol_state(
      std::string(reinterpret_cast<const char*>(data), size), "fuzz", configurations, index,
      [](nal::protocol_type_t) { return nullptr; });
  return 0;
}

// libFuzzer target: arbitrary bytes as the Custom IQ element of a state file. Whatever parses
// is loaded through the configuration's reader; small results are computed, and every loaded
// configuration must survive its own save and recall unchanged.

#include <pugixml.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <sstream>
#include <string>

#include "cfg/cfg_custom_iq.h"

namespace {

std::string saved_text(const nal::cfg_custom_iq_t& configuration) {
  pugi::xml_document document;
  pugi::xml_node node = document.append_child("ProtocolConfiguration");
  configuration.save_to_xml(node);
  std::ostringstream text;
  document.save(text);
  return text.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pugi::xml_document document;
  if (!document.load_buffer(data, size)) {
    return 0;
  }
  pugi::xml_node element = document.find_node([](const pugi::xml_node& node) {
    return std::string(node.name()) == "ProtocolConfiguration";
  });
  if (!element) {
    element = document.document_element();
  }
  nal::cfg_custom_iq_t configuration;
  if (!configuration.load_from_xml(element)) {
    return 0;
  }
  if (configuration.engine().get_total_sample_points() <= 200000) {
    configuration.engine().update_waveform();
  }
  const std::string first = saved_text(configuration);
  pugi::xml_document again;
  again.load_string(first.c_str());
  nal::cfg_custom_iq_t recalled;
  recalled.load_from_xml(again.document_element());
  const std::string second = saved_text(recalled);
  if (second != first) {  // a setting did not survive its own save and recall
    std::fprintf(stderr, "saved:\n%s\nrecalled and saved again:\n%s\n", first.c_str(),
                 second.c_str());
    __builtin_trap();
  }
  return 0;
}

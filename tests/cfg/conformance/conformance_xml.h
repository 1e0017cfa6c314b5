#pragma once
// The XML side of the conformance suite: a configuration's element as text, paths into it, and
// its outline.

#include <pugixml.hpp>

#include <sstream>
#include <string>
#include <vector>

#include "cfg/cfg_protocol_base.h"

namespace wavelume_test {

inline std::string document_text(const pugi::xml_document& document) {
  std::ostringstream text;
  document.save(text);
  return text.str();
}

// The ProtocolConfiguration element a configuration writes, as a document's text.
inline std::string saved_text(const nal::cfg_protocol_base_t& config) {
  pugi::xml_document document;
  pugi::xml_node element = document.append_child("ProtocolConfiguration");
  config.save_to_xml(element);
  return document_text(document);
}

// Reads a document's text into a configuration; false when the text does not parse or the
// configuration refuses it.
inline bool load_text(nal::cfg_protocol_base_t& config, const std::string& text) {
  pugi::xml_document document;
  return document.load_string(text.c_str()) && config.load_from_xml(document.document_element());
}

// The element at `path` ("Group/Name") below `root`; empty when there is none.
inline pugi::xml_node element_at(pugi::xml_node root, const std::string& path) {
  std::istringstream names(path);
  std::string name;
  while (root && std::getline(names, name, '/')) {
    root = root.child(name.c_str());
  }
  return root;
}

inline std::string text_at(const std::string& document_text, const std::string& path) {
  pugi::xml_document document;
  document.load_string(document_text.c_str());
  return element_at(document.document_element(), path).text().get();
}

// Attributes ("@Name") and elements ("Group/Name", attributes "Group/@Name") of an element, in
// document order, each element before its content.
inline void outline(const pugi::xml_node& element, const std::string& prefix,
                    std::vector<std::string>& out) {
  for (const pugi::xml_attribute& attribute : element.attributes()) {
    out.push_back(prefix + "@" + attribute.name());
  }
  for (const pugi::xml_node& child : element.children()) {
    if (child.type() == pugi::node_element) {
      const std::string path = prefix + child.name();
      out.push_back(path);
      outline(child, path + "/", out);
    }
  }
}

inline std::vector<std::string> outline_of(const std::string& document_text) {
  pugi::xml_document document;
  document.load_string(document_text.c_str());
  std::vector<std::string> out;
  outline(document.document_element(), "", out);
  return out;
}

}  // namespace wavelume_test

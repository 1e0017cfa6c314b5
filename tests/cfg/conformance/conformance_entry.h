#pragma once
// One protocol configuration as the conformance suite sees it: how to make it, and its state
// file element written out by hand (names, order, a valid edited value for each element it
// reads, and where each number lands when the file holds an out-of-range one). A configuration
// joins the suite with one line in conformance_entries().

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "cfg/cfg_protocol_base.h"
#include "cfg/cfg_protocol_factory.h"

namespace wavelume_test {

enum class conformance_kind_t {
  group,    // an element that only holds others
  value,    // text, flag or enumeration, read back as written
  number,   // a bounded number
  list,     // comma-separated numbers, stored as they stand
  derived,  // written only; the reader ignores it
};

// Where a number lands when its text is out of range. The bounds of one element often follow
// others, which the same file sets out of range too.
struct conformance_clamp_t {
  double above = 0.0;         // after a number far above every limit (or +inf)
  double below = 0.0;         // after a number far below every limit (or -inf)
  double not_a_number = 0.0;  // after NaN, text that is no number, or nothing
};

struct conformance_element_t {
  std::string path;  // element names below ProtocolConfiguration, joined by '/'
  conformance_kind_t kind = conformance_kind_t::group;
  std::string edited;  // a valid text that differs from the default and the preset value
  conformance_clamp_t clamp;
};

inline conformance_element_t group(const std::string& path) {
  return {path, conformance_kind_t::group, "", {}};
}
inline conformance_element_t value(const std::string& path, const std::string& edited) {
  return {path, conformance_kind_t::value, edited, {}};
}
inline conformance_element_t number(const std::string& path, const std::string& edited,
                                    conformance_clamp_t clamp) {
  return {path, conformance_kind_t::number, edited, clamp};
}
inline conformance_element_t list(const std::string& path, const std::string& edited) {
  return {path, conformance_kind_t::list, edited, {}};
}
inline conformance_element_t derived(const std::string& path) {
  return {path, conformance_kind_t::derived, "", {}};
}

using config_ptr_t = std::unique_ptr<nal::cfg_protocol_base_t>;

struct conformance_entry_t {
  std::string name;  // part of the test names
  nal::protocol_type_t type = nal::PROTOCOL_HOME;
  std::string state_text;  // the ProtocolType attribute
  std::function<config_ptr_t()> make;
  // Copy construction, or empty when the class cannot be copied.
  std::function<config_ptr_t(const nal::cfg_protocol_base_t&)> copy;
  // Brings the samples up to date where get_waveform_data only hands them out.
  std::function<void(nal::cfg_protocol_base_t&)> compute;
  std::vector<conformance_element_t> elements;  // in document order
};

inline std::function<config_ptr_t()> from_factory(nal::protocol_type_t type) {
  return [type] { return nal::cfg_protocol_factory_t::create_protocol_config(type); };
}

template <typename config_t>
std::function<config_ptr_t(const nal::cfg_protocol_base_t&)> copy_of() {
  if constexpr (std::is_copy_constructible_v<config_t>) {
    return [](const nal::cfg_protocol_base_t& original) -> config_ptr_t {
      return std::make_unique<config_t>(dynamic_cast<const config_t&>(original));
    };
  } else {
    return {};
  }
}

conformance_entry_t custom_iq_conformance();

// Every registered configuration.
inline std::vector<conformance_entry_t> conformance_entries() {
  return {
      custom_iq_conformance(),
  };
}

}  // namespace wavelume_test

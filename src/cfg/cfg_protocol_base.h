#pragma once
// The interface every protocol configuration presents to pages, files and the command-line tool:
// get the samples, save or send them, return to defaults, and read or write the protocol's
// element of a state file. A configuration owns its engine and is owned by one page (or by the
// state file reader during a recall). One thread at a time; get_waveform_data may run on a
// page's background task.

#include <pugixml.hpp>

#include <string>

#include "cfg/cfg_protocol_type.h"
#include "lib/lib_types.h"

namespace nal {

class cfg_protocol_base_t {
 public:
  virtual ~cfg_protocol_base_t() = default;

  // The samples of the current settings; false when no waveform exists.
  virtual bool get_waveform_data(lib_iq_data_arr_t& samples) = 0;
  // The waveform file of the current settings at `path`.
  virtual bool save_wavefrom_to_file(const std::string& path) = 0;
  // The same bytes as a block to the connected instrument.
  virtual bool download_wavefrom_to_instrument() = 0;
  // Back to the defaults, recomputed.
  virtual void preset() = 0;
  // Reads one ProtocolConfiguration element; false (and nothing changed) when it belongs to
  // another protocol.
  virtual bool load_from_xml(const pugi::xml_node& node) = 0;
  // Writes the ProtocolConfiguration element: the ProtocolType attribute, then the content.
  virtual bool save_to_xml(pugi::xml_node& node) const = 0;
  virtual protocol_type_t protocol_type() const = 0;

 protected:
  cfg_protocol_base_t() = default;
  cfg_protocol_base_t(const cfg_protocol_base_t&) = default;
  cfg_protocol_base_t& operator=(const cfg_protocol_base_t&) = default;
};

}  // namespace nal

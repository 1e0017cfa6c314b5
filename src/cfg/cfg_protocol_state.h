#pragma once
// State files (one tab) and project files (all tabs): a ZIP archive holding the XML document
// "AutoXmlFileName.xml" and its seal "Md5CheckoutCode.txt", the lowercase hexadecimal MD5 of the
// document's bytes. Archives are built and read in memory: no working files, no entry name taken
// from the archive, entries other than the two ignored, an entry above 64 MiB refused. Problems go
// to standard error as one line each. GUI thread or any single thread.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cfg/cfg_protocol_base.h"
#include "cfg/cfg_software_version.h"

namespace nal {

class cfg_protocol_state_t {
 public:
  static constexpr std::size_t max_entry_bytes = std::size_t{64} << 20;
  // Archives above this size are not read at all.
  static constexpr std::size_t max_archive_bytes = std::size_t{256} << 20;
  static constexpr const char* software_version = cfg_software_version;

  using factory_t = std::function<std::unique_ptr<cfg_protocol_base_t>(protocol_type_t)>;

  // Writes the tabs in order (null for a Home tab) and the current index. The archive replaces
  // `path` only once complete.
  static bool save_protocol_state(const std::string& path,
                                  const std::vector<const cfg_protocol_base_t*>& configurations,
                                  uint64 current_tab_index);
  // Reads an archive: one configuration per tab (null for Home and for protocols the factory
  // cannot make) and the current index. False, with nothing handed out, for a file that is no
  // sound archive of this kind.
  static bool load_protocol_state(const std::string& path,
                                  std::vector<std::unique_ptr<cfg_protocol_base_t>>& configurations,
                                  uint64& current_tab_index);
  // The same with the configurations made by `factory`.
  static bool load_protocol_state(const std::string& path,
                                  std::vector<std::unique_ptr<cfg_protocol_base_t>>& configurations,
                                  uint64& current_tab_index, const factory_t& factory);
  // The same on the bytes of an archive; `name` only labels the messages.
  static bool parse_protocol_state(
      const std::string& bytes, const std::string& name,
      std::vector<std::unique_ptr<cfg_protocol_base_t>>& configurations, uint64& current_tab_index,
      const factory_t& factory);
};

}  // namespace nal

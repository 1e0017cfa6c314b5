#pragma once
// Which protocol pages this build has, and how to make each: the page classes of the protocol
// rows (cfg/cfg_protocol_rows.h). The main window asks it for Home buttons, menus and recalled
// tabs; a kind without a page is simply not offered a page (its button stays and does nothing).
// Tests add pages of their own.

#include <functional>
#include <map>
#include <type_traits>

#include "cfg/cfg_protocol_type.h"

namespace nal {

class ui_protocol_page_t;

class ui_page_factory_t {
 public:
  // Makes a parentless page with its own default configuration.
  using creator_t = std::function<ui_protocol_page_t*()>;

  // Every page of this build.
  static ui_page_factory_t standard();

  // An empty creator removes the kind's page.
  void add(protocol_type_t type, creator_t creator);
  // Null for a kind without a page.
  ui_protocol_page_t* create(protocol_type_t type) const;
  bool has_page(protocol_type_t type) const;

 private:
  std::map<protocol_type_t, creator_t> _creators;
};

}  // namespace nal

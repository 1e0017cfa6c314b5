#include "main/ui_page_factory.h"

#include "cfg/cfg_protocol_rows.h"
#include "ui/pages/ui_custom_iq_page.h"

namespace nal {

namespace {

template <typename page_t>
ui_page_factory_t::creator_t page_creator() {
  if constexpr (std::is_same_v<page_t, protocol_not_built_t>) {
    return nullptr;
  } else {
    return [] { return new page_t; };
  }
}

}  // namespace

ui_page_factory_t ui_page_factory_t::standard() {
  ui_page_factory_t factory;
#define WAVELUME_PAGE_ROW(type, cli_name, configuration, page) \
  factory.add(type, page_creator<page>());
  WAVELUME_PROTOCOL_ROWS(WAVELUME_PAGE_ROW)
#undef WAVELUME_PAGE_ROW
  return factory;
}

void ui_page_factory_t::add(protocol_type_t type, creator_t creator) {
  if (creator) {
    _creators[type] = std::move(creator);
  } else {
    _creators.erase(type);
  }
}

ui_protocol_page_t* ui_page_factory_t::create(protocol_type_t type) const {
  const auto creator = _creators.find(type);
  return creator == _creators.end() ? nullptr : creator->second();
}

bool ui_page_factory_t::has_page(protocol_type_t type) const {
  return _creators.count(type) != 0;
}

}  // namespace nal

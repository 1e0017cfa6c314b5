#include "main/ui_page_factory.h"

#include "ui/pages/ui_custom_iq_page.h"

namespace nal {

ui_page_factory_t ui_page_factory_t::standard() {
  ui_page_factory_t factory;
  factory.add(PROTOCOL_CUSTOM_IQ, [] { return new ui_custom_iq_page_t; });
  return factory;
}

void ui_page_factory_t::add(protocol_type_t type, creator_t creator) {
  _creators[type] = std::move(creator);
}

ui_protocol_page_t* ui_page_factory_t::create(protocol_type_t type) const {
  const auto creator = _creators.find(type);
  return creator == _creators.end() ? nullptr : creator->second();
}

}  // namespace nal

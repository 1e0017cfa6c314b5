#include "ui/pages/ui_resources.h"

#include <QtGlobal>

// Q_INIT_RESOURCE must stand outside any namespace.
static void register_wavelume_resources() {
  Q_INIT_RESOURCE(wavelume);
}

namespace nal {

void ui_register_resources() {
  static const bool registered = (register_wavelume_resources(), true);
  (void)registered;
}

}  // namespace nal

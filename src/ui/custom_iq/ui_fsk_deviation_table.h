#pragma once
// The FSK tone table: each symbol's frequency deviation, read-only, in engineering units.

#include "lib/lib_types.h"
#include "ui/widgets/ui_compact_table.h"

namespace nal {

class ui_fsk_deviation_table_t : public ui_compact_table_t {
  Q_OBJECT

 public:
  explicit ui_fsk_deviation_table_t(QWidget* parent = nullptr);

  // Symbol to deviation in hertz (the real part of each entry).
  void show_table(const lib_constellation_map_t& table);
};

}  // namespace nal

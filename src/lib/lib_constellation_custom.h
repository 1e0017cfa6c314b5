#pragma once
// A user-defined constellation: the map comes only from set_constellation; there is no default
// map and the point number does not follow the type.

#include "lib/lib_constellation_base.h"

namespace nal::common_lib {

class lib_constellation_custom_t : public lib_constellation_base_t {
 public:
  // Multitone2.
  lib_constellation_custom_t();
  // Supported types: Multitone2. The point number stays at 2 until update_point_by_map().
  explicit lib_constellation_custom_t(modulation_type_t type);

  // Clears `out`; a map failing check_constellation_map_validity is reported (after the
  // validity check's own line) and leaves `out` empty. Otherwise the base lookup.
  void get_symbol_iq_data(const lib_symbol_arr_t& symbols, lib_iq_data_arr_t& out) override;
  // Does nothing: the point number follows the map only.
  void update_point_by_type() override;
  // Leaves the map alone and returns false: a custom map has no default.
  bool generate_default_constellation() override;
};

}  // namespace nal::common_lib

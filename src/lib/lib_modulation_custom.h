#pragma once
// The modulator of a user-drawn constellation (type Multitone2): any power-of-2 map of points,
// shaped like the linear families.

#include "lib/lib_constellation_custom.h"
#include "lib/lib_modulation_base.h"

namespace nal::common_lib {

class lib_modulation_custom_t : public lib_modulation_base_t {
 public:
  lib_modulation_custom_t();
  lib_modulation_custom_t(const lib_modulation_custom_t&) = default;
  lib_modulation_custom_t& operator=(const lib_modulation_custom_t&) = default;

  // The bits per symbol follow the map (set_constellation), not the type.
  bool set_constellation_type(modulation_type_t type) override;
  // Half sine is refused.
  bool set_filter_type(filter_type_t type) override;
  void reset_constellation_inst() override {}

 protected:
  lib_constellation_base_t* _current_constellation() override { return &_custom; }
  const lib_constellation_base_t* _current_constellation() const override { return &_custom; }

 private:
  lib_constellation_custom_t _custom;
};

}  // namespace nal::common_lib

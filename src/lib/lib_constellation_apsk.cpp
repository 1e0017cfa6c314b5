#include "lib/lib_constellation_apsk.h"

#include <cmath>
#include <vector>

#include "lib/lib_report.h"

namespace nal::common_lib {

namespace {

struct apsk_ring_t {
  fp64 radius;
  fp64 offset;
  std::vector<uint32> natural_symbols;
  std::vector<uint32> gray_symbols;
};

const std::vector<apsk_ring_t>& apsk_16_rings() {
  static const std::vector<apsk_ring_t> rings = {
      {1.0, lib_pi / 4, {12, 13, 14, 15}, {12, 14, 15, 13}},
      {2.84,
       lib_pi / 4,
       {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11},
       {0, 8, 10, 2, 6, 7, 3, 11, 9, 1, 5, 4}},
  };
  return rings;
}

const std::vector<apsk_ring_t>& apsk_32_rings() {
  static const std::vector<apsk_ring_t> rings = {
      {1.0, lib_pi / 4, {28, 29, 30, 31}, {17, 21, 23, 19}},
      {2.84,
       lib_pi / 4,
       {16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27},
       {0, 1, 5, 4, 20, 22, 6, 7, 3, 2, 18, 16}},
      {5.27,
       lib_pi / 8,
       {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
       {8, 25, 9, 13, 29, 12, 28, 30, 14, 31, 15, 11, 27, 10, 26, 24}},
  };
  return rings;
}

}  // namespace

lib_constellation_apsk_t::lib_constellation_apsk_t() : lib_constellation_apsk_t(MOD_16APSK) {}

lib_constellation_apsk_t::lib_constellation_apsk_t(modulation_type_t type)
    : lib_constellation_base_t(type) {
  _set_supported_types({MOD_16APSK, MOD_32APSK});
}

bool lib_constellation_apsk_t::generate_default_constellation() {
  return _generate_with(&generate_default_apsk_constellation);
}

bool lib_constellation_apsk_t::generate_default_apsk_constellation(uint32 points,
                                                                   lib_constellation_map_t& map,
                                                                   bool gray) {
  map.clear();
  if (points != 16 && points != 32) {
    lib_report(
        "lib_constellation_apsk_t::generate_default_apsk_constellation Report: Illegal "
        "Constellation Point!");
    return false;
  }
  for (const apsk_ring_t& ring : points == 16 ? apsk_16_rings() : apsk_32_rings()) {
    const std::vector<uint32>& symbols = gray ? ring.gray_symbols : ring.natural_symbols;
    const fp64 spacing = 2.0 * lib_pi / static_cast<fp64>(symbols.size());
    for (std::size_t j = 0; j < symbols.size(); ++j) {
      const fp64 angle = j * spacing + ring.offset;
      map[symbols[j]] = {ring.radius * std::cos(angle), ring.radius * std::sin(angle)};
    }
  }
  return normalize(map);
}

}  // namespace nal::common_lib

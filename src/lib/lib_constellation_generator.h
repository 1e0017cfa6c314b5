#pragma once
// Default constellation maps as stateless calls, for code that wants a map without keeping a
// constellation object (the OFDM subcarrier mapping, the constellation editor). Each call takes
// a family index, clears the map it is given, fills it with the family's generator and returns
// that generator's result; an index outside the family's table is reported and gives false
// with the map empty. All members are static and safe from any thread on distinct maps.

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_constellation_generator_t {
 public:
  // Index 0, 1, 2, 3: 2, 4, 8, 16 levels.
  static bool generate_default_ask_constellation(uint32 ask_type, lib_constellation_map_t& map,
                                                 bool gray);
  // Index 0 and 4: 2 points; 1, 5, 8: 4; 2, 6, 9: 8; 3, 7, 10: 16.
  static bool generate_default_psk_constellation(uint32 psk_type, lib_constellation_map_t& map,
                                                 bool gray);
  // Index 0 to 10: 4, 8, 16, ..., 4096 points.
  static bool generate_default_qam_constellation(uint32 qam_type, lib_constellation_map_t& map,
                                                 bool gray);
  // Index 0: 16 points; 1: 32 points.
  static bool generate_default_apsk_constellation(uint32 apsk_type, lib_constellation_map_t& map,
                                                  bool gray);
  // Always 2 points without Gray numbering; `depth` as in lib_constellation_pr_ask_t.
  static bool generate_default_pr_ask_constellation(lib_constellation_map_t& map, fp64 depth);
  // Index 0 and 4: 2 points; 1: 4; 2: 8; 3: 16.
  static bool generate_default_fsk_constellation(uint32 fsk_type, lib_constellation_map_t& map,
                                                 bool gray);
};

}  // namespace nal::common_lib

#include "lib/lib_constellation_generator.h"

#include <vector>

#include "lib/lib_constellation_apsk.h"
#include "lib/lib_constellation_ask.h"
#include "lib/lib_constellation_fsk.h"
#include "lib/lib_constellation_pr_ask.h"
#include "lib/lib_constellation_psk.h"
#include "lib/lib_constellation_qam.h"
#include "lib/lib_report.h"

namespace nal::common_lib {

namespace {

// Looks the family index up in `points_by_index` and runs `generate`; an unknown index clears
// the map and prints `error_line`.
bool generate_by_index(uint32 index, const std::vector<uint32>& points_by_index,
                       lib_constellation_base_t::map_generator_t generate, const char* error_line,
                       lib_constellation_map_t& map, bool gray) {
  if (index >= points_by_index.size()) {
    map.clear();
    lib_report(error_line);
    return false;
  }
  return generate(points_by_index[index], map, gray);
}

}  // namespace

bool lib_constellation_generator_t::generate_default_ask_constellation(uint32 ask_type,
                                                                       lib_constellation_map_t& map,
                                                                       bool gray) {
  return generate_by_index(
      ask_type, {2, 4, 8, 16}, &lib_constellation_ask_t::generate_default_ask_constellation,
      "lib_constellation_generator_t::generate_default_ask_constellation Report : Error ASK Type!",
      map, gray);
}

bool lib_constellation_generator_t::generate_default_psk_constellation(uint32 psk_type,
                                                                       lib_constellation_map_t& map,
                                                                       bool gray) {
  return generate_by_index(
      psk_type, {2, 4, 8, 16, 2, 4, 8, 16, 4, 8, 16},
      &lib_constellation_psk_t::generate_default_psk_constellation,
      "lib_constellation_generator_t::generate_default_psk_constellation Report : Error PSK Type!",
      map, gray);
}

bool lib_constellation_generator_t::generate_default_qam_constellation(uint32 qam_type,
                                                                       lib_constellation_map_t& map,
                                                                       bool gray) {
  return generate_by_index(
      qam_type, {4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096},
      &lib_constellation_qam_t::generate_default_qam_constellation,
      "lib_constellation_generator_t::generate_default_qam_constellation Report : Error QAM Type!",
      map, gray);
}

bool lib_constellation_generator_t::generate_default_apsk_constellation(
    uint32 apsk_type, lib_constellation_map_t& map, bool gray) {
  return generate_by_index(apsk_type, {16, 32},
                           &lib_constellation_apsk_t::generate_default_apsk_constellation,
                           "lib_constellation_generator_t::generate_default_apsk_constellation "
                           "Report : Error APSK Type!",
                           map, gray);
}

bool lib_constellation_generator_t::generate_default_pr_ask_constellation(
    lib_constellation_map_t& map, fp64 depth) {
  return lib_constellation_pr_ask_t::generate_default_pr_ask_constellation(2, map, false, depth);
}

bool lib_constellation_generator_t::generate_default_fsk_constellation(uint32 fsk_type,
                                                                       lib_constellation_map_t& map,
                                                                       bool gray) {
  // The QAM text is the one this family has always printed.
  return generate_by_index(
      fsk_type, {2, 4, 8, 16, 2}, &lib_constellation_fsk_t::generate_default_fsk_constellation,
      "lib_constellation_generator_t::generate_default_qam_constellation Report : Error QAM Type!",
      map, gray);
}

}  // namespace nal::common_lib

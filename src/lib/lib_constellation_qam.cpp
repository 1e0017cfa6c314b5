#include "lib/lib_constellation_qam.h"

#include <cmath>
#include <string>

#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

namespace {

uint32 gray(uint32 x) {
  return lib_constellation_base_t::gray_code(x);
}

uint32 rounded_log2(uint32 x) {
  return lib_constellation_base_t::bit_number_of(x);
}

uint32 rounded_sqrt(uint32 x) {
  return static_cast<uint32>(std::lround(std::sqrt(static_cast<fp64>(x))));
}

bool is_square_power_of_2(uint32 x) {
  return plib_t::is_square_number(x) && plib_t::is_power_of_2(x);
}

void generate_rectangle_8_constellation(lib_constellation_map_t& map, bool use_gray) {
  for (uint32 i = 0; i < 8; ++i) {
    const uint32 column = i % 4;
    const uint32 row = i / 4;
    map[use_gray ? gray(column) + 4 * gray(row) : i] = {column - 1.5, 0.5 - row};
  }
}

bool generate_square_constellation(uint32 points, lib_constellation_map_t& map, bool use_gray) {
  if (!is_square_power_of_2(points)) {
    lib_report(
        "Function generate_square_constellation in lib_constellation_qam.cpp Report: Illegal "
        "symbol number " +
        std::to_string(points) + "! Must be square number and power of 2!");
    return false;
  }
  const uint32 side = rounded_sqrt(points);
  const fp64 half = (side - 1) / 2.0;
  const uint32 side_bits = rounded_log2(side);
  for (uint32 i = 0; i < points; ++i) {
    const uint32 column = i % side;
    const uint32 row = i / side;
    const uint32 key = use_gray ? gray(column) + (gray(row) << side_bits) : i;
    map[key] = {column - half, half - row};
  }
  return true;
}

// Geometry of a cross constellation of `points` symbols.
struct cross_shape_t {
  explicit cross_shape_t(uint32 symbol_count)
      : points(symbol_count),
        side(rounded_sqrt(symbol_count / 2)),
        wing(symbol_count / 8 / side),
        half((side - 1) / 2.0) {}

  uint32 points;  // N
  uint32 side;    // K: columns of the centre block, rows of each wing
  uint32 wing;    // w: columns of each wing, rows added above and below the centre block
  fp64 half;      // (K - 1) / 2
};

void generate_cross_natural(const cross_shape_t& shape, lib_constellation_map_t& map) {
  const uint32 edge = shape.points / 8;
  const uint32 centre_rows = shape.side + 2 * shape.wing;
  const fp64 outer = shape.wing + shape.half;
  for (uint32 u = 0; u < edge; ++u) {
    map[u] = {u / shape.side - outer, u % shape.side - shape.half};
  }
  for (uint32 u = 0; u < shape.points - 2 * edge; ++u) {
    map[edge + u] = {u / centre_rows - shape.half, u % centre_rows - outer};
  }
  for (uint32 u = 0; u < edge; ++u) {
    map[shape.points - edge + u] = {u / shape.side + shape.half + 1, u % shape.side - shape.half};
  }
}

// Puts `key` at (i, q) and its partner key + N/2 at the mirror image (-i, q).
void put_mirrored(const cross_shape_t& shape, uint32 key, fp64 i, fp64 q,
                  lib_constellation_map_t& map) {
  map[key] = {i, q};
  map[key + shape.points / 2] = {-i, q};
}

// Full-height columns (K rows) of the left half, `count` points from `first_key`, the first
// column at I = `first_column_i` and each further one a unit further left.
void put_gray_columns(const cross_shape_t& shape, uint32 first_key, uint32 count,
                      fp64 first_column_i, lib_constellation_map_t& map) {
  const uint32 side_bits = rounded_log2(shape.side);
  for (uint32 i = 0; i < count; ++i) {
    const uint32 column = i / shape.side;
    const uint32 row = i % shape.side;
    const uint32 key = first_key + gray(row) + (gray(i >> side_bits) << side_bits);
    put_mirrored(shape, key, first_column_i - column, shape.half - row, map);
  }
}

void generate_cross_gray(const cross_shape_t& shape, lib_constellation_map_t& map) {
  const uint32 w = shape.wing;
  const uint32 wing_bits = rounded_log2(w);
  // The w rows above and below the centre block, left half, four points per step.
  for (uint32 i = 0; i < shape.points / 32; ++i) {
    const uint32 r = i / w;
    const uint32 c = i % w;
    const uint32 key0 = gray(i % w) + (gray(i >> wing_bits) << (wing_bits + 2));
    const fp64 a = r - shape.half;
    const fp64 b = -0.5 - r;
    const fp64 top = shape.half + 1 + c;
    put_mirrored(shape, key0, a, top, map);
    put_mirrored(shape, key0 + w, b, top, map);
    put_mirrored(shape, key0 + 3 * w, b, -top, map);
    put_mirrored(shape, key0 + 2 * w, a, -top, map);
  }
  put_gray_columns(shape, shape.points / 8, shape.points / 8, -shape.half - 1, map);
  put_gray_columns(shape, shape.points / 4, shape.points / 4, -0.5, map);
}

bool generate_cross_constellation(uint32 points, lib_constellation_map_t& map, bool use_gray) {
  if (!is_square_power_of_2(points / 2)) {
    lib_report(
        "Function generate_cross_constellation in lib_constellation_qam.cpp Report: Illegal "
        "symbol number " +
        std::to_string(points) + "! Half number must be square number and power of 2!");
    return false;
  }
  const cross_shape_t shape(points);
  if (use_gray) {
    generate_cross_gray(shape, map);
  } else {
    generate_cross_natural(shape, map);
  }
  return true;
}

}  // namespace

lib_constellation_qam_t::lib_constellation_qam_t() : lib_constellation_qam_t(MOD_4QAM) {}

lib_constellation_qam_t::lib_constellation_qam_t(modulation_type_t type)
    : lib_constellation_base_t(type) {
  _set_supported_types({MOD_4QAM, MOD_8QAM, MOD_16QAM, MOD_32QAM, MOD_64QAM, MOD_128QAM, MOD_256QAM,
                        MOD_512QAM, MOD_1024QAM, MOD_2048QAM, MOD_4096QAM});
}

bool lib_constellation_qam_t::generate_default_constellation() {
  return _generate_with(&generate_default_qam_constellation);
}

bool lib_constellation_qam_t::generate_default_qam_constellation(uint32 points,
                                                                 lib_constellation_map_t& map,
                                                                 bool gray) {
  map.clear();
  if (!plib_t::is_power_of_2(points) || points < 4) {
    lib_report(
        "lib_constellation_qam_t::generate_default_qam_constellation Report: Illegal "
        "Constellation Point!");
    return false;
  }
  if (points == 8) {
    generate_rectangle_8_constellation(map, gray);
  } else if (plib_t::is_square_number(points) ? !generate_square_constellation(points, map, gray)
                                              : !generate_cross_constellation(points, map, gray)) {
    lib_report(
        "lib_constellation_qam_t::generate_default_qam_constellation Report: Error occurred!");
    return false;
  }
  return normalize(map);
}

}  // namespace nal::common_lib

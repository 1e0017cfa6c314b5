#pragma once
// The common class of all constellations: the map from symbol number to complex point of one
// modulation family, its point and bit numbers, the Gray flag the default maps follow, and the
// pulse filter that decides how points are brought to the sample rate.
//
// Plain value: copies (also of derived classes held by value) are independent and continue
// bit-identically. One thread uses an object at a time; no locks. Failures print one line
// ("class::method Report: ...") and return false or leave the output empty; nothing throws.
//
// Order of use: set the type, the Gray flag and the filter type, generate the default map (or set
// a map), then ask for the points of symbols. Changing the type keeps the old map until the next
// generate.

#include <cstdint>

#include "lib/lib_enum_types.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_constellation_base_t {
 public:
  // The form of every family's default-map generator: clears `map`, fills it for `points`
  // symbols (Gray numbering with `gray`), returns false on a point number it cannot build.
  using map_generator_t = bool (*)(uint32 points, lib_constellation_map_t& map, bool gray);

  // Stores the type; point number 2, bit number 1, no supported types, empty map. Derived
  // constructors set their supported types and take point and bit numbers from the type.
  explicit lib_constellation_base_t(modulation_type_t type);
  virtual ~lib_constellation_base_t() = default;
  lib_constellation_base_t(const lib_constellation_base_t&) = default;
  lib_constellation_base_t& operator=(const lib_constellation_base_t&) = default;

  // Element i becomes the point of the i-th symbol in ascending order; `points` must have as
  // many elements as the map has entries, and neither may be empty. With `normalize` the map is
  // then scaled to unit mean power.
  virtual bool set_constellation(const lib_iq_data_arr_t& points, bool normalize);
  // Replaces the point of one existing symbol; an unknown symbol is refused.
  virtual bool set_constellation(uint32 symbol, const lib_iq_sample_t& point, bool normalize);
  // Replaces the whole map with a copy of `map`, which must pass
  // check_constellation_map_validity. Point and bit numbers are left alone: call
  // update_point_by_map() when they should follow the new map.
  virtual bool set_constellation(const lib_constellation_map_t& map, bool normalize);

  // Clears `out`, then appends the point of each symbol in order. A symbol missing from the map
  // is reported ("... exception: " and the standard library's text) and ends the walk; `out`
  // keeps the points found before it.
  virtual void get_symbol_iq_data(const lib_symbol_arr_t& symbols, lib_iq_data_arr_t& out);
  // Raises `points` to `ratio` samples per point with the kind get_oversampling_type() selects.
  // `out` is cleared first; ratio 0 (or an odd ratio for the offset kind) is reported by the
  // oversampler and leaves it empty.
  virtual void deal_oversampling(const lib_iq_data_arr_t& points, uint32 ratio,
                                 lib_iq_data_arr_t& out);
  virtual void clear_constellation();
  // Point number = map size, bit number = round(log2(points)) (0 for an empty map).
  virtual void update_point_by_map();
  // Point number from the type (lib_common_type_cast_t::get_constellation_point), bit number
  // round(log2(points)).
  virtual void update_point_by_type();
  // Clears the map and builds the family's default map for the current point number and Gray
  // flag. The base class only clears and returns true.
  virtual bool generate_default_constellation();
  // An oversampling_kind_t value: holder (1) after a Gaussian filter, insert zero (0) otherwise.
  virtual uint32 get_oversampling_type() const;

  // Refuses a type outside get_supported_types(); otherwise stores it and calls
  // update_point_by_type(). The map is not regenerated.
  bool set_constellation_type(modulation_type_t type);
  bool is_constellation_type_supported(modulation_type_t type) const;
  modulation_type_t get_constellation_type() const { return _constellation_type; }
  // Number of symbols.
  uint32 get_constellation_point() const { return _constellation_point; }
  // Bits per symbol.
  uint32 get_bit_number() const { return _bit_number; }
  bool get_gray_code_enable() const { return _gray_code_enable; }
  // Takes effect at the next generate; always true.
  bool set_gray_code_enable(bool enable);
  filter_type_t get_filter_type() const { return _filter_type; }
  // The pulse filter that follows; it selects the oversampling kind.
  void set_filter_type(filter_type_t type) { _filter_type = type; }
  // The types set_constellation_type accepts, in the class's order.
  const lib_symbol_arr_t& get_supported_types() const { return _supported_types; }
  const lib_constellation_map_t& get_constellation_map() const { return _constellation_map; }
  // Copies the Gray flag and the filter type of `other`, nothing else.
  void copy_setting(const lib_constellation_base_t& other);
  // Forwards to generate_default_constellation().
  bool generate_constellation();

  // 0 for a valid map, else (first failing test wins, each with its report):
  //  -1  the size is no power of 2 (an empty map included);
  //  -2  a key is not below the size;
  //  -3  some key of 0..size-1 is missing (cannot follow once -2 passed, the keys being unique);
  //  -4  two neighbours in order of falling magnitude are equal within the tolerance in I and Q.
  // Equal points that are not neighbours in that order pass.
  static std::int32_t check_constellation_map_validity(const lib_constellation_map_t& map);
  // Unit mean power (rms form). An empty map is reported and gives false.
  static bool normalize(lib_constellation_map_t& map);
  // Largest of all |I| and |Q| becomes 1. An empty map is reported and gives false.
  static bool max_normalize(lib_constellation_map_t& map);
  // Binary-reflected Gray code, x XOR (x >> 1): the key rule of the Gray default maps.
  static uint32 gray_code(uint32 x) { return x ^ (x >> 1); }
  // round(log2(points)), 0 for no points.
  static uint32 bit_number_of(uint32 points);

 protected:
  // Replaces the supported types, then takes point and bit numbers from the type by the base
  // rule, as the constructor of every derived class but the custom one does.
  void _set_supported_types(const lib_symbol_arr_t& types);
  // The usual generate_default_constellation(): clears the map, then runs `generate` with the
  // current point number and Gray flag.
  bool _generate_with(map_generator_t generate);
  // The common start of a generator: clears `map`; a point number that is no power of 2 prints
  // `refusal` and gives false.
  static bool _start_power_of_2_map(uint32 points, lib_constellation_map_t& map,
                                    const char* refusal);

  modulation_type_t _constellation_type;
  uint32 _constellation_point = 2;
  uint32 _bit_number = 1;
  bool _gray_code_enable = false;
  filter_type_t _filter_type = FILTER_NONE;
  lib_symbol_arr_t _supported_types;
  lib_constellation_map_t _constellation_map;
};

}  // namespace nal::common_lib

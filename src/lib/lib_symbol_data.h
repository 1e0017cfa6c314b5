#pragma once
// The data source of a modulator: a bit array, from the PRBS register or from the user, packed
// into whole-number symbols for a constellation to map. Bits are one per byte, first bit first.
// A plain value (the register included): copies are independent and continue identically. One
// thread uses an object at a time.

#include <cstdint>
#include <vector>

#include "lib/lib_enum_types.h"
#include "lib/lib_prbs_code.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_symbol_data_t {
 public:
  // Data source code of the user's bits; codes 0..5 are the PRBS types of lib_prbs_code_t.
  static constexpr uint32 custom_bits_code = 6;
  // Most symbols one packing makes (1 GiB of symbols); more is refused with a report. The bits
  // read for them (count times bits per symbol) are capped at lib_prbs_code_t::max_generate_bits.
  static constexpr uint32 max_symbol_count = 1u << 28;

  // The code of a data source type: PN7 0, PN9 1, PN15 3, PN23 4, PN31 5, USER and CUSTOM 6.
  // A value outside the enumeration is reported and gives the default code 1 (PN9).
  static uint32 data_source_code_of(data_source_type_t type);

  // Any code is stored (true); generate() reports a code above 6.
  bool set_data_source_code(uint32 code);
  uint32 get_data_source_code() const { return _data_source_code; }
  // Number of symbols generate() makes; always true.
  bool set_symbol_length(uint32 length);
  uint32 get_symbol_length() const { return _symbol_length; }
  // Always true; 0 makes all-zero symbols.
  bool set_bits_per_symbol(uint32 bits);
  uint32 get_bits_per_symbol() const { return _bits_per_symbol; }

  // Stores the user's bits (used with code 6); an empty array under code 6 is stored with a
  // warning line. Elements are expected to be 0 or 1 (see is_bit_arr_valid).
  void set_bit_arr(const std::vector<std::uint8_t>& bits);
  const std::vector<std::uint8_t>& get_bit_arr() const { return _bit_arr; }
  const lib_symbol_arr_t& get_symbol_arr() const { return _symbol_arr; }
  // Empties both arrays.
  void clear();
  // True when every element is 0 or 1; an empty array is valid.
  bool is_bit_arr_valid() const;

  // Codes 0..5: the bit array becomes symbol length times bits per symbol PRBS bits of that type
  // from the all-ones seed. Code 6: the user's bits as they stand. Then the symbol array becomes
  // symbol length symbols packed from the bit array, reading it cyclically from bit 0. Failures
  // are reported and leave the arrays empty.
  void generate();

  // The register, for its output options and custom taps. The type and seed are set by
  // generate() for codes 0..5.
  lib_prbs_code_t& prbs() { return _prbs; }
  const lib_prbs_code_t& prbs() const { return _prbs; }

  // Clears `symbols` and appends `count` symbols of `bits_per_symbol` bits each, most significant
  // bit first, reading `bits` cyclically from index `start` modulo its size; a symbol may span
  // the wrap. Each symbol is value * 2 + element per bit, in 32 bits (an element above 1 is added
  // as it is). Reports and returns false with `symbols` empty for empty `bits`, a count above
  // max_symbol_count, or more than lib_prbs_code_t::max_generate_bits bits read.
  static bool _generate_symbol_arr_by_bit_arr(lib_symbol_arr_t& symbols,
                                              const std::vector<std::uint8_t>& bits, uint32 count,
                                              uint32 bits_per_symbol, uint32 start);

 private:
  // Fills the bit array for the current code; see generate().
  void _generate_bit_arr();

  uint32 _data_source_code = 1;
  uint32 _symbol_length = 512;
  uint32 _bits_per_symbol = 4;
  std::vector<std::uint8_t> _bit_arr;
  lib_symbol_arr_t _symbol_arr;
  lib_prbs_code_t _prbs;
};

}  // namespace nal::common_lib

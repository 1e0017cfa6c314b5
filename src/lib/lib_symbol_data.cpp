#include "lib/lib_symbol_data.h"

#include <algorithm>
#include <string>

#include "lib/lib_report.h"

namespace nal::common_lib {

uint32 lib_symbol_data_t::data_source_code_of(data_source_type_t type) {
  switch (type) {
    case DATA_SOURCE_PN7:
      return 0;
    case DATA_SOURCE_PN9:
      return 1;
    case DATA_SOURCE_PN15:
      return 3;
    case DATA_SOURCE_PN23:
      return 4;
    case DATA_SOURCE_PN31:
      return 5;
    case DATA_SOURCE_USER:
    case DATA_SOURCE_CUSTOM:
      return custom_bits_code;
  }
  lib_report("lib_symbol_data_t::data_source_code_of Report: Unknown Data Source Type! ",
             static_cast<long long>(type));
  return 1;
}

bool lib_symbol_data_t::set_data_source_code(uint32 code) {
  _data_source_code = code;
  return true;
}

bool lib_symbol_data_t::set_symbol_length(uint32 length) {
  _symbol_length = length;
  return true;
}

bool lib_symbol_data_t::set_bits_per_symbol(uint32 bits) {
  _bits_per_symbol = bits;
  return true;
}

void lib_symbol_data_t::set_bit_arr(const std::vector<std::uint8_t>& bits) {
  if (_data_source_code == custom_bits_code && bits.empty()) {
    lib_report("lib_symbol_data_t::set_bit_arr Report: Warning! Empty Custom Bit Data!");
  }
  _bit_arr = bits;
}

void lib_symbol_data_t::clear() {
  _bit_arr.clear();
  _symbol_arr.clear();
}

bool lib_symbol_data_t::is_bit_arr_valid() const {
  return std::all_of(_bit_arr.begin(), _bit_arr.end(), [](std::uint8_t bit) { return bit < 2; });
}

void lib_symbol_data_t::generate() {
  _generate_bit_arr();
  _generate_symbol_arr_by_bit_arr(_symbol_arr, _bit_arr, _symbol_length, _bits_per_symbol, 0);
}

void lib_symbol_data_t::_generate_bit_arr() {
  if (_data_source_code == custom_bits_code) {
    return;
  }
  _bit_arr.clear();
  const std::string empty_report = "lib_symbol_data_t::_generate_bit_arr Report: Empty Bit Data!";
  if (_data_source_code > custom_bits_code) {
    lib_report(empty_report);
    return;
  }
  const std::uint64_t bit_count = std::uint64_t{_symbol_length} * _bits_per_symbol;
  if (bit_count > lib_prbs_code_t::max_generate_bits) {
    lib_report("lib_symbol_data_t::_generate_bit_arr Report: Too Many Bits! ",
               static_cast<long long>(bit_count));
    return;
  }
  _prbs.set_prbs_type(_data_source_code);
  _prbs.generate(static_cast<uint32>(bit_count), _bit_arr);
  if (_bit_arr.empty()) {
    lib_report(empty_report);
  }
}

bool lib_symbol_data_t::_generate_symbol_arr_by_bit_arr(lib_symbol_arr_t& symbols,
                                                        const std::vector<std::uint8_t>& bits,
                                                        uint32 count, uint32 bits_per_symbol,
                                                        uint32 start) {
  symbols.clear();
  const std::string method = "lib_symbol_data_t::_generate_symbol_arr_by_bit_arr Report: ";
  if (bits.empty()) {
    lib_report(method + "Empty Bit Data For Symbolization!");
    return false;
  }
  const std::uint64_t bits_read = std::uint64_t{count} * bits_per_symbol;
  if (count > max_symbol_count || bits_read > lib_prbs_code_t::max_generate_bits) {
    lib_report(method + "Too Many Symbols! ", static_cast<long long>(count));
    return false;
  }
  symbols.reserve(count);
  std::size_t position = start % bits.size();
  for (uint32 i = 0; i < count; ++i) {
    uint32 value = 0;
    for (uint32 b = 0; b < bits_per_symbol; ++b) {
      value = value * 2 + bits[position];
      position = position + 1 == bits.size() ? 0 : position + 1;
    }
    symbols.push_back(value);
  }
  return true;
}

}  // namespace nal::common_lib

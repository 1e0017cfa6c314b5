#include "lib/lib_prbs_code.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <utility>

#include "lib/lib_report.h"

namespace nal::common_lib {

namespace {

uint64 all_ones(uint32 length) {
  return (uint64{1} << length) - 1;
}

}  // namespace

lib_prbs_code_t::lib_prbs_code_t() {
  _update_primitive_polynomial(_get_lfsr_length(_prbs_type), _taps);
}

bool lib_prbs_code_t::set_prbs_type(uint32 type) {
  _prbs_type = type;
  const uint32 length = get_lfsr_length();
  _register = all_ones(length);
  return length != 0;
}

void lib_prbs_code_t::reset_register() {
  _register = all_ones(get_lfsr_length());
}

bool lib_prbs_code_t::is_register_valid(uint64 value) const {
  return value != 0 && value <= all_ones(get_lfsr_length());
}

uint32 lib_prbs_code_t::get_lfsr_length() const {
  if (_custom_polynomial_enable && !_taps.empty()) {
    return *std::max_element(_taps.begin(), _taps.end());
  }
  return _get_lfsr_length(_prbs_type);
}

bool lib_prbs_code_t::set_prbs_primitive_polynomial(const std::vector<uint32>& taps) {
  const std::string method = "lib_prbs_code_t::set_prbs_primitive_polynomial Report : ";
  if (!_custom_polynomial_enable) {
    lib_report(method + "Custom Polynomial Disabled!");
    return false;
  }
  if (taps.empty()) {
    lib_report(method + "Empty Tap List!");
    return false;
  }
  std::vector<uint32> sorted = taps;
  std::sort(sorted.begin(), sorted.end(), std::greater<uint32>());
  if (sorted.front() > max_lfsr_length) {
    lib_report(method + "LFSR Register Out of Range!");
    return false;
  }
  if (sorted.back() == 0) {
    lib_report(method + "Stage Numbers Start at 1!");
    return false;
  }
  if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end()) {
    lib_report(method + "Repeated Tap!");
    return false;
  }
  _taps = std::move(sorted);
  _register = all_ones(_taps.front());
  return true;
}

uint64 lib_prbs_code_t::generate(uint32 count, std::vector<std::uint8_t>& bits) {
  bits.clear();
  if (!_custom_polynomial_enable || _taps.empty()) {
    _load_table_taps();
  }
  if (_taps.empty()) {
    return 0;
  }
  if (count > max_generate_bits) {
    lib_report("lib_prbs_code_t::generate Report : Too Many Bits Requested! ",
               static_cast<long long>(count));
    return 0;
  }

  const uint32 length = *std::max_element(_taps.begin(), _taps.end());
  const uint64 mask = all_ones(length);
  const std::uint8_t invert = _invert_output ? 1 : 0;
  bits.assign(count, 0);
  uint64 state = _register;
  for (auto& bit : bits) {
    uint64 feedback = 0;
    for (const uint32 tap : _taps) {
      feedback ^= state >> (tap - 1);
    }
    feedback &= 1;
    const uint64 top = (state >> (length - 1)) & 1;
    state = ((state << 1) & mask) + feedback;
    bit = static_cast<std::uint8_t>((_feedback_output ? feedback : top) ^ invert);
  }
  return state;
}

uint64 lib_prbs_code_t::generate_full_period(std::vector<std::uint8_t>& bits) {
  const uint32 length = get_lfsr_length();
  if (all_ones(length) > max_generate_bits) {
    lib_report(
        "lib_prbs_code_t::generate_full_period Report : Register too long for a full "
        "period, stages: ",
        static_cast<long long>(length));
    bits.clear();
    return 0;
  }
  return generate(static_cast<uint32>(all_ones(length)), bits);
}

void lib_prbs_code_t::_update_primitive_polynomial(uint32 length, std::vector<uint32>& taps) {
  static const std::map<uint32, std::vector<uint32>> table = {
      {3, {3, 1}},          {5, {5, 2}},    {7, {7, 6}},   {9, {9, 5}},    {11, {11, 9}},
      {13, {13, 12, 2, 1}}, {15, {15, 14}}, {20, {20, 3}}, {23, {23, 18}}, {31, {31, 28}},
  };
  const auto row = table.find(length);
  if (row == table.end()) {
    taps.clear();
    lib_report(
        "lib_prbs_code_t::_update_primitive_polynomial Report : No Available Primitive "
        "Polynomial For Input LFSR Length!");
    return;
  }
  taps = row->second;
}

uint32 lib_prbs_code_t::_get_lfsr_length(uint32 type) {
  static constexpr uint32 lengths[] = {7, 9, 11, 15, 23, 31};
  if (type >= std::size(lengths)) {
    lib_report("lib_prbs_code_t::_get_lfsr_length Report: Error PRBS Type!");
    return 0;
  }
  return lengths[type];
}

void lib_prbs_code_t::_load_table_taps() {
  const uint32 length = _get_lfsr_length(_prbs_type);
  if (length == 0) {
    _taps.clear();
    return;
  }
  _update_primitive_polynomial(length, _taps);
}

}  // namespace nal::common_lib

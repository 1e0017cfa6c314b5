#pragma once
// Pseudo-random bits from a Fibonacci linear feedback shift register of up to 63 stages.
//
// Register convention: stage 1 is the least significant bit of the register value. One step
// computes the feedback f as the XOR of bit t-1 over every tap t, then shifts the register up by
// one, keeps its low L bits (L = the largest tap) and enters f at stage 1. The output of a step is
// the top stage (bit L-1) before the shift, or f itself with feedback output on; invert output
// flips it. Bits are one per byte, each 0 or 1, first output first.
//
// The stored register is a seed: generating never advances it, so two generations from one seed
// give the same bits. A plain value: copies are independent and continue identically. One thread
// uses an object at a time.

#include <cstdint>
#include <vector>

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_prbs_code_t {
 public:
  // Stage numbers run from 1 to this (the register is 64 bits wide).
  static constexpr uint32 max_lfsr_length = 63;
  // Most bits one call makes: one period of the longest table register, 2^31 - 1 bits (2 GiB).
  // Larger requests are refused with a report, so that bad input cannot exhaust memory;
  // generate_full_period therefore serves registers of at most 31 stages.
  static constexpr uint32 max_generate_bits = 0x7FFFFFFFu;

  // PRBS type 0, register 127, table taps 7, 6.
  lib_prbs_code_t();

  // Type 0..5 selects 7, 9, 11, 15, 23 or 31 stages (with custom polynomial enable off). Stores
  // the type whatever it is and sets the register to all ones for the current length (see
  // get_lfsr_length). An unknown type, without custom taps, is reported, leaves the register 0
  // and returns false.
  bool set_prbs_type(uint32 type);
  uint32 get_prbs_type() const { return _prbs_type; }

  // Register to all ones (2^length - 1) for the current length.
  void reset_register();
  // True when `value` is not 0 and not above 2^length - 1 for the current length.
  bool is_register_valid(uint64 value) const;
  // Stores the seed without any test; bits above the length fall out after the first step.
  void set_register(uint64 value) { _register = value; }
  uint64 get_register() const { return _register; }

  // With custom polynomial enable on and a tap list set: the largest tap. Otherwise the length of
  // the PRBS type; 0, with a report, for an unknown type.
  uint32 get_lfsr_length() const;

  void set_feedback_output(bool enable) { _feedback_output = enable; }
  bool get_feedback_output() const { return _feedback_output; }
  void set_invert_output(bool enable) { _invert_output = enable; }
  bool get_invert_output() const { return _invert_output; }
  void set_custom_polynomial_enable(bool enable) { _custom_polynomial_enable = enable; }
  bool get_custom_polynomial_enable() const { return _custom_polynomial_enable; }

  // Custom taps, stage numbers 1..63 in any order. Only with custom polynomial enable on; the
  // list must be non-empty, without repeats, without 0 and with its largest tap below 64. An
  // accepted list is stored largest first and the register set to all ones for its length.
  // A refusal reports, returns false and changes nothing.
  bool set_prbs_primitive_polynomial(const std::vector<uint32>& taps);
  // The taps in use, largest first. Generation reloads them from the table unless custom taps
  // are enabled and set.
  const std::vector<uint32>& get_taps() const { return _taps; }

  // Clears `bits` and fills it with `count` outputs, starting from the stored register, which is
  // left as it was. Returns the register value after the last step (the seed for count 0). A
  // count above max_generate_bits, or no taps (unknown type), is reported and gives 0 with
  // `bits` empty. Non-const because it reloads the table taps as described at get_taps.
  uint64 generate(uint32 count, std::vector<std::uint8_t>& bits);
  // generate with count 2^length - 1: one whole period of a maximal register. Lengths above 31
  // are refused with a report, 0 and `bits` empty.
  uint64 generate_full_period(std::vector<std::uint8_t>& bits);

  // The primitive polynomial table: taps for lengths 3, 5, 7, 9, 11, 13, 15, 20, 23 and 31. Any
  // other length is reported and leaves `taps` empty.
  static void _update_primitive_polynomial(uint32 length, std::vector<uint32>& taps);
  // Register length of PRBS type 0..5; 0 with a report for another type.
  static uint32 _get_lfsr_length(uint32 type);

 private:
  // Replaces the taps by the table taps of the type's length (empty for an unknown type).
  void _load_table_taps();

  uint32 _prbs_type = 0;
  uint64 _register = 127;
  bool _feedback_output = false;
  bool _invert_output = false;
  bool _custom_polynomial_enable = false;
  std::vector<uint32> _taps;
};

}  // namespace nal::common_lib

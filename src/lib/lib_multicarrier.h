#pragma once
// Copies of a waveform on up to 32 carriers: each copy is shifted by its offset from the centre,
// attenuated by its level and, when asked, turned by a random start phase; the copies are summed.
//
// Random phases are whole radians, 0 to 6, drawn from a generator of this object's own: a seed of
// 0 takes the clock at every call, any other seed gives the same phases at every call, so a
// waveform can be made again bit for bit. A plain copyable value; one thread uses it at a time.

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_multicarrier_t {
 public:
  static constexpr uint32 max_carrier_number = 32;

  void set_enable(bool enable) { _enable = enable; }
  bool get_enable() const { return _enable; }
  void set_random_phase(bool random) { _random_phase = random; }
  bool get_random_phase() const { return _random_phase; }
  // 0: from the clock.
  void set_seed(uint32 seed) { _seed = seed; }
  uint32 get_seed() const { return _seed; }

  // Offsets in Hz from the centre. False for an empty array; otherwise the first 32 entries are
  // kept and the levels fitted to them.
  bool set_carrier_offset_arr(const lib_fp_data_arr_t& offsets);
  const lib_fp_data_arr_t& get_carrier_offset_arr() const { return _carrier_offset_arr; }
  // Levels in dB, never above 0 (a positive level is stored as 0.0). False for an empty array;
  // otherwise fitted to the offsets: extended with the last level, or cut.
  bool set_carrier_level_arr(const lib_fp_data_arr_t& levels);
  const lib_fp_data_arr_t& get_carrier_level_arr() const { return _carrier_level_arr; }

  // Flags off, seed 0, one carrier at 0 Hz and 0 dB.
  void reset();

  // `out` gets `samples` summed over the carriers, or a copy of them when disabled. An offset
  // beyond half the sample rate in magnitude (or a rate not above 0) is reported and gives a copy
  // of `samples` and false.
  bool deal_multicarrier(fp64 sample_rate, const lib_iq_data_arr_t& samples,
                         lib_iq_data_arr_t& out) const;

 private:
  void _fit_carrier_level_arr();

  bool _enable = false;
  bool _random_phase = false;
  lib_fp_data_arr_t _carrier_offset_arr{0.0};
  lib_fp_data_arr_t _carrier_level_arr{0.0};
  uint32 _seed = 0;
};

}  // namespace nal::common_lib

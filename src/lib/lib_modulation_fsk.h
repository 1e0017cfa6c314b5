#pragma once
// Continuous-phase frequency shift keying (2/4/8/16FSK and MSK): symbols become frequency
// deviations, are shaped, and integrate into a constant-envelope phase whose left-over at the end
// is spread evenly over the waveform, so that a looped replay has no phase jump.

#include "lib/lib_constellation_fsk.h"
#include "lib/lib_modulation_base.h"

namespace nal::common_lib {

class lib_modulation_fsk_t : public lib_modulation_base_t {
 public:
  lib_modulation_fsk_t();
  lib_modulation_fsk_t(const lib_modulation_fsk_t&) = default;
  lib_modulation_fsk_t& operator=(const lib_modulation_fsk_t&) = default;

  // Only false is accepted: FSK maps never use Gray numbering.
  bool set_gray_code_enable(bool enable) override;
  // Half sine is refused.
  bool set_filter_type(filter_type_t type) override;
  void deal_modulation() override;
  void reset_constellation_inst() override {}
  // Filter None copies; any other pulse is brought to unit DC gain before cyclic filtering, so
  // that a held symbol keeps its deviation.
  bool deal_pulse_shaping(const lib_iq_data_arr_t& in, lib_iq_data_arr_t& out) override;

  // The phase integration of a shaped deviation stream (real parts, in units of the maximum
  // deviation) into unit-magnitude samples. `step` is the phase turned by one sample at full
  // deviation, in radians. Needs at least 2 samples.
  static void integrate_phase(const lib_iq_data_arr_t& deviations, fp64 step,
                              lib_iq_data_arr_t& out);

 protected:
  lib_constellation_base_t* _current_constellation() override { return &_fsk; }
  const lib_constellation_base_t* _current_constellation() const override { return &_fsk; }

 private:
  // The shaped deviation stream computed at the output rate (hold and filter folded into one
  // pulse); false when the literal road must be taken.
  bool _shape_at_output_rate(const lib_iq_data_arr_t& points, lib_iq_data_arr_t& shaped);
  // Radians per sample at full deviation: pi/2 per symbol for MSK, 2 pi deviation / rate else.
  fp64 _phase_step() const;

  lib_constellation_fsk_t _fsk;
};

}  // namespace nal::common_lib

#include "lib/lib_multicarrier.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <random>

#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal::common_lib {

bool lib_multicarrier_t::set_carrier_offset_arr(const lib_fp_data_arr_t& offsets) {
  if (offsets.empty()) {
    return false;
  }
  _carrier_offset_arr.assign(
      offsets.begin(), offsets.begin() + std::min<std::size_t>(offsets.size(), max_carrier_number));
  _fit_carrier_level_arr();
  return true;
}

bool lib_multicarrier_t::set_carrier_level_arr(const lib_fp_data_arr_t& levels) {
  if (levels.empty()) {
    return false;
  }
  _carrier_level_arr = levels;
  for (fp64& level : _carrier_level_arr) {
    level = std::min(level, 0.0);
  }
  _fit_carrier_level_arr();
  return true;
}

void lib_multicarrier_t::_fit_carrier_level_arr() {
  const fp64 last = _carrier_level_arr.empty() ? 0.0 : _carrier_level_arr.back();
  _carrier_level_arr.resize(_carrier_offset_arr.size(), last);
}

void lib_multicarrier_t::reset() {
  *this = lib_multicarrier_t();
}

bool lib_multicarrier_t::deal_multicarrier(fp64 sample_rate, const lib_iq_data_arr_t& samples,
                                           lib_iq_data_arr_t& out) const {
  out.clear();
  if (!_enable) {
    out = samples;
    return true;
  }
  std::mt19937 generator(_seed != 0 ? _seed : static_cast<uint32>(std::time(nullptr)));
  out.assign(samples.size(), 0.0);
  lib_iq_data_arr_t carrier;
  for (std::size_t k = 0; k < _carrier_offset_arr.size(); ++k) {
    const fp64 offset = _carrier_offset_arr[k];
    if (!(sample_rate > 0.0) || !(std::fabs(offset) <= 0.5 * sample_rate)) {
      lib_report(
          "lib_multicarrier_t::deal_multicarrier Report : Carrier Freq Offset Out of Range!");
      out = samples;
      return false;
    }
    // Whole radians only: the integer quotient gives 0 to 6.
    const fp64 phase = _random_phase ? static_cast<fp64>((generator() % 6283) / 1000) : 0.0;
    carrier = samples;
    plib_t::apply_phase_ramp(carrier, offset / sample_rate, phase);
    const fp64 gain = plib_t::db_to_amplitude(_carrier_level_arr[k]);
    for (std::size_t i = 0; i < out.size(); ++i) {
      out[i] = {out[i].real() + carrier[i].real() * gain, out[i].imag() + carrier[i].imag() * gain};
    }
  }
  return true;
}

}  // namespace nal::common_lib

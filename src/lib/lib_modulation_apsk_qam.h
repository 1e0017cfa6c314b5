#pragma once
// The modulator of the linear families: ASK, PR-ASK, PSK, OQPSK, DPSK, pi/4 and pi/8 DPSK, APSK
// and QAM. It owns one constellation of each class and switches to the one that supports the
// requested type, carrying its Gray and filter settings over.

#include <array>

#include "lib/lib_constellation_apsk.h"
#include "lib/lib_constellation_ask.h"
#include "lib/lib_constellation_dpsk.h"
#include "lib/lib_constellation_hdpsk.h"
#include "lib/lib_constellation_oqpsk.h"
#include "lib/lib_constellation_pr_ask.h"
#include "lib/lib_constellation_psk.h"
#include "lib/lib_constellation_qam.h"
#include "lib/lib_modulation_base.h"

namespace nal::common_lib {

class lib_modulation_apsk_qam_t : public lib_modulation_base_t {
 public:
  lib_modulation_apsk_qam_t();
  lib_modulation_apsk_qam_t(const lib_modulation_apsk_qam_t&) = default;
  lib_modulation_apsk_qam_t& operator=(const lib_modulation_apsk_qam_t&) = default;

  // Switches constellation class when needed, then repairs what the new type cannot take: OQPSK
  // needs an even ratio and no Gaussian pulse; only OQPSK takes the half-sine pulse.
  bool set_constellation_type(modulation_type_t type) override;
  // OQPSK refuses Gaussian; every other type refuses half sine.
  bool set_filter_type(filter_type_t type) override;
  // OQPSK raises an odd ratio by one.
  bool set_oversampling_ratio(uint32 ratio) override;
  void reset_constellation_inst() override { _current = 0; }

  // Default map of a linear type (0..25) with its own point count; empty for other types.
  static lib_constellation_map_t get_default_constellation_map(modulation_type_t type, bool gray);

 protected:
  lib_constellation_base_t* _current_constellation() override { return _owned()[_current]; }
  const lib_constellation_base_t* _current_constellation() const override {
    return const_cast<lib_modulation_apsk_qam_t*>(this)->_owned()[_current];
  }

 private:
  static constexpr std::size_t owned_count = 8;
  std::array<lib_constellation_base_t*, owned_count> _owned();
  void _repair_ratio();
  void _repair_filter();

  lib_constellation_ask_t _ask;
  lib_constellation_pr_ask_t _pr_ask;
  lib_constellation_psk_t _psk;
  lib_constellation_oqpsk_t _oqpsk;
  lib_constellation_dpsk_t _dpsk;
  lib_constellation_hdpsk_t _hdpsk;
  lib_constellation_apsk_t _apsk;
  lib_constellation_qam_t _qam;
  std::size_t _current = 0;
};

}  // namespace nal::common_lib

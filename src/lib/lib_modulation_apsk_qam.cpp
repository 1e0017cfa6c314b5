#include "lib/lib_modulation_apsk_qam.h"

#include "lib/lib_report.h"

namespace nal::common_lib {

lib_modulation_apsk_qam_t::lib_modulation_apsk_qam_t() : lib_modulation_base_t(MODULATOR_APSK_QAM) {
  _symbol_data.set_bits_per_symbol(_current_constellation()->get_bit_number());
  for (auto* constellation : _owned()) {
    constellation->set_filter_type(get_filter_type());
  }
}

std::array<lib_constellation_base_t*, lib_modulation_apsk_qam_t::owned_count>
lib_modulation_apsk_qam_t::_owned() {
  return {&_ask, &_pr_ask, &_psk, &_oqpsk, &_dpsk, &_hdpsk, &_apsk, &_qam};
}

bool lib_modulation_apsk_qam_t::set_constellation_type(modulation_type_t type) {
  lib_constellation_base_t* old = _current_constellation();
  if (!old->is_constellation_type_supported(type)) {
    const auto owned = _owned();
    for (std::size_t i = 0; i < owned.size(); ++i) {
      if (owned[i]->is_constellation_type_supported(type)) {
        owned[i]->set_constellation_type(type);
        owned[i]->copy_setting(*old);
        _current = i;
        break;
      }
    }
  }
  const bool done = lib_modulation_base_t::set_constellation_type(type);
  _repair_ratio();
  _repair_filter();
  return done;
}

bool lib_modulation_apsk_qam_t::set_filter_type(filter_type_t type) {
  const bool offset = get_constellation_type() == MOD_OQPSK;
  if (offset && type == FILTER_GAUSSIAN) {
    lib_report(
        "lib_modulation_apsk_qam_t::set_filter_type Report: Current modulation type DON'T support "
        "gaussian filter!");
    return false;
  }
  if (!offset && type == FILTER_HALF_SINE) {
    lib_report(
        "lib_modulation_apsk_qam_t::set_filter_type Report: Current modulation type DON'T support "
        "half-sine filter!");
    return false;
  }
  return lib_modulation_base_t::set_filter_type(type);
}

bool lib_modulation_apsk_qam_t::set_oversampling_ratio(uint32 ratio) {
  const bool done = lib_modulation_base_t::set_oversampling_ratio(ratio);
  _repair_ratio();
  return done;
}

void lib_modulation_apsk_qam_t::_repair_ratio() {
  if (get_constellation_type() == MOD_OQPSK && _oversampling_ratio % 2 != 0) {
    lib_modulation_base_t::set_oversampling_ratio(_oversampling_ratio + 1);
  }
}

void lib_modulation_apsk_qam_t::_repair_filter() {
  const bool offset = get_constellation_type() == MOD_OQPSK;
  if (offset && get_filter_type() == FILTER_GAUSSIAN) {
    lib_modulation_base_t::set_filter_type(FILTER_HALF_SINE);
  } else if (!offset && get_filter_type() == FILTER_HALF_SINE) {
    lib_modulation_base_t::set_filter_type(FILTER_ROOT_COSINE);
  }
}

lib_constellation_map_t lib_modulation_apsk_qam_t::get_default_constellation_map(
    modulation_type_t type, bool gray) {
  lib_modulation_apsk_qam_t modulator;
  if (type > MOD_4096QAM || !modulator.set_constellation_type(type)) {
    return {};
  }
  modulator.set_gray_code_enable(gray);
  modulator._current_constellation()->generate_constellation();
  return modulator.get_constellation_map();
}

}  // namespace nal::common_lib

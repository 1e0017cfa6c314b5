#include "lib/lib_crest_factor_reduce_setting.h"

#include <algorithm>
#include <cmath>

#include "lib/lib_report.h"

namespace nal::common_lib {

lib_crest_factor_reduce_setting_t::lib_crest_factor_reduce_setting_t() {
  init_filter_mask_data(8e7, 2e7);
}

bool lib_crest_factor_reduce_setting_t::init_filter_mask_data(fp64 stop_frequency, fp64 bandwidth) {
  const fp64 edge = 0.5 * bandwidth;
  if (!(bandwidth >= 1e-12) || !(stop_frequency - edge >= -1e-12)) {
    lib_report(
        "lib_crest_factor_reduce_setting_t::init_filter_mask_data Report : Illegal input "
        "parameter!");
    return false;
  }
  const fp64 stop = std::max(stop_frequency, 1.25 * edge);
  _filter_mask = {{-stop, -100.0}, {-edge, 0.0}, {edge, 0.0}, {stop, -100.0}};
  return true;
}

bool lib_crest_factor_reduce_setting_t::update_filter_mask(fp64 stop_frequency, fp64 bandwidth) {
  if (!init_filter_mask_data(stop_frequency, bandwidth)) {
    return false;
  }
  _enable = false;
  set_target_ratio(default_target_db);
  set_iteration_number(default_iteration_number);
  set_cancel_percent(default_cancel_percent);
  set_block_size(default_block_size);
  return true;
}

bool lib_crest_factor_reduce_setting_t::deal_filter_mask_normalize(fp64 sample_rate) {
  const fp64 nyquist = std::trunc(0.5 * sample_rate);
  lib_iq_data_arr_t normalized = _filter_mask;
  for (lib_iq_sample_t& point : normalized) {
    point.real(point.real() / nyquist);
    if (!(std::fabs(point.real()) <= 1.0)) {
      lib_report(
          "lib_crest_factor_reduce_setting_t::deal_filter_mask_normalize Report : Error Sample "
          "Rate!");
      return false;
    }
  }
  _filter_mask = normalized;
  return true;
}

void lib_crest_factor_reduce_setting_t::set_target_ratio(fp64 decibels) {
  if (!std::isnan(decibels)) {
    _target_ratio = std::clamp(decibels, target_min_db, target_max_db);
  }
}

void lib_crest_factor_reduce_setting_t::set_iteration_number(uint32 number) {
  _iteration_number = std::clamp(number, iteration_min, iteration_max);
}

void lib_crest_factor_reduce_setting_t::set_cancel_percent(fp64 percent) {
  if (!std::isnan(percent)) {
    _cancel_percent = std::clamp(percent, cancel_percent_min, cancel_percent_max);
  }
}

void lib_crest_factor_reduce_setting_t::set_block_size(uint32 size) {
  _block_size = std::clamp(size, block_size_min, block_size_max);
}

}  // namespace nal::common_lib

#include "lib/lib_oversampling.h"

#include "lib/lib_report.h"

namespace nal::common_lib {

void lib_oversampling_t::deal_oversampling(const lib_iq_data_arr_t& samples, uint32 ratio,
                                           lib_iq_data_arr_t& out, uint32 kind) {
  switch (kind) {
    case OVERSAMPLING_INSERT_ZERO:
      _deal_insert_zero_oversampling(samples, ratio, out);
      return;
    case OVERSAMPLING_HOLDER:
      _deal_holder_oversampling(samples, ratio, out);
      return;
    case OVERSAMPLING_OFFSET:
      deal_offset_oversampling(samples, ratio, out);
      return;
    default:
      return;
  }
}

void lib_oversampling_t::_deal_insert_zero_oversampling(const lib_iq_data_arr_t& samples,
                                                        uint32 ratio, lib_iq_data_arr_t& out) {
  out.clear();
  if (ratio == 0) {
    lib_report(
        "lib_oversampling_t::_deal_insert_zero_oversampling Report: Oversample Rate must be "
        "positive!");
    return;
  }
  out.assign(samples.size() * ratio, lib_iq_sample_t(0.0, 0.0));
  for (std::size_t i = 0; i < samples.size(); ++i) {
    out[i * ratio] = samples[i];
  }
}

void lib_oversampling_t::_deal_holder_oversampling(const lib_iq_data_arr_t& samples, uint32 ratio,
                                                   lib_iq_data_arr_t& out) {
  out.clear();
  if (ratio == 0) {
    lib_report(
        "lib_oversampling_t::_deal_holder_oversampling Report: Oversample Rate must be positive!");
    return;
  }
  out.reserve(samples.size() * ratio);
  for (const auto& sample : samples) {
    out.insert(out.end(), ratio, sample);
  }
}

void lib_oversampling_t::deal_offset_oversampling(const lib_iq_data_arr_t& samples, uint32 ratio,
                                                  lib_iq_data_arr_t& out) {
  out.clear();
  if (ratio == 0 || ratio % 2 != 0) {
    lib_report(
        "lib_oversampling_t::deal_offset_oversampling Report: Oversampling Ratio must be positive "
        "and even! But current value = ",
        static_cast<long long>(ratio));
    return;
  }
  out.assign(samples.size() * ratio, lib_iq_sample_t(0.0, 0.0));
  for (std::size_t i = 0; i < samples.size(); ++i) {
    out[i * ratio] = {samples[i].real(), 0.0};
    out[i * ratio + ratio / 2] = {0.0, samples[i].imag()};
  }
}

}  // namespace nal::common_lib

#pragma once
// Builds one OFDM symbol in time: centres a row of subcarrier values in the (oversampled)
// spectrum, transforms it, and adds the cyclic prefix and suffix of that symbol. Plain value with
// setters; copyable; no locks, one caller at a time. Transforms go through the shared plan cache.
//
// Lengths in samples after oversampling: useful n = fft_length * oversampling_ratio, prefix
// cp = round(ratio * n), suffix cs likewise, symbol cp + n + cs.

#include "lib/lib_ofdm_cyclic_config.h"
#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_ofdm_symbol_data_generator_t {
 public:
  // A power of two; anything else is reported and leaves the length unchanged.
  bool set_fft_length(uint32 fft_length);
  // Symbols in the frame, at least 1. Indices at or above it leave both cyclic configs.
  bool set_symbol_number(uint32 symbol_number);
  // Time samples per base sample, at least 1.
  bool set_oversampling_ratio(uint32 oversampling_ratio);
  // Refused, with the stored config kept, when an index is not below the symbol number or stands
  // in two entries. Every entry must list at least one index: an empty list raises
  // std::out_of_range, as any checked access of the library does.
  bool set_cyclic_prefix(const lib_ofdm_cyclic_config_t& config);
  bool set_cyclic_suffix(const lib_ofdm_cyclic_config_t& config);

  uint32 get_fft_length() const { return _fft_length; }
  uint32 get_symbol_number() const { return _symbol_number; }
  uint32 get_oversampling_ratio() const { return _oversampling_ratio; }
  const lib_ofdm_cyclic_config_t& get_cyclic_prefix() const { return _cyclic_prefix; }
  const lib_ofdm_cyclic_config_t& get_cyclic_suffix() const { return _cyclic_suffix; }

  uint32 get_prefix_length(uint32 symbol_index) const;
  uint32 get_suffix_length(uint32 symbol_index) const;
  uint32 get_symbol_length(uint32 symbol_index) const;
  uint32 get_useful_length() const;

  // Replaces `samples` with symbol `symbol_index` of `row`. The row holds subcarriers from the
  // lowest frequency up; column size() / 2 is the carrier at 0 Hz when the row spans the whole
  // FFT. A shorter row is centred; one longer than the useful length is reported and gives false.
  // The inverse transform divides by n and the result is multiplied by the oversampling ratio,
  // so that the level does not depend on the oversampling.
  bool deal_symbol_data(uint32 symbol_index, const lib_iq_data_arr_t& row,
                        lib_iq_data_arr_t& samples) const;
  // Prepends the last cp and appends the first cs samples of a useful part of n samples. Another
  // length is reported, left unchanged and gives false.
  bool _deal_cyclic_extension(uint32 symbol_index, lib_iq_data_arr_t& samples) const;

 private:
  bool _accept_cyclic_config(const lib_ofdm_cyclic_config_t& config,
                             lib_ofdm_cyclic_config_t& stored, const char* method) const;

  uint32 _fft_length = 64;
  uint32 _symbol_number = 64;
  uint32 _oversampling_ratio = 1;
  lib_ofdm_cyclic_config_t _cyclic_prefix;
  lib_ofdm_cyclic_config_t _cyclic_suffix;
};

}  // namespace nal::common_lib

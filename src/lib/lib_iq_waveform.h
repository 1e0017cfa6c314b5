#pragma once
// The driver of the symbol modulators: it owns one modulator of each family, keeps one active,
// carries the shared settings over at each switch, runs it, optionally resamples the result to a
// chosen rate, and can put the baseband on a carrier. One thread at a time; copies are
// independent and continue identically.

#include "lib/lib_iq_waveform_config.h"
#include "lib/lib_modulation_apsk_qam.h"
#include "lib/lib_modulation_custom.h"
#include "lib/lib_modulation_fsk.h"

namespace nal::common_lib {

class lib_iq_waveform_t {
 public:
  lib_iq_waveform_t() = default;
  lib_iq_waveform_t(const lib_iq_waveform_t&) = default;
  lib_iq_waveform_t& operator=(const lib_iq_waveform_t&) = default;

  // Resampling target in Hz; 0 is refused.
  bool set_iq_sample_rate(uint32 rate);
  // Rate of the carrier-modulated output in Hz; refused below the carrier frequency.
  bool set_waveform_sample_rate(uint32 rate);
  // Carrier in Hz, above 0. A carrier below the IQ rate is accepted with a warning line.
  bool set_carrier_freq(fp64 frequency);
  void set_resample_enable(bool enable) { _resample_enable = enable; }
  bool get_resample_enable() const { return _resample_enable; }
  // The stored IQ rate when resampling, else the stored value times the oversampling ratio.
  uint32 get_iq_sample_rate() const;
  fp64 get_carrier_freq() const { return _carrier_frequency; }
  uint32 get_waveform_sample_rate() const { return _waveform_sample_rate; }

  // Makes the modulator of `type` (modulator_type_t) active, copying the shared settings to it.
  bool set_modulation_type(uint32 type);
  // Switches to the configuration's modulator and applies its modulator settings.
  bool set_modulation_config(const lib_iq_waveform_config_t& config);
  // set_modulation_config, then resampling, IQ rate, carrier and waveform rate; results joined.
  bool set_iq_waveform_config(const lib_iq_waveform_config_t& config);

  // Runs the active modulator into the baseband array, resampled when enabled.
  void generate_iq_signal();
  // generate_iq_signal, then the carrier-modulated signal.
  void generate_modulated_signal();

  lib_modulation_base_t& active_modulator() { return *_modulators()[_active]; }
  const lib_iq_data_arr_t& get_baseband_iq() const { return _baseband_iq; }
  // Hands the baseband array over to `out` without a copy (its old content is dropped), for an
  // owner that keeps the samples itself; the baseband and its spectrum are empty afterwards.
  void release_baseband_iq(lib_iq_data_arr_t& out);
  // Peak-normalised spectrum of the baseband (rectangular window, zero-padded to a power of 2,
  // zero frequency in the middle). Computed on first access after each generation.
  const lib_iq_data_arr_t& get_spectrum();
  const lib_iq_data_arr_t& get_modulated_signal() const { return _modulated_signal; }

 private:
  static constexpr std::size_t modulator_count = 3;
  std::array<lib_modulation_base_t*, modulator_count> _modulators();
  void _refresh_modulation_fields();
  void _copy_modulation_config(lib_modulation_base_t& target);
  void _generate_modulated_signal();

  uint32 _oversampling = 2;
  uint32 _symbol_rate = 5000;
  bool _resample_enable = false;
  uint32 _iq_sample_rate = 2000000;
  fp64 _carrier_frequency = 20000000.0;
  uint32 _waveform_sample_rate = 400000000;
  lib_modulation_apsk_qam_t _apsk_qam;
  lib_modulation_fsk_t _fsk;
  lib_modulation_custom_t _custom;
  std::size_t _active = 0;  // index into _modulators(): APSK/QAM, FSK, custom
  lib_iq_data_arr_t _baseband_iq;
  bool _spectrum_ready = false;
  lib_iq_data_arr_t _spectrum;
  lib_iq_data_arr_t _modulated_signal;
};

}  // namespace nal::common_lib

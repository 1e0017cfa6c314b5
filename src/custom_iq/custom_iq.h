#pragma once
// The model and computing core of the free-form single-carrier tab: every parameter of the tab
// with its limits, the cascades that keep dependent limits and derived values consistent after
// each change, and update_waveform(), which computes the samples with the symbol modulators,
// the multitone bank or the chirp generator.
//
// Every setter returns whether the value changed. A setter given the stored value does nothing;
// otherwise it clamps to the current bounds, stores, calls the dirty callback with true, emits
// sig_update_ui, then runs the cascade of that parameter. Modulator types follow
// modulator_type_t: 0 APSK/QAM, 1 MFSK, 2 multitone, 3 custom constellation, 4 LFM chirp.
//
// Used by the GUI thread alone: no locks, and every signal is meant for direct connections.

#include <QObject>
#include <functional>
#include <string>
#include <vector>

#include "custom_iq/custom_iq_bounded_value.h"
#include "lib/lib_enum_types.h"
#include "lib/lib_iq_waveform.h"
#include "lib/lib_lfm.h"
#include "lib/lib_multitone.h"
#include "lib/lib_multitone_config.h"
#include "lib/lib_waveform_segment.h"
#include "lib/plib_lfm_custom_sweep_config.h"

namespace nal {

class custom_iq_t : public QObject {
  Q_OBJECT

 public:
  using lfm_segment_list_t = std::vector<common_lib::plib_lfm_custom_sweep_config_t>;
  // The too-large limit of one chirp, in samples.
  static constexpr fp64 max_lfm_sample_points = 3.2e7;

  explicit custom_iq_t(QObject* parent = nullptr);

  // Called with true at every change and with false when a waveform computation starts; the
  // page blinks its Update action while dirty. May be empty.
  void set_dirty_callback(std::function<void(bool)> callback);
  // Called when a chirp would exceed max_lfm_sample_points; no waveform is computed. May be empty.
  void set_too_large_callback(std::function<void()> callback);

  // Basic.
  bool set_waveform_name(const std::string& name);
  const std::string& get_waveform_name() const { return _waveform_name; }
  // 1 to 300; fixed at 1 for the multitone and LFM modulators.
  bool set_frame_number(uint32 number);
  uint32 get_frame_number() const { return _frame_number.value(); }
  const custom_iq_bounded_value_t<uint32>& get_frame_number_bounds() const { return _frame_number; }
  // Negates Q of every computed sample.
  bool set_mirror_spectrum_enable(bool enable);
  bool get_mirror_spectrum_enable() const { return _mirror_spectrum_enable; }

  // Data source.
  bool set_data_source_type(data_source_type_t type);
  data_source_type_t get_data_source_type() const { return _data_source_type; }
  // Symbols per frame, 100 to 100000.
  bool set_symbol_length(uint32 length);
  uint32 get_symbol_length() const { return _symbol_length.value(); }
  const custom_iq_bounded_value_t<uint32>& get_symbol_length_bounds() const {
    return _symbol_length;
  }
  // Symbols per second, 250 to 8e9 / oversampling.
  bool set_symbol_rate(uint64 rate);
  uint64 get_symbol_rate() const { return _symbol_rate.value(); }
  const custom_iq_bounded_value_t<uint64>& get_symbol_rate_bounds() const { return _symbol_rate; }
  // Text of '0' and '1', used by the user and custom data sources; any other character is a 1.
  bool set_custom_bits(const std::string& bits);
  const std::string& get_custom_bits() const { return _custom_bits; }
  // Derived from the modulation.
  uint32 get_bits_per_symbol() const { return _bits_per_symbol; }

  // Modulation.
  bool set_modulator_type(modulator_type_t type);
  modulator_type_t get_modulator_type() const { return _modulator_type; }
  // 0 to 25.
  bool set_apsk_qam_type(modulation_type_t type);
  modulation_type_t get_apsk_qam_type() const;
  bool set_gray_code_enable(bool enable);
  bool get_gray_code_enable() const { return _gray_code_enable; }
  // 26 (2FSK) to 30 (16FSK).
  bool set_mfsk_type(modulation_type_t type);
  modulation_type_t get_mfsk_type() const;
  // Hz, 0 to 0.8 x symbol rate x oversampling.
  bool set_fsk_deviation(fp64 deviation);
  fp64 get_fsk_deviation() const { return _fsk_deviation.value(); }
  const custom_iq_bounded_value_t<fp64>& get_fsk_deviation_bounds() const { return _fsk_deviation; }
  // False under MSK and for modulators other than MFSK.
  bool is_fsk_deviation_editable() const { return _fsk_deviation_editable; }
  // Symbol to deviation in Hz (real part) of the current MFSK type.
  const lib_constellation_map_t& get_fsk_deviation_table() const { return _fsk_deviation_table; }
  // Default map of the current APSK/QAM type and Gray flag, for display.
  const lib_constellation_map_t& get_default_constellation() const {
    return _default_constellation;
  }

  // Multitone. Mode false: tones from span / (2 n) to span / 2; true: from start to stop.
  bool set_multitone_mode(bool start_stop);
  bool get_multitone_mode() const { return _multitone_mode; }
  // Hz, 500 to 4e9.
  bool set_multitone_sample_rate(fp64 rate);
  fp64 get_multitone_sample_rate() const { return _multitone_sample_rate.value(); }
  const custom_iq_bounded_value_t<fp64>& get_multitone_sample_rate_bounds() const {
    return _multitone_sample_rate;
  }
  // Hz, 0 to rate / 1.28.
  bool set_multitone_span(fp64 span);
  fp64 get_multitone_span() const { return _multitone_span.value(); }
  const custom_iq_bounded_value_t<fp64>& get_multitone_span_bounds() const {
    return _multitone_span;
  }
  // Hz, 0 to rate / 2.56; start never stays above stop.
  bool set_multitone_start(fp64 frequency);
  fp64 get_multitone_start() const { return _multitone_start.value(); }
  const custom_iq_bounded_value_t<fp64>& get_multitone_start_bounds() const {
    return _multitone_start;
  }
  bool set_multitone_stop(fp64 frequency);
  fp64 get_multitone_stop() const { return _multitone_stop.value(); }
  const custom_iq_bounded_value_t<fp64>& get_multitone_stop_bounds() const {
    return _multitone_stop;
  }
  // 1 to 10000.
  bool set_multitone_number(uint32 number);
  uint32 get_multitone_number() const { return _multitone_number.value(); }
  const custom_iq_bounded_value_t<uint32>& get_multitone_number_bounds() const {
    return _multitone_number;
  }
  bool set_multitone_single_side(bool enable);
  bool get_multitone_single_side() const { return _multitone_single_side; }
  // Tones in [notch start, notch stop) are left out.
  bool set_multitone_notch_enable(bool enable);
  bool get_multitone_notch_enable() const { return _multitone_notch_enable; }
  // Hz; notch start ranges over 0 to notch stop, notch stop over notch start to rate / 2.
  bool set_multitone_notch_start(fp64 frequency);
  fp64 get_multitone_notch_start() const { return _multitone_notch_start.value(); }
  const custom_iq_bounded_value_t<fp64>& get_multitone_notch_start_bounds() const {
    return _multitone_notch_start;
  }
  bool set_multitone_notch_stop(fp64 frequency);
  fp64 get_multitone_notch_stop() const { return _multitone_notch_stop.value(); }
  const custom_iq_bounded_value_t<fp64>& get_multitone_notch_stop_bounds() const {
    return _multitone_notch_stop;
  }

  // Custom constellation.
  bool set_custom_constellation(const lib_constellation_map_t& map);
  const lib_constellation_map_t& get_custom_constellation() const { return _custom_constellation; }
  // Commas are removed: the name goes into the comma-separated waveform file header.
  bool set_custom_constellation_name(const std::string& name);
  const std::string& get_custom_constellation_name() const { return _custom_constellation_name; }
  bool set_show_constellation_symbol(bool show);
  bool get_show_constellation_symbol() const { return _show_constellation_symbol; }

  // LFM chirp. Mode false: one sweep of the bandwidth around the offset; true: the segment list.
  bool set_lfm_mode(bool custom_segments);
  bool get_lfm_mode() const { return _lfm_mode; }
  // Hz, 500 to 1.2e10.
  bool set_lfm_sample_rate(fp64 rate);
  fp64 get_lfm_sample_rate() const { return _lfm_sample_rate.value(); }
  const custom_iq_bounded_value_t<fp64>& get_lfm_sample_rate_bounds() const {
    return _lfm_sample_rate;
  }
  // Seconds, 1e-8 to 1.
  bool set_lfm_sweep_time(fp64 seconds);
  fp64 get_lfm_sweep_time() const { return _lfm_sweep_time.value(); }
  const custom_iq_bounded_value_t<fp64>& get_lfm_sweep_time_bounds() const {
    return _lfm_sweep_time;
  }
  // Hz, 100 to the LFM sample rate.
  bool set_lfm_bandwidth(fp64 bandwidth);
  fp64 get_lfm_bandwidth() const { return _lfm_bandwidth.value(); }
  const custom_iq_bounded_value_t<fp64>& get_lfm_bandwidth_bounds() const { return _lfm_bandwidth; }
  // Hz, within plus and minus half the bandwidth.
  bool set_lfm_offset(fp64 offset);
  fp64 get_lfm_offset() const { return _lfm_offset.value(); }
  const custom_iq_bounded_value_t<fp64>& get_lfm_offset_bounds() const { return _lfm_offset; }
  bool set_lfm_sweep_type(lfm_sweep_type_t type);
  lfm_sweep_type_t get_lfm_sweep_type() const { return _lfm_sweep_type; }
  // 1 to 100 rows; new rows are (0, 0, 0.001).
  bool set_lfm_segments(uint32 segments);
  uint32 get_lfm_segments() const { return _lfm_segments.value(); }
  const custom_iq_bounded_value_t<uint32>& get_lfm_segments_bounds() const { return _lfm_segments; }
  // Seconds, the sum of the segment durations, 1e-8 to 100.
  fp64 get_lfm_total_time() const { return _lfm_total_time.value(); }
  // Stores the list as it stands (a recalled state), without clamping its rows.
  bool set_lfm_segment_list(const lfm_segment_list_t& list);
  const lfm_segment_list_t& get_lfm_segment_list() const { return _lfm_segment_list; }
  // Writes the start (stop false) or stop frequency of one row, clamped to plus and minus half
  // the LFM sample rate. A clamp re-emits sig_update_ui so that the table shows it.
  bool set_frequency(uint32 index, fp64 value, bool stop);
  // Writes one row's duration, clamped to 1e-8 to 1 second, and sums the total time.
  bool set_duration_time(uint32 index, fp64 value);

  // Filter. Gaussian is refused under OQPSK and Half Sine under every other modulation; MSK
  // always runs Gaussian.
  bool set_filter_type(filter_type_t type);
  filter_type_t get_filter_type() const { return _filter_type; }
  // Roll-off 0.01 to 1, or bandwidth-time product 0.1 to 5 for Gaussian.
  bool set_filter_alpha(fp64 alpha);
  fp64 get_filter_alpha() const { return _filter_alpha.value(); }
  const custom_iq_bounded_value_t<fp64>& get_filter_alpha_bounds() const { return _filter_alpha; }
  bool is_filter_alpha_enabled() const { return _filter_alpha_enabled; }
  // Symbols, 1 to the smaller of symbol length and 512.
  bool set_filter_length(uint32 length);
  uint32 get_filter_length() const { return _filter_length.value(); }
  const custom_iq_bounded_value_t<uint32>& get_filter_length_bounds() const {
    return _filter_length;
  }
  bool is_filter_length_enabled() const { return _filter_length_enabled; }
  // Samples per symbol, 2 to 32 (8 to 32 with Half Sine), capped by 8e9 / symbol rate. OQPSK
  // keeps an odd request out.
  bool set_oversampling(uint32 oversampling);
  uint32 get_oversampling() const { return _oversampling.value(); }
  const custom_iq_bounded_value_t<uint32>& get_oversampling_bounds() const { return _oversampling; }

  // Derived duration of the waveform in seconds.
  fp64 get_waveform_length() const { return _waveform_length; }
  uint64 get_total_sample_points() const;
  // Hz: the multitone or LFM rate, otherwise symbol rate x oversampling.
  fp64 get_sample_rate() const;
  // Constellation name for the waveform file header.
  std::string get_constellation_text() const;
  // False when the durations of `list` at `rate` give more than max_lfm_sample_points.
  static bool is_custom_sweep_size_valid(fp64 rate, const lfm_segment_list_t& list);

  // Sets every parameter to the tab's starting values and computes the waveform once.
  void preset();
  // Computes the samples of the current parameters into the waveform array.
  void update_waveform();
  const lib_iq_data_arr_t& get_waveform_data() const { return _waveform; }
  // The frames of the computed waveform, "frame 1" onwards, in equal shares of its samples (the
  // frames of one run have the same symbol count; multitone and chirp waveforms are one frame).
  lib_waveform_annotations_t get_frame_segments() const;

 signals:
  void sig_update_ui();
  void sig_update_constellation();
  void sig_update_waveform_data();
  void sig_update_fsk_dev_table_data();

 private:
  template <typename value_t>
  bool _set_bounded(custom_iq_bounded_value_t<value_t>& field, value_t value) {
    if (value == field.value()) {
      return false;
    }
    field.store(value);
    _mark_changed();
    return true;
  }
  template <typename value_t>
  bool _set_plain(value_t& field, const value_t& value) {
    if (value == field) {
      return false;
    }
    field = value;
    _mark_changed();
    return true;
  }
  void _mark_changed();
  void _call_dirty(bool dirty);

  bool _is_oqpsk() const;
  bool _is_msk() const;

  void _rebuild_default_constellation();
  void _rebuild_deviation_table();
  void _update_bits_per_symbol();
  void _update_deviation_range();
  void _update_frame_range();
  void _update_length();
  fp64 _estimate_multitone_length() const;
  void _update_filter_length_range();
  void _apply_filter_type(filter_type_t type);
  void _apply_filter_constraint();
  void _apply_symbol_rate_cap();
  void _update_multitone_notch_ranges();
  void _update_lfm_offset_range();
  void _resize_lfm_segment_list();
  void _update_lfm_total_time();

  void _build_multitone_config(common_lib::lib_multitone_config_t& config) const;
  void _build_lfm_segments(lfm_segment_list_t& segments) const;
  void _fill_run_record(common_lib::lib_iq_waveform_config_t& record) const;
  void _transfer_modulation_config(const common_lib::lib_iq_waveform_config_t& record,
                                   common_lib::lib_iq_waveform_config_t& config) const;
  // Generates into _waveform; false when nothing is to be shown (too large a chirp).
  bool _generate();

  std::function<void(bool)> _dirty_callback;
  std::function<void()> _too_large_callback;

  std::string _waveform_name;
  custom_iq_bounded_value_t<uint32> _frame_number{1, 300, 1};
  bool _mirror_spectrum_enable = false;

  data_source_type_t _data_source_type = DATA_SOURCE_PN7;
  custom_iq_bounded_value_t<uint32> _symbol_length{100, 100000, 100};
  custom_iq_bounded_value_t<uint64> _symbol_rate{250, 4000000000, 250};
  std::string _custom_bits;
  uint32 _bits_per_symbol = 1;

  modulator_type_t _modulator_type = MODULATOR_APSK_QAM;
  custom_iq_bounded_value_t<uint32> _apsk_qam_type{MOD_2ASK, MOD_4096QAM, MOD_2ASK};
  bool _gray_code_enable = false;
  custom_iq_bounded_value_t<uint32> _mfsk_type{MOD_2FSK, MOD_16FSK, MOD_2FSK};
  custom_iq_bounded_value_t<fp64> _fsk_deviation{0.0, 400.0, 400.0};
  bool _fsk_deviation_editable = false;
  lib_constellation_map_t _fsk_deviation_table;
  lib_constellation_map_t _default_constellation;

  bool _multitone_mode = false;
  custom_iq_bounded_value_t<fp64> _multitone_sample_rate{500.0, 4e9, 500.0};
  custom_iq_bounded_value_t<fp64> _multitone_span{0.0, 500.0 / 1.28, 0.0};
  custom_iq_bounded_value_t<fp64> _multitone_start{0.0, 500.0 / 2.56, 0.0};
  custom_iq_bounded_value_t<fp64> _multitone_stop{0.0, 500.0 / 2.56, 0.0};
  custom_iq_bounded_value_t<uint32> _multitone_number{1, 10000, 2};
  bool _multitone_single_side = false;
  bool _multitone_notch_enable = false;
  custom_iq_bounded_value_t<fp64> _multitone_notch_start{0.0, 0.0, 0.0};
  custom_iq_bounded_value_t<fp64> _multitone_notch_stop{0.0, 250.0, 0.0};

  lib_constellation_map_t _custom_constellation;
  std::string _custom_constellation_name = "NewCustom";
  bool _show_constellation_symbol = false;

  bool _lfm_mode = false;
  custom_iq_bounded_value_t<fp64> _lfm_sample_rate{500.0, 1.2e10, 500.0};
  custom_iq_bounded_value_t<fp64> _lfm_sweep_time{1e-8, 1.0, 1e-8};
  custom_iq_bounded_value_t<fp64> _lfm_bandwidth{100.0, 500.0, 0.0};
  custom_iq_bounded_value_t<fp64> _lfm_offset{-50.0, 50.0, 0.0};
  lfm_sweep_type_t _lfm_sweep_type = LFM_SWEEP_TRIANGLE;
  custom_iq_bounded_value_t<uint32> _lfm_segments{1, 100, 3};
  custom_iq_bounded_value_t<fp64> _lfm_total_time{1e-8, 100.0, 1e-8};
  lfm_segment_list_t _lfm_segment_list;

  filter_type_t _filter_type = FILTER_NONE;
  custom_iq_bounded_value_t<fp64> _filter_alpha{0.01, 1.0, 0.01};
  bool _filter_alpha_enabled = false;
  custom_iq_bounded_value_t<uint32> _filter_length{1, 100, 1};
  bool _filter_length_enabled = false;
  custom_iq_bounded_value_t<uint32> _oversampling{2, 32, 2};

  fp64 _waveform_length = 0.0;
  lib_iq_data_arr_t _waveform;
  // Frames of the run that computed _waveform.
  uint32 _waveform_frames = 0;
  common_lib::lib_iq_waveform_t _iq_waveform;
  common_lib::lib_multitone_t _multitone;
  common_lib::lib_lfm_t _lfm;
};

}  // namespace nal

// The computing half of custom_iq_t: derived length and rate, preset, and the generators.

#include <QDebug>
#include <QString>
#include <algorithm>
#include <array>
#include <complex>
#include <exception>
#include <string>

#include "custom_iq/custom_iq.h"
#include "custom_iq/plib_func.h"
#include "lib/lib_report.h"

namespace nal {

using common_lib::lib_iq_waveform_config_t;
using common_lib::lib_multitone_config_t;

namespace {
constexpr std::array<uint32, 4> multitone_transform_lengths{8192, 16384, 32768, 65536};
// A tone grid needs bins well below its spacing, but never coarser than this, in Hz.
constexpr fp64 max_multitone_bin_width = 30000.0;
constexpr fp64 multitone_bin_ratio = 0.1;
constexpr uint32 custom_constellation_code = 32;
// Data source codes of the modulator, indexed by data_source_type_t.
constexpr std::array<uint32, 7> data_source_codes{0, 1, 3, 4, 5, 6, 6};

// One line of the error block in the debug log: the label in red, the value in blue.
void log_line(const std::string& label, const std::string& value) {
  const std::string red = "\033[0;31m";
  const std::string blue = "\033[1;34m";
  const std::string reset = "\033[0m";
  std::string line = red + label + reset;
  if (!value.empty()) {
    line += " " + blue + value + reset;
  }
  qDebug().noquote() << QString::fromStdString(line);
}
}  // namespace

void custom_iq_t::_update_length() {
  switch (_modulator_type) {
    case MODULATOR_APSK_QAM:
    case MODULATOR_MFSK:
    case MODULATOR_CUSTOM:
      _waveform_length = static_cast<fp64>(_symbol_length.value()) *
                         static_cast<fp64>(_frame_number.value()) /
                         static_cast<fp64>(_symbol_rate.value());
      break;
    case MODULATOR_MULTITONE:
      _waveform_length = _estimate_multitone_length();
      break;
    case MODULATOR_LFM:
      if (_lfm_mode) {
        _waveform_length = _lfm_total_time.value();
      } else {
        const fp64 sweeps = _lfm_sweep_type == LFM_SWEEP_TRIANGLE ? 2.0 : 1.0;
        _waveform_length = sweeps * _lfm_sweep_time.value();
      }
      break;
  }
  emit sig_update_ui();
}

fp64 custom_iq_t::_estimate_multitone_length() const {
  lib_multitone_config_t config;
  _build_multitone_config(config);
  const fp64 tones = static_cast<fp64>(_multitone_number.value());
  fp64 spacing = (config.stop_frequency - config.start_frequency) / (2.0 * tones);
  const auto& survivors = config.custom_frequencies;
  if (config.custom_frequency_enable && survivors.size() >= 2) {
    const auto [lowest, highest] = std::minmax_element(survivors.begin(), survivors.end());
    spacing = (*highest - *lowest) / (2.0 * static_cast<fp64>(survivors.size()));
  }
  const fp64 limit = std::min(multitone_bin_ratio * spacing, max_multitone_bin_width);
  const fp64 rate = _multitone_sample_rate.value();
  uint32 length = multitone_transform_lengths.back();
  for (const uint32 candidate : multitone_transform_lengths) {
    if (rate / candidate <= limit) {
      length = candidate;
      break;
    }
  }
  return length / rate;
}

uint64 custom_iq_t::get_total_sample_points() const {
  switch (_modulator_type) {
    case MODULATOR_APSK_QAM:
    case MODULATOR_MFSK:
    case MODULATOR_CUSTOM:
      return static_cast<uint64>(_waveform_length * static_cast<fp64>(_symbol_rate.value()) *
                                 static_cast<fp64>(_oversampling.value()));
    case MODULATOR_MULTITONE:
      return static_cast<uint64>(_waveform_length * _multitone_sample_rate.value());
    case MODULATOR_LFM:
      return static_cast<uint64>(_waveform_length * _lfm_sample_rate.value());
  }
  return 0;
}

fp64 custom_iq_t::get_sample_rate() const {
  if (_modulator_type == MODULATOR_MULTITONE) {
    return _multitone_sample_rate.value();
  }
  if (_modulator_type == MODULATOR_LFM) {
    return _lfm_sample_rate.value();
  }
  return static_cast<fp64>(_symbol_rate.value()) * static_cast<fp64>(_oversampling.value());
}

std::string custom_iq_t::get_constellation_text() const {
  const auto& texts = common_lib::modulation_type_text_map();
  switch (_modulator_type) {
    case MODULATOR_APSK_QAM:
      return texts.at(get_apsk_qam_type());
    case MODULATOR_MFSK:
      return texts.at(get_mfsk_type());
    case MODULATOR_MULTITONE:
      return texts.at(MOD_MULTITONE2);
    case MODULATOR_CUSTOM:
      return _custom_constellation_name;
    case MODULATOR_LFM:
      break;
  }
  return "";
}

bool custom_iq_t::is_custom_sweep_size_valid(fp64 rate, const lfm_segment_list_t& list) {
  fp64 duration = 0.0;
  for (const auto& row : list) {
    duration += row.duration;
  }
  return duration * rate <= max_lfm_sample_points;
}

void custom_iq_t::preset() {
  set_waveform_name("");
  set_frame_number(1);
  set_mirror_spectrum_enable(false);
  // Intended: stored past set_data_source_type, so this step alone calls no dirty callback and
  // emits no sig_update_ui.
  _data_source_type = DATA_SOURCE_PN9;
  set_symbol_length(512);
  set_symbol_rate(1000000);
  set_modulator_type(MODULATOR_APSK_QAM);
  set_apsk_qam_type(MOD_16QAM);
  set_gray_code_enable(false);
  set_mfsk_type(MOD_2FSK);
  set_fsk_deviation(600000.0);
  set_multitone_mode(false);
  set_multitone_sample_rate(10000000.0);
  set_multitone_span(5000000.0);
  set_multitone_start(2000000.0);
  set_multitone_stop(2000000.0);
  set_multitone_number(2);
  set_multitone_single_side(false);
  set_multitone_notch_enable(false);
  set_multitone_notch_start(0.0);
  set_multitone_notch_stop(0.0);
  set_show_constellation_symbol(false);
  set_lfm_mode(false);
  set_lfm_sample_rate(100000000.0);
  set_lfm_sweep_time(0.001);
  set_lfm_bandwidth(50000000.0);
  set_lfm_offset(0.0);
  set_lfm_sweep_type(LFM_SWEEP_TRIANGLE);
  set_lfm_segments(3);
  set_lfm_segment_list(
      {{-1000000.0, 1000000.0, 0.002}, {1000000.0, 1000000.0, 0.001}, {1000000.0, 0.0, 0.001}});
  set_filter_type(FILTER_ROOT_COSINE);
  set_filter_alpha(0.5);
  set_filter_length(32);
  set_oversampling(2);
  update_waveform();
  emit sig_update_ui();
}

void custom_iq_t::_build_multitone_config(lib_multitone_config_t& config) const {
  const uint32 tones = _multitone_number.value();
  if (_multitone_mode) {
    config.start_frequency = _multitone_start.value();
    config.stop_frequency = _multitone_stop.value();
  } else {
    config.stop_frequency = _multitone_span.value() / 2.0;
    config.start_frequency = _multitone_span.value() / (2.0 * tones);
  }
  config.custom_frequency_enable = _multitone_notch_enable;
  config.custom_frequencies.clear();
  if (_multitone_notch_enable) {
    const fp64 start = config.start_frequency;
    const fp64 stop = config.stop_frequency;
    const fp64 notch_start = _multitone_notch_start.value();
    const fp64 notch_stop = _multitone_notch_stop.value();
    const bool notch_covers_all = notch_start <= start && stop < notch_stop;
    for (uint32 i = 0; i < tones; ++i) {
      const fp64 tone = tones == 1 ? start : start + i * (stop - start) / (tones - 1);
      const bool notched = tone >= notch_start && tone < notch_stop;
      if (notch_covers_all || !notched) {
        config.custom_frequencies.push_back(tone);
      }
    }
  }
  config.sample_rate = _multitone_sample_rate.value();
  config.tone_number = tones;
  config.single_side = _multitone_single_side;
}

void custom_iq_t::_build_lfm_segments(lfm_segment_list_t& segments) const {
  if (_lfm_mode) {
    segments = _lfm_segment_list;
    return;
  }
  const fp64 centre = _lfm_offset.value();
  const fp64 half = _lfm_bandwidth.value() / 2.0;
  const fp64 time = _lfm_sweep_time.value();
  segments.clear();
  if (_lfm_sweep_type != LFM_SWEEP_DOWN) {
    segments.push_back({centre - half, centre + half, time});
  }
  if (_lfm_sweep_type != LFM_SWEEP_UP) {
    segments.push_back({centre + half, centre - half, time});
  }
}

void custom_iq_t::_fill_run_record(lib_iq_waveform_config_t& record) const {
  record.data_source_type = data_source_codes.at(_data_source_type);
  record.user_bits.clear();
  if (_data_source_type == DATA_SOURCE_USER || _data_source_type == DATA_SOURCE_CUSTOM) {
    for (const char bit : _custom_bits) {
      record.user_bits.push_back(bit == '0' ? 0 : 1);
    }
  }
  record.symbol_length = _symbol_length.value() * _frame_number.value();
  record.symbol_rate = static_cast<uint32>(_symbol_rate.value());
  record.oversampling = _oversampling.value();
  record.filter_type = _filter_type;
  record.filter_parameter = _filter_alpha.value();
  record.filter_length = _filter_length.value();
  record.modulator_type = _modulator_type;
  if (_modulator_type == MODULATOR_APSK_QAM) {
    record.constellation_type = _apsk_qam_type.value();
  } else if (_modulator_type == MODULATOR_MFSK) {
    record.constellation_type = _mfsk_type.value();
  } else if (_modulator_type == MODULATOR_CUSTOM) {
    record.constellation_type = custom_constellation_code;
    record.custom_constellation = _custom_constellation;
  }
  record.gray_code_enable = _gray_code_enable;
  record.fsk_deviation = static_cast<uint32>(_fsk_deviation.value());
}

void custom_iq_t::_transfer_modulation_config(const lib_iq_waveform_config_t& record,
                                              lib_iq_waveform_config_t& config) const {
  config = lib_iq_waveform_config_t();
  if (record.modulator_type == MODULATOR_MULTITONE) {
    // Intended: the message names the class dp_main_t, and spells "modulatior", as it always has.
    common_lib::lib_report(
        "dp_main_t::_transfer_modulation_config Report: Illegal modulatior type!");
    return;
  }
  config = record;
  config.modulator_type = plib_func_t::transfer_modulator_type(record.modulator_type);
  config.constellation_type = plib_func_t::transfer_constellation_type(record.constellation_type);
}

bool custom_iq_t::_generate() {
  if (_modulator_type == MODULATOR_MULTITONE) {
    lib_multitone_config_t config;
    _build_multitone_config(config);
    _multitone.set_multitone_config(config);
    _multitone.generate();
    _waveform = _multitone.get_samples();
    _waveform_frames = 1;
    return true;
  }
  if (_modulator_type == MODULATOR_LFM) {
    lfm_segment_list_t segments;
    _build_lfm_segments(segments);
    if (!is_custom_sweep_size_valid(_lfm_sample_rate.value(), segments)) {
      if (_too_large_callback) {
        _too_large_callback();
      }
      return false;
    }
    _lfm.set_config(_lfm_sample_rate.value(), segments);
    _lfm.generate(_waveform);
    _waveform_frames = 1;
    return true;
  }
  lib_iq_waveform_config_t record;
  _fill_run_record(record);
  lib_iq_waveform_config_t config;
  _transfer_modulation_config(record, config);
  _iq_waveform.set_modulation_config(config);
  _iq_waveform.generate_iq_signal();
  _iq_waveform.release_baseband_iq(_waveform);
  _waveform_frames = _frame_number.value();
  return true;
}

lib_waveform_annotations_t custom_iq_t::get_frame_segments() const {
  lib_waveform_annotations_t frames;
  const uint64 size = _waveform.size();
  for (uint64 frame = 0; frame < _waveform_frames && size > 0; ++frame) {
    const uint64 start = frame * size / _waveform_frames;
    const uint64 end = (frame + 1) * size / _waveform_frames;
    frames.push_back({start, end - start, "frame " + std::to_string(frame + 1)});
  }
  return frames;
}

void custom_iq_t::update_waveform() {
  _call_dirty(false);
  try {
    // Freed, not just emptied: the old samples would otherwise stay allocated while the new
    // ones are computed.
    lib_iq_data_arr_t().swap(_waveform);
    _waveform_frames = 0;
    if (!_generate()) {
      return;
    }
    if (_mirror_spectrum_enable) {
      for (auto& sample : _waveform) {
        sample = std::conj(sample);
      }
    }
    emit sig_update_waveform_data();
  } catch (const std::exception& error) {
    // Intended: the error block names the class dp_main_t and the original line, 284, whatever
    // the class and line are now.
    log_line("[×] dp_main_t exec error:", "");
    log_line("--> LINE:", "284");
    log_line("--> FUNC:", "update_waveform");
    log_line("--> exception:", error.what());
  }
}

}  // namespace nal

#include "cfg/cfg_custom_iq.h"

#include <array>
#include <cstdlib>
#include <iomanip>
#include <map>
#include <sstream>
#include <vector>

#include "cfg/cfg_waveform_file.h"
#include "cfg/lib_xml_common.h"
#include "lib/lib_enum_types.h"
#include "lib/lib_report.h"
#include "lib/plib.h"

namespace nal {

namespace {

using common_lib::plib_lfm_custom_sweep_config_t;

// Triples in text as "a,b,c,a,b,c": enough digits for every double to come back unchanged.
std::string join_triples(const std::vector<std::array<fp64, 3>>& triples) {
  std::ostringstream text;
  text << std::setprecision(17);
  for (std::size_t i = 0; i < triples.size(); ++i) {
    text << (i == 0 ? "" : ",") << triples[i][0] << "," << triples[i][1] << "," << triples[i][2];
  }
  return text.str();
}

// Numbers read comma by comma, in threes; a field that is no number reads as 0, an incomplete
// last triple is dropped.
std::vector<std::array<fp64, 3>> split_triples(const std::string& text) {
  std::vector<fp64> numbers;
  std::stringstream fields(text);
  std::string field;
  while (std::getline(fields, field, ',')) {
    numbers.push_back(std::strtod(field.c_str(), nullptr));
  }
  std::vector<std::array<fp64, 3>> triples;
  for (std::size_t i = 0; i + 2 < numbers.size(); i += 3) {
    triples.push_back({numbers[i], numbers[i + 1], numbers[i + 2]});
  }
  return triples;
}

template <typename value_t>
void add(pugi::xml_node& group, const char* name, const value_t& value) {
  group.append_child(name).text().set(value);
}

void add(pugi::xml_node& group, const char* name, const std::string& value) {
  group.append_child(name).text().set(value.c_str());
}

template <typename enum_t>
void add_enum(pugi::xml_node& group, const char* name, const std::map<enum_t, std::string>& map,
              enum_t value) {
  add(group, name, lib_xml_common_t::get_enum_string(map, value));
}

template <typename enum_t>
enum_t read_enum(const pugi::xml_node& group, const char* name,
                 const std::map<enum_t, std::string>& map) {
  return lib_xml_common_t::get_enum_value(map, group.child(name).text().get());
}

}  // namespace

cfg_custom_iq_t::cfg_custom_iq_t() : _engine(std::make_unique<custom_iq_t>()) {}

bool cfg_custom_iq_t::get_waveform_data(lib_iq_data_arr_t& samples) {
  samples = _engine->get_waveform_data();
  return true;
}

const lib_iq_data_arr_t& cfg_custom_iq_t::compute_waveform(lib_iq_data_arr_t& storage) {
  storage.clear();
  _engine->update_waveform();
  return _engine->get_waveform_data();
}

std::string cfg_custom_iq_t::file_header() const {
  const lib_iq_data_arr_t& samples = _engine->get_waveform_data();
  const fp64 rms = cfg_waveform_file_t::header_rms(samples);
  const std::string header =
      cfg_waveform_file_t::build_file_header(
          cfg_waveform_file_t::header_file_name(_engine->get_waveform_name()), PROTOCOL_CUSTOM_IQ) +
      cfg_waveform_file_t::header_tail(_engine->get_sample_rate(), rms);
  common_lib::lib_report("file_header = " + header);
  return header;
}

bool cfg_custom_iq_t::save_wavefrom_to_file(const std::string& path) {
  // The engine's own array, not a copy: a long waveform would otherwise be held twice.
  return cfg_waveform_file_t::save_iq_waveform_file(file_header(), _engine->get_waveform_data(),
                                                    path);
}

bool cfg_custom_iq_t::download_wavefrom_to_instrument() {
  common_lib::lib_report("cfg_custom_iq_t::download_waveform_to_instrument");
  const bool sent =
      cfg_waveform_file_t::download_iq_waveform(file_header(), _engine->get_waveform_data());
  if (!sent) {
    common_lib::lib_report(
        "cfg_custom_iq_t::download_wavefrom_to_instrument Report : Download Waveform Failed!");
  }
  return sent;
}

void cfg_custom_iq_t::preset() {
  _engine->preset();
}

bool cfg_custom_iq_t::save_to_xml(pugi::xml_node& node) const {
  const custom_iq_t& e = *_engine;
  const auto& modulations = common_lib::modulation_type_text_map();
  node.append_attribute("ProtocolType") =
      protocol_type_state_text_map().at(PROTOCOL_CUSTOM_IQ).c_str();

  pugi::xml_node basic = node.append_child("Basic");
  add(basic, "WaveformName", e.get_waveform_name());
  add(basic, "WaveformFrameNumber", e.get_frame_number());
  add(basic, "MirrorSpectrumEnable", e.get_mirror_spectrum_enable());
  add(basic, "TotalSamplePoints", static_cast<unsigned long long>(e.get_total_sample_points()));
  add(basic, "WaveformLength", e.get_waveform_length());

  pugi::xml_node source = node.append_child("DataSource");
  add_enum(source, "DataSourceType", common_lib::data_source_type_text_map(),
           e.get_data_source_type());
  add(source, "symbolLength", e.get_symbol_length());
  add(source, "symbolRate", static_cast<unsigned long long>(e.get_symbol_rate()));
  add(source, "customBits", e.get_custom_bits());
  add(source, "bitsPerSymbol", e.get_bits_per_symbol());

  pugi::xml_node modulation = node.append_child("Modulation");
  add_enum(modulation, "modulationType", common_lib::modulator_type_text_map(),
           e.get_modulator_type());
  add_enum(modulation, "ApskQamModulation", modulations, e.get_apsk_qam_type());
  add(modulation, "grayEnable", e.get_gray_code_enable());
  add_enum(modulation, "MfskModulation", modulations, e.get_mfsk_type());
  add(modulation, "fskDeviation", e.get_fsk_deviation());
  add(modulation, "multitoneMode", e.get_multitone_mode());
  add(modulation, "multitoneSampleRate", e.get_multitone_sample_rate());
  add(modulation, "multitoneFreqSpacing", e.get_multitone_span());
  add(modulation, "multitoneStartFreq", e.get_multitone_start());
  add(modulation, "multitoneStopFreq", e.get_multitone_stop());
  add(modulation, "multitoneNumber", e.get_multitone_number());
  add(modulation, "multitoneSingleSide", e.get_multitone_single_side());
  add(modulation, "multitoneNotchEnable", e.get_multitone_notch_enable());
  add(modulation, "multitoneNotchStartFreq", e.get_multitone_notch_start());
  add(modulation, "multitoneNotchStopFreq", e.get_multitone_notch_stop());
  std::vector<std::array<fp64, 3>> points;
  for (const auto& [symbol, point] : e.get_custom_constellation()) {
    points.push_back({static_cast<fp64>(symbol), point.real(), point.imag()});
  }
  add(modulation, "customConstellationData", join_triples(points));
  add(modulation, "customConstellationName", e.get_custom_constellation_name());
  add(modulation, "showConstellationSymbol", e.get_show_constellation_symbol());
  add(modulation, "lfmMode", e.get_lfm_mode());
  add(modulation, "lfmSampleRate", e.get_lfm_sample_rate());
  add(modulation, "lfmSweepTime", e.get_lfm_sweep_time());
  add(modulation, "lfmBandWidth", e.get_lfm_bandwidth());
  add(modulation, "lfmFreqOffset", e.get_lfm_offset());
  add_enum(modulation, "lfmSweepType", common_lib::lfm_sweep_type_text_map(),
           e.get_lfm_sweep_type());
  add(modulation, "lfmSegments", e.get_lfm_segments());
  add(modulation, "lfmTotalTime", e.get_lfm_total_time());
  std::vector<std::array<fp64, 3>> segments;
  for (const plib_lfm_custom_sweep_config_t& segment : e.get_lfm_segment_list()) {
    segments.push_back({segment.start_frequency, segment.stop_frequency, segment.duration});
  }
  add(modulation, "lfmSweepData", join_triples(segments));

  pugi::xml_node filter = node.append_child("Filter");
  add_enum(filter, "filterType", common_lib::filter_type_text_map(), e.get_filter_type());
  add(filter, "filterAlpha", e.get_filter_alpha());
  add(filter, "filterLength", e.get_filter_length());
  add(filter, "oversampling", e.get_oversampling());
  return true;
}

bool cfg_custom_iq_t::load_from_xml(const pugi::xml_node& node) {
  if (lib_xml_common_t::get_enum_value(protocol_type_state_text_map(),
                                       node.attribute("ProtocolType").value()) !=
      PROTOCOL_CUSTOM_IQ) {
    return false;
  }
  // Twice: a value whose bounds follow a later element (the deviation follows the oversampling,
  // the notch start the notch stop) is clamped on the first pass and lands on the second, where
  // the values already in place change nothing.
  _read_elements(node);
  _read_elements(node);
  return true;
}

void cfg_custom_iq_t::_read_elements(const pugi::xml_node& node) {
  custom_iq_t& e = *_engine;
  const auto& modulations = common_lib::modulation_type_text_map();
  const pugi::xml_node basic = node.child("Basic");
  e.set_waveform_name(basic.child("WaveformName").text().get());
  e.set_frame_number(basic.child("WaveformFrameNumber").text().as_uint());
  e.set_mirror_spectrum_enable(basic.child("MirrorSpectrumEnable").text().as_bool());

  const pugi::xml_node source = node.child("DataSource");
  e.set_data_source_type(
      read_enum(source, "DataSourceType", common_lib::data_source_type_text_map()));
  e.set_symbol_length(source.child("symbolLength").text().as_uint());
  e.set_symbol_rate(source.child("symbolRate").text().as_ullong());
  e.set_custom_bits(source.child("customBits").text().get());

  const pugi::xml_node modulation = node.child("Modulation");
  e.set_modulator_type(
      read_enum(modulation, "modulationType", common_lib::modulator_type_text_map()));
  e.set_apsk_qam_type(read_enum(modulation, "ApskQamModulation", modulations));
  e.set_gray_code_enable(modulation.child("grayEnable").text().as_bool());
  e.set_mfsk_type(read_enum(modulation, "MfskModulation", modulations));
  e.set_fsk_deviation(modulation.child("fskDeviation").text().as_double());
  e.set_multitone_mode(modulation.child("multitoneMode").text().as_bool());
  e.set_multitone_sample_rate(modulation.child("multitoneSampleRate").text().as_double());
  e.set_multitone_span(modulation.child("multitoneFreqSpacing").text().as_double());
  e.set_multitone_start(modulation.child("multitoneStartFreq").text().as_double());
  e.set_multitone_stop(modulation.child("multitoneStopFreq").text().as_double());
  e.set_multitone_number(modulation.child("multitoneNumber").text().as_uint());
  e.set_multitone_single_side(modulation.child("multitoneSingleSide").text().as_bool());
  e.set_multitone_notch_enable(modulation.child("multitoneNotchEnable").text().as_bool());
  e.set_multitone_notch_start(modulation.child("multitoneNotchStartFreq").text().as_double());
  e.set_multitone_notch_stop(modulation.child("multitoneNotchStopFreq").text().as_double());
  lib_constellation_map_t constellation;
  for (const auto& [symbol, i, q] :
       split_triples(modulation.child("customConstellationData").text().get())) {
    if (symbol >= 0.0 && symbol < 4294967296.0) {
      constellation[static_cast<uint32>(symbol)] = {i, q};
    }
  }
  e.set_custom_constellation(constellation);
  e.set_custom_constellation_name(modulation.child("customConstellationName").text().get());
  e.set_show_constellation_symbol(modulation.child("showConstellationSymbol").text().as_bool());
  e.set_lfm_mode(modulation.child("lfmMode").text().as_bool());
  e.set_lfm_sample_rate(modulation.child("lfmSampleRate").text().as_double());
  e.set_lfm_sweep_time(modulation.child("lfmSweepTime").text().as_double());
  e.set_lfm_bandwidth(modulation.child("lfmBandWidth").text().as_double());
  e.set_lfm_offset(modulation.child("lfmFreqOffset").text().as_double());
  e.set_lfm_sweep_type(
      read_enum(modulation, "lfmSweepType", common_lib::lfm_sweep_type_text_map()));
  e.set_lfm_segments(modulation.child("lfmSegments").text().as_uint());
  custom_iq_t::lfm_segment_list_t segments;
  for (const auto& [start, stop, duration] :
       split_triples(modulation.child("lfmSweepData").text().get())) {
    segments.push_back({start, stop, duration});
  }
  e.set_lfm_segment_list(segments);

  const pugi::xml_node filter = node.child("Filter");
  e.set_filter_type(read_enum(filter, "filterType", common_lib::filter_type_text_map()));
  e.set_filter_alpha(filter.child("filterAlpha").text().as_double());
  e.set_filter_length(filter.child("filterLength").text().as_uint());
  e.set_oversampling(filter.child("oversampling").text().as_uint());
}

}  // namespace nal

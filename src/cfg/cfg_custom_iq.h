#pragma once
// The Custom IQ configuration: owns one custom_iq_t and adds the waveform file, the instrument
// block and the state file element. XML groups: Basic, DataSource, Modulation, Filter; each
// element is read through the engine's public setter in the engine's parameter order, so every
// cascade runs as it does when a user edits the page.

#include <memory>
#include <string>

#include "cfg/cfg_protocol_base.h"
#include "custom_iq/custom_iq.h"

namespace nal {

class cfg_custom_iq_t : public cfg_protocol_base_t {
 public:
  cfg_custom_iq_t();

  // See base class.
  bool get_waveform_data(lib_iq_data_arr_t& samples) override;
  bool save_wavefrom_to_file(const std::string& path) override;
  bool download_wavefrom_to_instrument() override;
  void preset() override;
  bool load_from_xml(const pugi::xml_node& node) override;
  bool save_to_xml(pugi::xml_node& node) const override;
  protocol_type_t protocol_type() const override { return PROTOCOL_CUSTOM_IQ; }

  // What the protocol registry asks of a configuration; see cfg_protocol_registry.h. The engine
  // computes on demand only, so compute_waveform runs it and returns its own array.
  fp64 get_waveform_length() const { return _engine->get_waveform_length(); }
  uint64 get_sample_points() const { return _engine->get_total_sample_points(); }
  fp64 get_sample_rate() const { return _engine->get_sample_rate(); }
  const lib_iq_data_arr_t& compute_waveform(lib_iq_data_arr_t& storage);
  lib_waveform_annotations_t get_annotations() const { return _engine->get_frame_segments(); }

  // The waveform file header of the current settings and samples; printed as it is built.
  std::string file_header() const;
  custom_iq_t& engine() { return *_engine; }
  const custom_iq_t& engine() const { return *_engine; }

 private:
  // Every element through its setter, in the engine's parameter order.
  void _read_elements(const pugi::xml_node& node);

  std::unique_ptr<custom_iq_t> _engine;
};

}  // namespace nal

#pragma once
// A small background page for tests: its configuration computes a constant tone slowly on
// purpose, so that Updates, edits and closes overlap with running tasks, and reports it as one
// frame of two halves. It has a protocol type of its own, outside the program's table: no
// registry row, no state-file text, no page of the program's to collide with. Its page brings its
// own row, as the registry would build it.

#include <atomic>
#include <functional>

#include "cfg/cfg_protocol_base.h"
#include "cfg/cfg_protocol_registry.h"
#include "ui/pages/ui_background_page.h"

class QDoubleSpinBox;

namespace wavelume_test {

// No protocol of the program has this value.
constexpr nal::protocol_type_t k_tone_protocol_type = static_cast<nal::protocol_type_t>(1000);

class tone_configuration_t : public nal::cfg_protocol_base_t {
 public:
  // Computations started, over all copies.
  static std::atomic<int> computations;
  // Milliseconds each computation sleeps.
  static std::atomic<int> delay_ms;
  // Makes every computation throw, as an engine out of memory would.
  static std::atomic<bool> fail;

  tone_configuration_t() = default;
  tone_configuration_t(const tone_configuration_t& other);

  bool get_waveform_data(nal::lib_iq_data_arr_t& samples) override;
  bool save_wavefrom_to_file(const std::string&) override { return false; }
  bool download_wavefrom_to_instrument() override { return false; }
  void preset() override;
  bool load_from_xml(const pugi::xml_node& node) override;
  bool save_to_xml(pugi::xml_node& node) const override;
  nal::protocol_type_t protocol_type() const override { return k_tone_protocol_type; }

  bool set_amplitude(nal::fp64 amplitude);
  nal::fp64 amplitude() const { return _amplitude; }
  bool set_length(nal::uint32 length);
  nal::uint32 length() const { return _length; }
  // The five methods a registry row asks for; one sample per microsecond.
  nal::fp64 get_waveform_length() const { return _length * 1e-6; }
  nal::uint64 get_sample_points() { return _length; }
  nal::fp64 get_sample_rate() const { return 1e6; }
  const nal::lib_iq_data_arr_t& compute_waveform(nal::lib_iq_data_arr_t& storage);
  // "tone" over the whole waveform, "first half" and "second half" inside it.
  nal::lib_waveform_annotations_t get_annotations() const;
  void set_change_callback(std::function<void(bool)> callback) { _changed = std::move(callback); }

 private:
  // Stores a changed value and reports the change, as a configuration's setters do.
  template <typename value_t>
  bool _set(value_t& field, value_t value) {
    if (field == value) {
      return false;
    }
    field = value;
    if (_changed) {
      _changed(true);
    }
    return true;
  }

  nal::fp64 _amplitude = 0.5;
  nal::uint32 _length = 1000;
  // Written by every computation, so that two threads on one object would race visibly.
  nal::uint32 _computed = 0;
  std::function<void(bool)> _changed;
};

class tone_page_t : public nal::ui_background_page_t {
  Q_OBJECT

 public:
  // A row without `copy` stands for a configuration that cannot be copied.
  explicit tone_page_t(bool copyable = true, QWidget* parent = nullptr);

  tone_configuration_t& tone() const;
  QDoubleSpinBox* amplitude_box() const { return _amplitude_box; }

 protected:
  const nal::cfg_protocol_row_t* _protocol_row() const override;
  void _unbind_configuration() override;
  void _bind_configuration() override;

 private:
  bool _copyable;
  QDoubleSpinBox* _amplitude_box = nullptr;
};

}  // namespace wavelume_test

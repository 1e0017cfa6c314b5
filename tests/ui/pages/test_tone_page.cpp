#include "tests/ui/pages/test_tone_page.h"

#include <QDoubleSpinBox>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <thread>

#include "cfg/lib_xml_common.h"
#include "ui/pages/ui_tab_widget.h"

namespace wavelume_test {

namespace {

tone_configuration_t& as_tone(nal::cfg_protocol_base_t& configuration) {
  return static_cast<tone_configuration_t&>(configuration);
}

const tone_configuration_t& as_tone(const nal::cfg_protocol_base_t& configuration) {
  return static_cast<const tone_configuration_t&>(configuration);
}

nal::cfg_protocol_row_t tone_row(bool copyable) {
  nal::cfg_protocol_row_t row;
  row.type = k_tone_protocol_type;
  row.cli_name = "tone";
  row.create = [] { return std::unique_ptr<nal::cfg_protocol_base_t>(new tone_configuration_t); };
  if (copyable) {
    row.copy = [](const nal::cfg_protocol_base_t& configuration) {
      return std::unique_ptr<nal::cfg_protocol_base_t>(
          new tone_configuration_t(as_tone(configuration)));
    };
  }
  row.waveform_length = [](const nal::cfg_protocol_base_t& configuration) {
    return as_tone(configuration).get_waveform_length();
  };
  row.sample_points = [](nal::cfg_protocol_base_t& configuration) {
    return as_tone(configuration).get_sample_points();
  };
  row.sample_rate = [](const nal::cfg_protocol_base_t& configuration) {
    return as_tone(configuration).get_sample_rate();
  };
  row.compute = [](nal::cfg_protocol_base_t& configuration,
                   nal::lib_iq_data_arr_t& storage) -> const nal::lib_iq_data_arr_t& {
    return as_tone(configuration).compute_waveform(storage);
  };
  row.annotations = [](const nal::cfg_protocol_base_t& configuration, nal::uint64) {
    return as_tone(configuration).get_annotations();
  };
  return row;
}

}  // namespace

std::atomic<int> tone_configuration_t::computations{0};
std::atomic<int> tone_configuration_t::delay_ms{0};
std::atomic<bool> tone_configuration_t::fail{false};

tone_configuration_t::tone_configuration_t(const tone_configuration_t& other)
    : nal::cfg_protocol_base_t(other),
      _amplitude(other._amplitude),
      _length(other._length),
      _computed(other._computed) {}

bool tone_configuration_t::get_waveform_data(nal::lib_iq_data_arr_t& samples) {
  ++computations;
  std::this_thread::sleep_for(std::chrono::milliseconds(delay_ms.load()));
  if (fail) {
    throw std::runtime_error("tone generator failed");
  }
  samples.assign(_length, nal::lib_iq_sample_t(_amplitude, -_amplitude));
  _computed = _length;
  return true;
}

const nal::lib_iq_data_arr_t& tone_configuration_t::compute_waveform(
    nal::lib_iq_data_arr_t& storage) {
  get_waveform_data(storage);
  return storage;
}

nal::lib_waveform_annotations_t tone_configuration_t::get_annotations() const {
  const nal::uint64 half = _length / 2;
  return {{0, _length, "tone"}, {0, half, "first half"}, {half, _length - half, "second half"}};
}

void tone_configuration_t::preset() {
  set_amplitude(0.5);
  set_length(1000);
}

bool tone_configuration_t::load_from_xml(const pugi::xml_node& node) {
  _amplitude = node.child("Amplitude").text().as_double(_amplitude);
  _length = node.child("Length").text().as_uint(_length);
  return true;
}

bool tone_configuration_t::save_to_xml(pugi::xml_node& node) const {
  // Empty: the type has no text in state files.
  node.append_attribute("ProtocolType") =
      nal::lib_xml_common_t::get_enum_string(nal::protocol_type_state_text_map(), protocol_type())
          .c_str();
  node.append_child("Amplitude").text().set(_amplitude);
  node.append_child("Length").text().set(_length);
  return true;
}

bool tone_configuration_t::set_amplitude(nal::fp64 amplitude) {
  return _set(_amplitude, amplitude);
}

bool tone_configuration_t::set_length(nal::uint32 length) {
  return _set(_length, length);
}

tone_page_t::tone_page_t(bool copyable, QWidget* parent)
    : nal::ui_background_page_t(std::make_unique<tone_configuration_t>(),
                                "Update IQ waveform display", parent),
      _copyable(copyable) {
  _bind_configuration();
  _update_waveform();
}

tone_configuration_t& tone_page_t::tone() const {
  return static_cast<tone_configuration_t&>(configuration());
}

const nal::cfg_protocol_row_t* tone_page_t::_protocol_row() const {
  static const nal::cfg_protocol_row_t copyable_row = tone_row(true);
  static const nal::cfg_protocol_row_t fixed_row = tone_row(false);
  return _copyable ? &copyable_row : &fixed_row;
}

void tone_page_t::_unbind_configuration() {
  tone().set_change_callback(nullptr);
  _setup_tabs()->remove_all_pages();
  delete _amplitude_box;
  _amplitude_box = nullptr;
}

void tone_page_t::_bind_configuration() {
  _amplitude_box = new QDoubleSpinBox;
  _amplitude_box->setRange(0.0, 1.0);
  _amplitude_box->setDecimals(4);
  _amplitude_box->setValue(tone().amplitude());
  connect(_amplitude_box, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
          [this](double value) { tone().set_amplitude(value); });
  _setup_tabs()->add_page(_amplitude_box, "Parameters Setup");
  tone().set_change_callback([this](bool changed) { set_toolbar_update_action_blink(changed); });
}

}  // namespace wavelume_test

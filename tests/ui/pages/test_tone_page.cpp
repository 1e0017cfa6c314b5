#include "tests/ui/pages/test_tone_page.h"

#include <QDoubleSpinBox>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <thread>

#include "ui/pages/ui_tab_widget.h"

namespace wavelume_test {

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
  node.append_attribute("ProtocolType") = "Toolkit";
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

tone_page_t::tone_page_t(QWidget* parent)
    : nal::ui_background_page_t(std::make_unique<tone_configuration_t>(),
                                "Update IQ waveform display", parent) {
  _bind_configuration();
  _update_waveform();
}

tone_configuration_t& tone_page_t::tone() const {
  return static_cast<tone_configuration_t&>(configuration());
}

nal::ui_background_page_t::waveform_task_t tone_page_t::_make_waveform_task() const {
  auto snapshot = std::make_shared<tone_configuration_t>(tone());
  return [snapshot] {
    nal::ui_page_waveform_t waveform;
    waveform.waveform_length = snapshot->waveform_length();
    waveform.sample_points = snapshot->length();
    snapshot->get_waveform_data(waveform.samples);
    return waveform;
  };
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

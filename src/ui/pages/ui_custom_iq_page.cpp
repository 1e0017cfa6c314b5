#include "ui/pages/ui_custom_iq_page.h"

#include <QApplication>
#include <QMessageBox>

#include "cfg/cfg_custom_iq.h"
#include "cfg/cfg_protocol_registry.h"
#include "ui/chart/ui_ccdf_view.h"
#include "ui/chart/ui_constellation_chart.h"
#include "ui/pages/ui_tab_widget.h"
#include "ui/custom_iq/ui_custom_iq_setup_widget.h"

namespace nal {

ui_custom_iq_page_t::ui_custom_iq_page_t(QWidget* parent)
    : ui_protocol_page_t(std::make_unique<cfg_custom_iq_t>(), "Update waveform data", parent),
      _constellation_view(new ui_constellation_chart_t),
      _ccdf_view(new ui_ccdf_view_t) {
  _view_tabs()->add_page(_constellation_view, "Constellation");
  _view_tabs()->add_page(_ccdf_view, "CCDF");
  _view_tabs()->set_current_index(0);
  _bind_configuration();
  custom_iq_configuration().preset();
}

cfg_custom_iq_t& ui_custom_iq_page_t::custom_iq_configuration() const {
  return static_cast<cfg_custom_iq_t&>(configuration());
}

void ui_custom_iq_page_t::update_waveform_display() {
  const custom_iq_t& engine = custom_iq_configuration().engine();
  const lib_iq_data_arr_t& samples = engine.get_waveform_data();
  // The spectrum's frequency axis comes from the samples actually computed, so that it spans
  // exactly the sample rate.
  const fp64 rate = engine.get_sample_rate();
  const fp64 waveform_length = rate > 0.0 ? static_cast<fp64>(samples.size()) / rate : 0.0;
  const cfg_protocol_row_t* row = cfg_protocol_registry_t::find(PROTOCOL_CUSTOM_IQ);
  _ccdf_view->update_ccdf(samples);
  _update_constellation();
  _show_waveform(
      ui_page_waveform_t::prepare(samples, waveform_length, static_cast<uint32>(samples.size()),
                                  row->annotations(custom_iq_configuration(), samples.size())));
}

void ui_custom_iq_page_t::_run_update() {
  if (QWidget* focused = QApplication::focusWidget()) {
    focused->clearFocus();
  }
  custom_iq_configuration().engine().update_waveform();
}

void ui_custom_iq_page_t::_unbind_configuration() {
  custom_iq_t& engine = custom_iq_configuration().engine();
  engine.set_dirty_callback(nullptr);
  engine.set_too_large_callback(nullptr);
  disconnect(&engine, nullptr, this, nullptr);
  _setup_tabs()->remove_all_pages();
  delete _setup;
  _setup = nullptr;
}

void ui_custom_iq_page_t::_bind_configuration() {
  custom_iq_t& engine = custom_iq_configuration().engine();
  _setup = new ui_custom_iq_setup_widget_t(engine);
  _setup_tabs()->add_page(_setup, "Parameters Setup");
  engine.set_dirty_callback([this](bool dirty) { set_toolbar_update_action_blink(dirty); });
  engine.set_too_large_callback([this] {
    QMessageBox::warning(window(), "Error",
                         "The waveform is too large to generate. please reduce the Sampling Rate.");
  });
  connect(&engine, &custom_iq_t::sig_update_waveform_data, this,
          &ui_custom_iq_page_t::update_waveform_display);
  connect(&engine, &custom_iq_t::sig_update_constellation, this,
          &ui_custom_iq_page_t::_update_constellation);
}

void ui_custom_iq_page_t::_update_constellation() {
  const custom_iq_t& engine = custom_iq_configuration().engine();
  switch (engine.get_modulator_type()) {
    case MODULATOR_APSK_QAM:
      _constellation_view->update_constellation(engine.get_default_constellation());
      break;
    case MODULATOR_CUSTOM:
      _constellation_view->update_constellation(engine.get_custom_constellation());
      break;
    default:
      _constellation_view->update_constellation(lib_constellation_map_t{});
      break;
  }
}

}  // namespace nal

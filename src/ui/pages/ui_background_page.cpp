#include "ui/pages/ui_background_page.h"

#include <exception>

#include "ui/pages/ui_page_task_runner.h"

namespace nal {

void ui_background_page_t::_update_waveform() {
  ui_page_waveform_t waveform;
  try {
    waveform = _make_waveform_task()();
  } catch (const std::exception& error) {
    waveform = ui_page_waveform_t{};
    waveform.error = error.what();
  }
  _show_waveform(waveform);
}

void ui_background_page_t::_run_update() {
  set_toolbar_update_action_blink(false);
  if (_computing) {
    _run_pending = true;
    return;
  }
  _start_run();
}

void ui_background_page_t::_run_preset() {
  ui_protocol_page_t::_run_preset();
  _unbind_configuration();
  _bind_configuration();
  _run_update();
}

void ui_background_page_t::_start_run() {
  _computing = true;
  ui_page_task_runner_t::instance().start(
      this, _make_waveform_task(),
      [this](ui_page_waveform_t waveform) { _on_run_finished(std::move(waveform)); });
}

void ui_background_page_t::_on_run_finished(ui_page_waveform_t waveform) {
  _computing = false;
  _show_waveform(waveform);
  if (_run_pending) {
    _run_pending = false;
    _start_run();
  }
}

}  // namespace nal

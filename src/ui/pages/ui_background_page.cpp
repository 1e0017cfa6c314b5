#include "ui/pages/ui_background_page.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <memory>
#include <string>

#include "cfg/cfg_protocol_registry.h"
#include "ui/pages/ui_page_task_runner.h"

namespace nal {

namespace {

// Runs on a pool thread, on a snapshot no other thread sees.
ui_page_waveform_t compute_waveform(const cfg_protocol_row_t& row, cfg_protocol_base_t& snapshot) {
  const fp64 waveform_length = row.waveform_length(snapshot);
  const uint32 sample_points = static_cast<uint32>(
      std::min<uint64>(row.sample_points(snapshot), std::numeric_limits<uint32>::max()));
  lib_iq_data_arr_t storage;
  const lib_iq_data_arr_t& samples = row.compute(snapshot, storage);
  const lib_waveform_annotations_t annotations = row.annotations(snapshot, samples.size());
  // Our own storage goes to the spectrum as it is; the engine's array is copied once.
  if (&samples == &storage) {
    return ui_page_waveform_t::prepare(std::move(storage), waveform_length, sample_points,
                                       annotations);
  }
  return ui_page_waveform_t::prepare(samples, waveform_length, sample_points, annotations);
}

ui_page_waveform_t failed_waveform(std::string error) {
  ui_page_waveform_t waveform;
  waveform.error = std::move(error);
  return waveform;
}

ui_background_page_t::waveform_task_t failing_task(std::string error) {
  return [error] { return failed_waveform(error); };
}

}  // namespace

const cfg_protocol_row_t* ui_background_page_t::_protocol_row() const {
  return cfg_protocol_registry_t::find(configuration().protocol_type());
}

ui_background_page_t::waveform_task_t ui_background_page_t::_make_waveform_task() const {
  const cfg_protocol_row_t* row = _protocol_row();
  if (row == nullptr || !row->has_engine()) {
    return failing_task("no engine computes this protocol");
  }
  if (row->copy == nullptr) {
    return failing_task("these settings cannot be copied for a background computation");
  }
  std::shared_ptr<cfg_protocol_base_t> snapshot;
  try {
    snapshot = row->copy(configuration());
  } catch (const std::exception& error) {
    return failing_task(error.what());
  }
  return [row, snapshot] { return compute_waveform(*row, *snapshot); };
}

void ui_background_page_t::_update_waveform() {
  ui_page_waveform_t waveform;
  try {
    waveform = _make_waveform_task()();
  } catch (const std::exception& error) {
    waveform = failed_waveform(error.what());
  }
  _show_waveform(std::move(waveform));
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
  _show_waveform(std::move(waveform));
  if (_run_pending) {
    _run_pending = false;
    _start_run();
  }
}

}  // namespace nal

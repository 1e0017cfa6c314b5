#pragma once
// The frame of the pages that compute in the background. Update takes a snapshot of the
// configuration on the GUI thread and computes on it in the global thread pool, so edits made
// during a run cannot race with it; the result comes back to the GUI thread, where the I/Q view
// and then the spectrum view get it. An Update pressed while a run is going starts one more run
// when it ends (presses in between count once). A page closed during a run lets the task finish
// on its snapshot and the result is dropped. GUI thread only.

#include <functional>

#include "ui/pages/ui_protocol_page.h"

namespace nal {

class ui_background_page_t : public ui_protocol_page_t {
  Q_OBJECT

 public:
  // A computation that owns its own snapshot of the configuration; see ui_page_task_runner_t.
  using waveform_task_t = std::function<ui_page_waveform_t()>;

  // True from an Update until the last result is shown.
  bool is_computing() const { return _computing; }

 protected:
  using ui_protocol_page_t::ui_protocol_page_t;

  // Copies the configuration (a copy continues bit-identically) into a task that asks it for the
  // waveform length, the sample points and the samples, in that order.
  virtual waveform_task_t _make_waveform_task() const = 0;
  // The worker: the task of the current settings, run here on the GUI thread and shown. Derived
  // constructors call it once, so that the page opens with its default waveform.
  void _update_waveform();

  // See base class.
  void _run_update() override;
  void _run_preset() override;

 private:
  void _start_run();
  void _on_run_finished(ui_page_waveform_t waveform);

  bool _computing = false;
  bool _run_pending = false;
};

}  // namespace nal

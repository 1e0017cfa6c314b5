#pragma once
// The frame of the pages that compute in the background. Update takes a snapshot of the
// configuration on the GUI thread (the copy of its protocol row, which continues bit-identically)
// and computes on it in the global thread pool: waveform length, sample points, samples and
// annotations, then the views' preparation, so that the GUI thread only moves the result in and
// edits made during a run cannot race with it. An Update pressed while a run is going starts one
// more run when it ends (presses in between count once). A page closed during a run lets the task
// finish on its snapshot and the result is dropped. A page whose configuration has no row or no
// copy computes nothing and says so on its status line. GUI thread only.
//
// A derived page adds its setup widgets (_bind_configuration, _unbind_configuration) and calls
// _update_waveform() once at the end of its constructor.

#include <functional>

#include "ui/pages/ui_protocol_page.h"

namespace nal {

struct cfg_protocol_row_t;

class ui_background_page_t : public ui_protocol_page_t {
  Q_OBJECT

 public:
  // A computation that owns its own snapshot of the configuration; see ui_page_task_runner_t.
  using waveform_task_t = std::function<ui_page_waveform_t()>;

  // True from an Update until the last result is shown.
  bool is_computing() const { return _computing; }

 protected:
  using ui_protocol_page_t::ui_protocol_page_t;

  // The row that computes the configuration: by default the registry's row of its protocol type.
  // Read on the pool threads too, so it must live as long as the program (the registry's do).
  virtual const cfg_protocol_row_t* _protocol_row() const;
  // The worker: the task of the current settings, run here on the GUI thread and shown. Derived
  // constructors call it once, so that the page opens with its default waveform.
  void _update_waveform();

  // See base class.
  void _run_update() override;
  void _run_preset() override;

 private:
  waveform_task_t _make_waveform_task() const;
  void _start_run();
  void _on_run_finished(ui_page_waveform_t waveform);

  bool _computing = false;
  bool _run_pending = false;
};

}  // namespace nal

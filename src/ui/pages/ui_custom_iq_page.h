#pragma once
// The Custom IQ page: the frame with the Custom IQ setup widget and, beside the I/Q and spectrum
// views, a constellation and a CCDF view. It computes on the GUI thread: Update commits the edit
// in progress and runs the engine, whose sig_update_waveform_data fills the views.

#include "ui/pages/ui_protocol_page.h"

namespace nal {

class cfg_custom_iq_t;
class ui_ccdf_view_t;
class ui_constellation_chart_t;
class ui_custom_iq_setup_widget_t;

class ui_custom_iq_page_t : public ui_protocol_page_t {
  Q_OBJECT

 public:
  // Opens with the preset settings and their waveform computed.
  explicit ui_custom_iq_page_t(QWidget* parent = nullptr);

  cfg_custom_iq_t& custom_iq_configuration() const;
  ui_custom_iq_setup_widget_t* setup_widget() const { return _setup; }

 public slots:
  // Shows the engine's samples and annotations: prepared and shown on the GUI thread, with one
  // copy of the samples for the spectrum.
  void update_waveform_display();

 protected:
  // See base class.
  void _run_update() override;
  void _unbind_configuration() override;
  void _bind_configuration() override;

 private:
  void _update_constellation();

  ui_custom_iq_setup_widget_t* _setup = nullptr;
  ui_constellation_chart_t* _constellation_view;
  ui_ccdf_view_t* _ccdf_view;
};

}  // namespace nal

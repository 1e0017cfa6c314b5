#pragma once
// One computed waveform of a page, prepared for its views on the thread that computed it: I and Q
// reduced with the annotations laid out, the spectrum, and a short message when the computation
// failed (the views then show nothing). The GUI thread only moves it into the views.

#include <string>

#include "ui/chart/ui_fft_spectrum_view.h"
#include "ui/chart/ui_iq_waveform_view.h"

namespace nal {

struct ui_page_waveform_t {
  ui_iq_waveform_view_t::prepared_t iq;
  ui_fft_spectrum_view_t::prepared_t spectrum;
  std::string error;

  // Any thread, no Qt. `waveform_length` in seconds and `sample_points` scale the spectrum's
  // frequency axis. The spectrum transforms `samples` in place, so an array the caller still
  // needs is copied once on the way in; one it no longer needs should be moved in.
  static ui_page_waveform_t prepare(lib_iq_data_arr_t samples, fp64 waveform_length,
                                    uint32 sample_points,
                                    const lib_waveform_annotations_t& annotations);
};

}  // namespace nal

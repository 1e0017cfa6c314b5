#include "ui/pages/ui_page_waveform.h"

namespace nal {

ui_page_waveform_t ui_page_waveform_t::prepare(lib_iq_data_arr_t samples, fp64 waveform_length,
                                               uint32 sample_points,
                                               const lib_waveform_annotations_t& annotations) {
  ui_page_waveform_t waveform;
  waveform.iq = ui_iq_waveform_view_t::prepare(samples, annotations);
  waveform.spectrum =
      ui_fft_spectrum_view_t::prepare(std::move(samples), waveform_length, sample_points);
  return waveform;
}

}  // namespace nal

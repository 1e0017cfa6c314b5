#pragma once
// Reads a SigMF recording: the `.sigmf-meta` JSON (datatype, sample rate, description and
// annotations) and the samples of the `.sigmf-data` beside it. Data types cf32_le, cf64_le,
// ci16_le, ci8 and rf32_le (a real type gives Q = 0; integers are scaled to full scale 1).
// Stateless; safe on any thread.

#include <string>

#include "lib/lib_types.h"
#include "lib/lib_waveform_segment.h"

namespace nal {

struct cfg_sigmf_recording_t {
  std::string datatype;
  // Hz; 0 when the recording has none.
  fp64 sample_rate = 0.0;
  std::string description;
  lib_iq_data_arr_t samples;
  // In file order; a segment without a count reaches the end of the samples.
  lib_waveform_annotations_t annotations;
};

class cfg_sigmf_reader_t {
 public:
  // Largest meta file read, in bytes.
  static constexpr long long max_meta_bytes = 64LL << 20;

  // `path` names either file of the pair. False with a message in `error` when a file is
  // missing or unreadable, the JSON is malformed, or the data type is not one of the above.
  static bool read(const std::string& path, cfg_sigmf_recording_t& recording, std::string& error);
  // True when `path` ends in ".sigmf-meta" or ".sigmf-data".
  static bool is_sigmf_path(const std::string& path);
};

}  // namespace nal

#pragma once
// The annotations of a waveform: labelled stretches of samples such as "frame 2",
// "packet 3 ADV_IND", "preamble", "PHR", "payload" or "CRC". An engine computes them together with
// its samples; the command-line tool writes them as SigMF annotations and the I/Q view shades
// them. Plain values, safe to copy between threads.

#include <string>
#include <vector>

#include "lib/lib_types.h"

namespace nal {

// Samples [start, start + count) of one waveform.
struct lib_waveform_segment_t {
  uint64 start = 0;
  uint64 count = 0;
  std::string label;

  bool operator==(const lib_waveform_segment_t& other) const {
    return start == other.start && count == other.count && label == other.label;
  }
};

// In the order the engine reports them: a frame before the fields it holds.
using lib_waveform_annotations_t = std::vector<lib_waveform_segment_t>;

}  // namespace nal

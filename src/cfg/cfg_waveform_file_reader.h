#pragma once
// Reads the waveform file written by cfg_waveform_file_t, with or without its seal field. A seal
// that does not match is a warning for the caller to show, never a refusal. Stateless; safe on
// any thread.

#include <string>
#include <utility>
#include <vector>

#include "lib/lib_types.h"

namespace nal {

// What a waveform file holds.
struct cfg_waveform_file_contents_t {
  enum seal_state_t { SEAL_ABSENT, SEAL_MATCHES, SEAL_MISMATCH };

  seal_state_t seal = SEAL_ABSENT;
  // Header keys and values in file order, up to the IQData key.
  std::vector<std::pair<std::string, std::string>> fields;
  // Samples scaled back by 1 / 32767.
  lib_iq_data_arr_t samples;

  // The value of `key`, or an empty string.
  std::string field(const std::string& key) const;
};

class cfg_waveform_file_reader_t {
 public:
  // Largest header accepted before the IQData key, in bytes: a guard against reading an
  // unrelated file as a header.
  static constexpr std::size_t max_header_bytes = 1 << 16;

  // False with `error` set when the file cannot be read or is no waveform file (no IQData key
  // within the header limit, or a sample area that is not whole I/Q pairs).
  static bool read(const std::string& path, cfg_waveform_file_contents_t& contents,
                   std::string& error);
  // The same on the bytes of a file.
  static bool parse(const std::string& bytes, cfg_waveform_file_contents_t& contents,
                    std::string& error);
};

}  // namespace nal

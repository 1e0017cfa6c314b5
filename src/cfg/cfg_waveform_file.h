#pragma once
// The waveform file (.ARB) and the instrument block built from the same bytes:
//
//   CheckCode,<seal>,FileType,IQ,Version,3.0,FileName,<name>,...,IQData,<samples>
//
// The header is comma-separated text ending with the key IQData and its comma; the samples
// follow as I then Q, each a signed 16-bit integer, low byte first, to the end of the data. The
// seal is the lowercase hexadecimal MD5 of every byte after the seal field; the bytes themselves
// are written as they are. Stateless; safe on any thread.

#include <optional>
#include <string>

#include "cfg/cfg_protocol_type.h"
#include "lib/lib_types.h"

namespace nal {

class cfg_waveform_file_t {
 public:
  // The fixed start of every header up to and including ProtocolVersion's comma. An unknown
  // protocol prints "error" and leaves its two values empty.
  static std::string build_file_header(const std::string& name, protocol_type_t type);
  // The name that a header carries: the waveform name plus ".ARB", or "CurrentSettings".
  static std::string header_file_name(const std::string& waveform_name);
  // The tail every engine appends: SampleRate (Hz), RMS when given (Custom IQ and Toolkit), and
  // the closing IQData key. Numbers are written with 15 significant digits.
  static std::string header_tail(fp64 sample_rate, std::optional<fp64> rms);
  // The root mean square of |sample| for the header's RMS key (0 for no samples), summed over
  // fixed blocks: within rounding of the literal sum, and the same on every run.
  static fp64 header_rms(const lib_iq_data_arr_t& samples);

  // I and Q times 32767, rounded half away from zero, kept modulo 2^16 as signed 16-bit values
  // (a magnitude above 1.0 wraps; producers normalise first), low byte first. A value that is not
  // finite, or too large to round, encodes as 0.
  static std::string encode_samples(const lib_iq_data_arr_t& samples);
  // "CheckCode,<md5 of bytes>,".
  static std::string seal_field(const std::string& bytes);
  // The seal's digest of `header` followed by the encoded samples, encoded and hashed chunk by
  // chunk so that the encoded samples are never held whole.
  static std::string sealed_digest(const std::string& header, const lib_iq_data_arr_t& samples);

  // Writes the sealed file. Its FileName value becomes the base name of `path`. The bytes go to a
  // temporary file in the same folder that replaces `path` only once complete, so a failed save
  // (no such folder, disk full, I/O error) reports itself, returns false and leaves any earlier
  // file at `path` as it was.
  static bool save_iq_waveform_file(const std::string& header, const lib_iq_data_arr_t& samples,
                                    const std::string& path);
  // Sends the sealed header and the samples as one block ("IQDA ", seal field, header, samples;
  // no FileName step) to the connected instrument of the device list. The samples are encoded
  // twice, piece by piece, never held whole: once for the seal, which leads the block, then
  // again while earlier pieces are on the wire. False when none is connected, when it no longer
  // answers, or when the block was not written whole.
  static bool download_iq_waveform(const std::string& header, const lib_iq_data_arr_t& samples);
  // The block for an instrument: "IQDA " followed by the seal field, header and samples.
  static std::string build_instrument_block(const std::string& header,
                                            const lib_iq_data_arr_t& samples);
  // The header with the value of its FileName key replaced; unchanged when it has no such key.
  static std::string replace_file_name(const std::string& header, const std::string& name);
};

}  // namespace nal

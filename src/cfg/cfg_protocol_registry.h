#pragma once
// One row per protocol (listed in cfg_protocol_rows.h): its command-line name, how to make its
// default configuration and a snapshot of one, and how a caller without a page (the command-line
// tool, a page's background task) gets the waveform length, sample points, sample rate, computed
// samples and annotations. It sits beside cfg_protocol_base_t and asks each configuration class
// with an engine for five methods of the same names:
//
//   fp64 get_waveform_length() const;   // seconds
//   uint64 get_sample_points();         // refreshes the derived values first
//   fp64 get_sample_rate() const;       // Hz, of the computed samples
//   const lib_iq_data_arr_t& compute_waveform(lib_iq_data_arr_t& storage);
//   lib_waveform_annotations_t get_annotations() const;  // of the last computed waveform
//
// The table is built on first use and read-only afterwards: any thread may read it.

#include <memory>
#include <string>
#include <vector>

#include "cfg/cfg_protocol_base.h"
#include "lib/lib_waveform_segment.h"

namespace nal {

struct cfg_protocol_row_t {
  protocol_type_t type = PROTOCOL_HOME;
  std::string cli_name;
  // The default configuration; null while this build has no engine for the protocol.
  std::unique_ptr<cfg_protocol_base_t> (*create)() = nullptr;
  // A copy of `configuration` (of this row's class) that continues bit-identically, for a
  // computation off the GUI thread; null for a configuration that cannot be copied.
  std::unique_ptr<cfg_protocol_base_t> (*copy)(const cfg_protocol_base_t& configuration) = nullptr;
  fp64 (*waveform_length)(const cfg_protocol_base_t& configuration) = nullptr;
  uint64 (*sample_points)(cfg_protocol_base_t& configuration) = nullptr;
  fp64 (*sample_rate)(const cfg_protocol_base_t& configuration) = nullptr;
  // Computes the samples of the current settings, as a page's Update does. The result is the
  // engine's own array where it keeps one (no copy), else `storage`; empty when no waveform
  // exists.
  const lib_iq_data_arr_t& (*compute)(cfg_protocol_base_t& configuration,
                                      lib_iq_data_arr_t& storage) = nullptr;
  // Segments of the last computed waveform, of `sample_count` samples; none reaches past them.
  lib_waveform_annotations_t (*annotations)(const cfg_protocol_base_t& configuration,
                                            uint64 sample_count) = nullptr;

  bool has_engine() const { return create != nullptr; }
};

class cfg_protocol_registry_t {
 public:
  // Every protocol in the command line's order; Home has no row.
  static const std::vector<cfg_protocol_row_t>& rows();
  // Null for Home and for values without a protocol.
  static const cfg_protocol_row_t* find(protocol_type_t type);
  static const cfg_protocol_row_t* find(const std::string& cli_name);
};

}  // namespace nal

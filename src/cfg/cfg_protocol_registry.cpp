#include "cfg/cfg_protocol_registry.h"

#include <algorithm>
#include <type_traits>

#include "cfg/cfg_custom_iq.h"
#include "cfg/cfg_protocol_rows.h"

namespace nal {

namespace {

template <typename configuration_t>
const configuration_t& as(const cfg_protocol_base_t& configuration) {
  return static_cast<const configuration_t&>(configuration);
}

template <typename configuration_t>
configuration_t& as(cfg_protocol_base_t& configuration) {
  return static_cast<configuration_t&>(configuration);
}

// An engine may report a segment its waveform does not have (a packet cut short); the row
// never passes one on.
lib_waveform_annotations_t clipped(lib_waveform_annotations_t segments, uint64 sample_count) {
  segments.erase(std::remove_if(segments.begin(), segments.end(),
                                [sample_count](const lib_waveform_segment_t& segment) {
                                  return segment.count == 0 || segment.start >= sample_count;
                                }),
                 segments.end());
  for (lib_waveform_segment_t& segment : segments) {
    segment.count = std::min(segment.count, sample_count - segment.start);
  }
  return segments;
}

template <typename configuration_t>
cfg_protocol_row_t make_row(protocol_type_t type, const char* cli_name) {
  cfg_protocol_row_t row;
  row.type = type;
  row.cli_name = cli_name;
  if constexpr (!std::is_same_v<configuration_t, protocol_not_built_t>) {
    row.create = []() -> std::unique_ptr<cfg_protocol_base_t> {
      return std::make_unique<configuration_t>();
    };
    if constexpr (std::is_copy_constructible_v<configuration_t>) {
      row.copy =
          [](const cfg_protocol_base_t& configuration) -> std::unique_ptr<cfg_protocol_base_t> {
        return std::make_unique<configuration_t>(as<configuration_t>(configuration));
      };
    }
    row.waveform_length = [](const cfg_protocol_base_t& configuration) {
      return as<configuration_t>(configuration).get_waveform_length();
    };
    row.sample_points = [](cfg_protocol_base_t& configuration) -> uint64 {
      return as<configuration_t>(configuration).get_sample_points();
    };
    row.sample_rate = [](const cfg_protocol_base_t& configuration) {
      return as<configuration_t>(configuration).get_sample_rate();
    };
    row.compute = [](cfg_protocol_base_t& configuration,
                     lib_iq_data_arr_t& storage) -> const lib_iq_data_arr_t& {
      return as<configuration_t>(configuration).compute_waveform(storage);
    };
    row.annotations = [](const cfg_protocol_base_t& configuration, uint64 sample_count) {
      return clipped(as<configuration_t>(configuration).get_annotations(), sample_count);
    };
  }
  return row;
}

}  // namespace

const std::vector<cfg_protocol_row_t>& cfg_protocol_registry_t::rows() {
#define WAVELUME_REGISTRY_ROW(type, cli_name, configuration, page) \
  make_row<configuration>(type, cli_name),
  static const std::vector<cfg_protocol_row_t> rows = {
      WAVELUME_PROTOCOL_ROWS(WAVELUME_REGISTRY_ROW)};
#undef WAVELUME_REGISTRY_ROW
  return rows;
}

const cfg_protocol_row_t* cfg_protocol_registry_t::find(protocol_type_t type) {
  for (const cfg_protocol_row_t& row : rows()) {
    if (row.type == type) {
      return &row;
    }
  }
  return nullptr;
}

const cfg_protocol_row_t* cfg_protocol_registry_t::find(const std::string& cli_name) {
  for (const cfg_protocol_row_t& row : rows()) {
    if (row.cli_name == cli_name) {
      return &row;
    }
  }
  return nullptr;
}

}  // namespace nal

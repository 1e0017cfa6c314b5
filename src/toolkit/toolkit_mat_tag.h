#pragma once
// One data element tag of a MAT-file (level 5).

#include "lib/lib_types.h"

namespace nal {

struct toolkit_mat_tag_t {
  uint32 type = 0;
  uint32 byte_count = 0;
  // Small form: tag and up to 4 bytes of data share one 8-byte slot.
  bool small_form = false;
};

// Data types of the MAT-file format that the reader acts on.
constexpr uint32 toolkit_mat_type_int32 = 5;
constexpr uint32 toolkit_mat_type_uint32 = 6;
constexpr uint32 toolkit_mat_type_matrix = 14;
constexpr uint32 toolkit_mat_type_compressed = 15;

}  // namespace nal

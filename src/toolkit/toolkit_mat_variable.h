#pragma once
// One top-level element of a MAT-file as the import lists it. An element that held no numeric
// array (unknown type, refused class, damaged data) stays in the list as an empty record, so that
// list positions match the file's element order.

#include <string>
#include <vector>

#include "lib/lib_types.h"

namespace nal {

struct toolkit_mat_variable_t {
  // 0 real, 1 complex.
  uint32 is_complex = 0;
  std::string name;
  std::vector<int> dimension_list;
  // Count of real or complex values.
  fp64 element_number = 0;
  // Filled for a real variable.
  lib_fp_data_arr_t real_data;
  // Filled for a complex variable.
  lib_iq_data_arr_t complex_data;

  // Dimensions as a page shows them, "1x1000"; empty for an empty record.
  std::string get_size_text() const;
  // "real" or "complex".
  const char* get_kind_text() const { return is_complex ? "complex" : "real"; }
  // True when the record holds values.
  bool has_data() const { return !real_data.empty() || !complex_data.empty(); }
};

}  // namespace nal

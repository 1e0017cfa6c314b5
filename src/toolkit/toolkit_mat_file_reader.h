#pragma once
// Reader of MAT-files of level 5 (the format of MATLAB versions 5 to 7), as the import needs
// them: every top-level element becomes one record of the variable list, in file order, whether
// or not it held a numeric array, so that list positions stay stable for the page.
//
// Read: numeric arrays (classes double to uint64, and char) of any numeric data type, real or
// complex, plain or compressed (type 15, inflated by zlib), in either byte order. Refused with a
// message and an empty record: cell arrays, structures, objects, sparse and function arrays,
// values that do not match the dimensions, and damaged elements. Refused as a whole: files that
// are not MAT-files, and version 7.3 files, which are HDF5 containers.
//
// Values are taken as a flat sequence in file order (column-major), whatever the dimensions.
// Stateless; every report is one line "toolkit_mat_file_reader_t::read Report: ..." on standard
// output, naming the file and the element.

#include <cstddef>
#include <string>
#include <vector>

#include "toolkit/toolkit_mat_variable.h"

namespace nal {

class toolkit_mat_file_reader_t {
 public:
  // Replaces `variables` by the records of `path`. False, with `variables` empty, when the file
  // cannot be opened or its header refuses it; damaged elements are reported, leave an empty
  // record (or end the list, when the file is cut off) and do not make the result false. No
  // element may inflate beyond `inflate_limit_bytes`, nor hold more than a eighth as many values.
  static bool read(const std::string& path, std::size_t inflate_limit_bytes,
                   std::vector<toolkit_mat_variable_t>& variables);
};

}  // namespace nal

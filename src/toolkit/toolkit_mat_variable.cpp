#include "toolkit/toolkit_mat_variable.h"

namespace nal {

std::string toolkit_mat_variable_t::get_size_text() const {
  std::string text;
  for (const int dimension : dimension_list) {
    if (!text.empty()) {
      text += 'x';
    }
    text += std::to_string(dimension);
  }
  return text;
}

}  // namespace nal

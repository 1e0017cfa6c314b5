#include "toolkit/toolkit_regular_file.h"

#include <filesystem>

namespace nal {

bool toolkit_is_regular_file(const std::string& path, std::string& problem) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  switch (status.type()) {
    case std::filesystem::file_type::regular:
      problem.clear();
      return true;
    case std::filesystem::file_type::not_found:
      problem = "no such file";
      break;
    case std::filesystem::file_type::directory:
      problem = "is a directory, not a file";
      break;
    case std::filesystem::file_type::none:
    case std::filesystem::file_type::unknown:
      problem = error ? error.message() : "cannot be examined";
      break;
    default:
      problem = "is a device, pipe or socket, not a regular file";
      break;
  }
  return false;
}

}  // namespace nal

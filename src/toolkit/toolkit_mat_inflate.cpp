#include "toolkit/toolkit_mat_inflate.h"

#include <unistd.h>
#include <zlib.h>

#include <algorithm>

#include "toolkit/toolkit_mat_buffer.h"

namespace nal {

namespace {

constexpr std::size_t tag_bytes = 8;

std::string zlib_problem(int code) {
  switch (code) {
    case Z_DATA_ERROR:
      return "the compressed data is damaged or cut off";
    case Z_MEM_ERROR:
      return "out of memory";
    case Z_BUF_ERROR:
      return "the element inflates to more bytes than its tag declares";
    default:
      return "zlib error " + std::to_string(code);
  }
}

}  // namespace

std::size_t toolkit_mat_inflate_t::default_limit_bytes() {
  constexpr std::size_t one_gib = std::size_t{1} << 30;
  const long pages = sysconf(_SC_PHYS_PAGES);
  const long page_size = sysconf(_SC_PAGE_SIZE);
  if (pages <= 0 || page_size <= 0) {
    return one_gib;
  }
  const std::size_t quarter =
      static_cast<std::size_t>(pages) / 4 * static_cast<std::size_t>(page_size);
  return std::min(one_gib, quarter);
}

bool toolkit_mat_inflate_t::inflate(const std::uint8_t* compressed, std::size_t compressed_size,
                                    bool big_endian, std::size_t limit_bytes,
                                    std::vector<std::uint8_t>& inflated, std::string& problem) {
  inflated.assign(tag_bytes, 0);
  uLongf head_length = tag_bytes;
  // A full head comes back as Z_BUF_ERROR: the stream goes on past the 8 bytes asked for.
  const int head_code = uncompress(inflated.data(), &head_length, compressed, compressed_size);
  if ((head_code != Z_OK && head_code != Z_BUF_ERROR) || head_length < tag_bytes) {
    problem =
        zlib_problem(head_code == Z_OK || head_code == Z_BUF_ERROR ? Z_DATA_ERROR : head_code);
    inflated.clear();
    return false;
  }
  toolkit_mat_buffer_t head(inflated.data(), inflated.size(), big_endian);
  toolkit_mat_tag_t tag;
  if (!head.read_tag(tag) || tag.type != toolkit_mat_type_matrix) {
    return true;
  }
  const std::size_t declared = tag_bytes + static_cast<std::size_t>(tag.byte_count);
  if (declared > limit_bytes) {
    problem = "the element would inflate to " + std::to_string(declared) +
              " bytes, beyond the limit of " + std::to_string(limit_bytes) + " bytes";
    inflated.clear();
    return false;
  }
  inflated.assign(declared, 0);
  uLongf length = declared;
  const int code = uncompress(inflated.data(), &length, compressed, compressed_size);
  if (code != Z_OK) {
    problem = zlib_problem(code);
    inflated.clear();
    return false;
  }
  inflated.resize(length);
  return true;
}

}  // namespace nal

#pragma once
// A strict reader of the ZIP archives that state and project files are: it locates entries
// through the central directory and inflates one entry into memory with hard limits, checking
// its size and CRC. Any damage (truncation, sizes that disagree, a corrupt stream, ZIP64) is a
// refusal, never a long loop or a large allocation. Nothing is ever written to disk.

#include <string>
#include <vector>

#include "lib/lib_types.h"

namespace nal {

class cfg_zip_reader_t {
 public:
  // Reads the central directory of `archive`; false when it cannot be found or is damaged.
  // `archive` must outlive the reader.
  bool open(const std::string& archive);
  // The data of the file entry called exactly `name`; false when it is missing, larger than
  // `max_bytes` once inflated, stored with another method than store or deflate, or damaged.
  bool entry(const std::string& name, std::size_t max_bytes, std::string& data) const;

 private:
  struct entry_t {
    std::string name;
    uint32 method = 0;
    uint32 crc = 0;
    uint64 compressed_size = 0;
    uint64 size = 0;
    uint64 local_header = 0;
  };

  const std::string* _archive = nullptr;
  std::vector<entry_t> _entries;
};

}  // namespace nal

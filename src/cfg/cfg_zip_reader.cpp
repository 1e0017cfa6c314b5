#include "cfg/cfg_zip_reader.h"

#include <zlib.h>

#include <algorithm>

namespace nal {

namespace {

constexpr uint32 end_signature = 0x06054b50;
constexpr uint32 central_signature = 0x02014b50;
constexpr uint32 local_signature = 0x04034b50;
constexpr std::size_t end_record_size = 22;
constexpr std::size_t central_header_size = 46;
constexpr std::size_t local_header_size = 30;
constexpr std::size_t max_comment_size = 0xFFFF;
constexpr uint32 method_stored = 0;
constexpr uint32 method_deflated = 8;

// Little-endian fields, read only where the caller has checked the bounds.
uint32 read16(const std::string& bytes, std::size_t at) {
  return static_cast<uint32>(static_cast<unsigned char>(bytes[at])) |
         static_cast<uint32>(static_cast<unsigned char>(bytes[at + 1])) << 8;
}

uint32 read32(const std::string& bytes, std::size_t at) {
  return read16(bytes, at) | read16(bytes, at + 2) << 16;
}

bool inflate_raw(const char* compressed, std::size_t compressed_size, std::string& data) {
  z_stream stream{};
  if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
    return false;
  }
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(compressed));
  stream.avail_in = static_cast<uInt>(compressed_size);
  stream.next_out = reinterpret_cast<Bytef*>(data.data());
  stream.avail_out = static_cast<uInt>(data.size());
  // One call: the output buffer has exactly the declared size, so the stream must end inside it.
  const int result = inflate(&stream, Z_FINISH);
  const bool complete = result == Z_STREAM_END && stream.avail_out == 0;
  inflateEnd(&stream);
  return complete;
}

}  // namespace

bool cfg_zip_reader_t::open(const std::string& archive) {
  _archive = &archive;
  _entries.clear();
  if (archive.size() < end_record_size) {
    return false;
  }
  // The end record sits in the last 22 bytes plus at most a 64 KiB comment.
  const std::size_t lowest = archive.size() > end_record_size + max_comment_size
                                 ? archive.size() - end_record_size - max_comment_size
                                 : 0;
  std::size_t end = archive.size() - end_record_size + 1;
  do {
    --end;
  } while (end > lowest && read32(archive, end) != end_signature);
  if (read32(archive, end) != end_signature) {
    return false;
  }
  const uint32 count = read16(archive, end + 10);
  const uint64 directory_size = read32(archive, end + 12);
  const uint64 directory = read32(archive, end + 16);
  if (directory + directory_size > end) {
    return false;
  }
  uint64 at = directory;
  for (uint32 i = 0; i < count; ++i) {
    if (at + central_header_size > end || read32(archive, at) != central_signature) {
      return false;
    }
    entry_t entry;
    entry.method = read16(archive, at + 10);
    entry.crc = read32(archive, at + 16);
    entry.compressed_size = read32(archive, at + 20);
    entry.size = read32(archive, at + 24);
    const uint64 name_size = read16(archive, at + 28);
    const uint64 extra_size = read16(archive, at + 30);
    const uint64 comment_size = read16(archive, at + 32);
    entry.local_header = read32(archive, at + 42);
    if (at + central_header_size + name_size > end) {
      return false;
    }
    entry.name = archive.substr(at + central_header_size, name_size);
    _entries.push_back(std::move(entry));
    at += central_header_size + name_size + extra_size + comment_size;
  }
  return true;
}

bool cfg_zip_reader_t::entry(const std::string& name, std::size_t max_bytes,
                             std::string& data) const {
  const auto found = std::find_if(_entries.begin(), _entries.end(),
                                  [&name](const entry_t& e) { return e.name == name; });
  if (_archive == nullptr || found == _entries.end() || found->size > max_bytes) {
    return false;
  }
  const std::string& archive = *_archive;
  const uint64 header = found->local_header;
  if (header + local_header_size > archive.size() || read32(archive, header) != local_signature) {
    return false;
  }
  const uint64 start =
      header + local_header_size + read16(archive, header + 26) + read16(archive, header + 28);
  if (start + found->compressed_size > archive.size()) {
    return false;
  }
  const char* compressed = archive.data() + start;
  data.assign(static_cast<std::size_t>(found->size), '\0');
  bool complete = false;
  if (found->method == method_stored) {
    complete = found->compressed_size == found->size;
    if (complete) {
      std::copy_n(compressed, data.size(), data.begin());
    }
  } else if (found->method == method_deflated) {
    complete = found->size == 0 ? true : inflate_raw(compressed, found->compressed_size, data);
  }
  const uint32 crc = static_cast<uint32>(
      crc32(0, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(data.size())));
  if (!complete || crc != found->crc) {
    data.clear();
    return false;
  }
  return true;
}

}  // namespace nal

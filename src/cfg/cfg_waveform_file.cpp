#include "cfg/cfg_waveform_file.h"

#include <QSaveFile>

#if defined(__linux__)
#include <fcntl.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "cfg/cfg_background_md5.h"
#include "cfg/cfg_md5.h"
#include "cfg/cfg_sample_encoder.h"
#include "lib/lib_report.h"

namespace nal {

namespace {

bool write_all(QSaveFile& file, const void* data, std::size_t size) {
  return file.write(static_cast<const char*>(data), static_cast<qint64>(size)) ==
         static_cast<qint64>(size);
}

// Starts writing the file's dirty pages to the disk without waiting, so that the flush to disk
// when the file is committed finds little left to do. Only a hint: where it is not available the
// commit does all of it.
void start_writeback(QSaveFile& file) {
#if defined(__linux__)
  sync_file_range(file.handle(), 0, 0, SYNC_FILE_RANGE_WRITE);
#else
  (void)file;
#endif
}

// Feeds `header`, then the samples encoded chunk by chunk, to `hash`: each chunk is encoded into
// a slot of the hash thread and handed to `use` (false stops the pass) before it is hashed, so
// hashing overlaps encoding the next chunk. The chunks are cache-sized, so the encoded samples
// are never held whole.
template <typename use_t>
bool hash_encoded(const std::string& header, const lib_iq_data_arr_t& samples,
                  cfg_background_md5_t& hash, use_t use) {
  for (std::size_t first = 0; first < header.size(); first += hash.slot_bytes()) {
    const std::size_t count = std::min(hash.slot_bytes(), header.size() - first);
    std::memcpy(hash.acquire(), header.data() + first, count);
    hash.submit(count);
  }
  const std::size_t chunk_samples = hash.slot_bytes() / 4;
  for (std::size_t first = 0; first < samples.size(); first += chunk_samples) {
    const std::size_t count = std::min(chunk_samples, samples.size() - first);
    unsigned char* chunk = hash.acquire();
    cfg_sample_encoder_t::encode(samples.data() + first, count, chunk);
    const bool used = use(chunk, count * 4);
    hash.submit(count * 4);
    if (!used) {
      return false;
    }
  }
  return true;
}

constexpr std::size_t hash_slots = 16;
constexpr std::size_t hash_slot_bytes = std::size_t{4} << 15;

}  // namespace

std::string cfg_waveform_file_t::encode_samples(const lib_iq_data_arr_t& samples) {
  std::string bytes(samples.size() * 4, '\0');
  cfg_sample_encoder_t::encode(samples.data(), samples.size(),
                               reinterpret_cast<unsigned char*>(bytes.data()));
  return bytes;
}

std::string cfg_waveform_file_t::seal_field(const std::string& bytes) {
  return "CheckCode," + cfg_md5_t::hex_digest_of(bytes.data(), bytes.size()) + ",";
}

std::string cfg_waveform_file_t::sealed_digest(const std::string& header,
                                               const lib_iq_data_arr_t& samples) {
  cfg_background_md5_t hash(hash_slots, hash_slot_bytes);
  hash_encoded(header, samples, hash, [](const unsigned char*, std::size_t) { return true; });
  return hash.finish_hex();
}

bool cfg_waveform_file_t::save_iq_waveform_file(const std::string& header,
                                                const lib_iq_data_arr_t& samples,
                                                const std::string& path) {
  QSaveFile file(QString::fromStdString(path));
  // Unbuffered: the chunks are large already, and the writeback hint must see every byte.
  if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
    common_lib::lib_report("error can't open the file " + path);
    return false;
  }
  std::size_t separator = path.find_last_of('\\');
  if (separator == std::string::npos) {
    separator = path.find_last_of('/');
  }
  // A bare name is its own base name: "d.ARB" and "./d.ARB" give the same header.
  const std::string named =
      replace_file_name(header, separator == std::string::npos ? path : path.substr(separator + 1));
  // One pass: each chunk is written while the hash thread works behind. The seal has a fixed
  // width, so it is written as a placeholder first and filled in at the end. The disk writes
  // run behind, in the background, a few megabytes at a time.
  constexpr std::size_t chunks_per_writeback = 16;
  cfg_background_md5_t hash(hash_slots, hash_slot_bytes);
  const std::string placeholder = "CheckCode," + std::string(32, '0') + ",";
  errno = 0;
  bool written = write_all(file, placeholder.data(), placeholder.size()) &&
                 write_all(file, named.data(), named.size());
  std::size_t chunks = 0;
  written = written &&
            hash_encoded(named, samples, hash, [&](const unsigned char* chunk, std::size_t size) {
              const bool chunk_written = write_all(file, chunk, size);
              if (++chunks % chunks_per_writeback == 0) {
                start_writeback(file);
              }
              return chunk_written;
            });
  const std::string digest = hash.finish_hex();
  written = written && file.seek(static_cast<qint64>(std::string("CheckCode,").size())) &&
            write_all(file, digest.data(), digest.size());
  if (!written || !file.flush() || !file.commit()) {
    // The operating system's reason (disk full, file too large) says more than Qt's text.
    const std::string reason = errno != 0 ? std::strerror(errno) : file.errorString().toStdString();
    file.cancelWriting();
    common_lib::lib_report("error can't write the file " + path + ": " + reason);
    return false;
  }
  return true;
}

std::string cfg_waveform_file_t::build_instrument_block(const std::string& header,
                                                        const lib_iq_data_arr_t& samples) {
  const std::string body = header + encode_samples(samples);
  return "IQDA " + seal_field(body) + body;
}

}  // namespace nal

#include "cfg/cfg_waveform_file.h"

#include <QSaveFile>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iomanip>
#include <sstream>
#include <vector>

#include "cfg/cfg_background_md5.h"
#include "lib/lib_report.h"

namespace nal {

namespace {

constexpr fp64 full_scale = 32767.0;
constexpr const char* file_name_key = "FileName,";

struct protocol_text_t {
  const char* type;
  const char* version;
};

std::optional<protocol_text_t> protocol_text(protocol_type_t type) {
  switch (type) {
    case PROTOCOL_BLUETOOTH_LE:
      return protocol_text_t{"BluetoothLowEnergy", "V5.2"};
    case PROTOCOL_BLUETOOTH_BR_EDR:
      return protocol_text_t{"BluetoothBrEdr", "V5.2"};
    case PROTOCOL_CUSTOM_OFDM:
      return protocol_text_t{"CustomOFDM", "Undefined"};
    case PROTOCOL_802154_OQPSK_BPSK:
      return protocol_text_t{"Iot802154OqpskBpsk", "802.15.4-2020"};
    case PROTOCOL_802154_SUN_FSK:
      return protocol_text_t{"Iot802154SunFsk", "802.15.4-2020"};
    case PROTOCOL_802154_SUN_OFDM:
      return protocol_text_t{"Iot802154SunOFDM", "802.15.4-2020"};
    case PROTOCOL_G9959:
      return protocol_text_t{"IotItuTG9959", "ITU-2015"};
    case PROTOCOL_CUSTOM_IQ:
    case PROTOCOL_TOOLKIT:
      return protocol_text_t{"CustomIq", "Undefined"};
    default:
      return std::nullopt;
  }
}

// round(value * 32767), half away from zero, as the low 16 bits of a two's complement integer;
// 0 for what cannot be rounded to a 64-bit integer. The rounding is done on the integer part and
// the exact remainder, which equals the C library's round without a call per sample.
std::uint16_t encode_component(fp64 value) {
  const fp64 scaled = value * full_scale;
  if (!(std::abs(scaled) < 9.0e18)) {
    return 0;
  }
  auto whole = static_cast<std::int64_t>(scaled);  // toward zero
  const fp64 remainder = scaled - static_cast<fp64>(whole);
  if (remainder >= 0.5) {
    ++whole;
  } else if (remainder <= -0.5) {
    --whole;
  }
  return static_cast<std::uint16_t>(static_cast<std::uint64_t>(whole));
}

// The general rule for one sample.
inline void encode_sample(const lib_iq_sample_t& sample, unsigned char* out) {
  const std::uint16_t words[2] = {encode_component(sample.real()), encode_component(sample.imag())};
  std::memcpy(out, words, sizeof words);
}

#if defined(__SSE2__)
// Normalised samples (|I|, |Q| <= 1, where nothing wraps) two lanes at once, with the same
// truncation, exact remainder and half-away-from-zero step; others (and NaN) by the general rule.
inline void encode_fast(const lib_iq_sample_t& sample, unsigned char* out) {
  const __m128d value = _mm_loadu_pd(reinterpret_cast<const fp64*>(&sample));
  const __m128d magnitude = _mm_andnot_pd(_mm_set1_pd(-0.0), value);
  if (_mm_movemask_pd(_mm_cmple_pd(magnitude, _mm_set1_pd(1.0))) != 3) {
    encode_sample(sample, out);
    return;
  }
  const __m128d scaled = _mm_mul_pd(value, _mm_set1_pd(full_scale));
  const __m128i whole = _mm_cvttpd_epi32(scaled);
  const __m128d remainder = _mm_sub_pd(scaled, _mm_cvtepi32_pd(whole));
  // The comparison masks are 64-bit; their low halves line up with the two 32-bit lanes.
  const __m128i up = _mm_shuffle_epi32(_mm_castpd_si128(_mm_cmpge_pd(remainder, _mm_set1_pd(0.5))),
                                       _MM_SHUFFLE(3, 3, 2, 0));
  const __m128i down = _mm_shuffle_epi32(
      _mm_castpd_si128(_mm_cmple_pd(remainder, _mm_set1_pd(-0.5))), _MM_SHUFFLE(3, 3, 2, 0));
  const __m128i rounded = _mm_add_epi32(_mm_sub_epi32(whole, up), down);
  const int words = _mm_cvtsi128_si32(_mm_packs_epi32(rounded, rounded));
  std::memcpy(out, &words, sizeof words);
}
#else
inline void encode_fast(const lib_iq_sample_t& sample, unsigned char* out) {
  encode_sample(sample, out);
}
#endif

// Encodes `count` samples into 4 count bytes at `out`.
void encode_into(const lib_iq_sample_t* samples, std::size_t count, unsigned char* out) {
  static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the file is little endian");
  for (std::size_t i = 0; i < count; ++i) {
    encode_fast(samples[i], out + 4 * i);
  }
}

bool write_all(QSaveFile& file, const void* data, std::size_t size) {
  return file.write(static_cast<const char*>(data), static_cast<qint64>(size)) ==
         static_cast<qint64>(size);
}

}  // namespace

std::string cfg_waveform_file_t::build_file_header(const std::string& name, protocol_type_t type) {
  std::string header = "FileType,IQ,Version,3.0,FileName,";
  header += name;
  header += ",SoftwareName,Wavelume,SoftwareVersion,2.0.0.1.2,ProtocolType,";
  const std::optional<protocol_text_t> text = protocol_text(type);
  if (!text) {
    common_lib::lib_report("error");
  }
  header += text ? text->type : "";
  header += ",ProtocolVersion,";
  header += text ? text->version : "";
  header += ",";
  return header;
}

std::string cfg_waveform_file_t::header_file_name(const std::string& waveform_name) {
  return waveform_name.empty() ? "CurrentSettings" : waveform_name + ".ARB";
}

std::string cfg_waveform_file_t::header_tail(fp64 sample_rate, std::optional<fp64> rms) {
  std::ostringstream tail;
  tail << std::setprecision(15) << "SampleRate," << sample_rate << ",";
  if (rms) {
    tail << "RMS," << *rms << ",";
  }
  tail << "IQData,";
  return tail.str();
}

std::string cfg_waveform_file_t::encode_samples(const lib_iq_data_arr_t& samples) {
  std::string bytes(samples.size() * 4, '\0');
  encode_into(samples.data(), samples.size(), reinterpret_cast<unsigned char*>(bytes.data()));
  return bytes;
}

std::string cfg_waveform_file_t::seal_field(const std::string& bytes) {
  return "CheckCode," + cfg_background_md5_t::hex_digest(bytes.data(), bytes.size()) + ",";
}

std::string cfg_waveform_file_t::replace_file_name(const std::string& header,
                                                   const std::string& name) {
  const std::size_t key = header.find(file_name_key);
  if (key == std::string::npos) {
    return header;
  }
  const std::size_t value = key + std::char_traits<char>::length(file_name_key);
  const std::size_t end = header.find(',', value);
  return header.substr(0, value) + name + (end == std::string::npos ? "" : header.substr(end));
}

bool cfg_waveform_file_t::save_iq_waveform_file(const std::string& header,
                                                const lib_iq_data_arr_t& samples,
                                                const std::string& path) {
  QSaveFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::WriteOnly)) {
    common_lib::lib_report("error can't open the file " + path);
    return false;
  }
  std::size_t separator = path.find_last_of('\\');
  if (separator == std::string::npos) {
    separator = path.find_last_of('/');
  }
  const std::string named = separator == std::string::npos
                                ? header
                                : replace_file_name(header, path.substr(separator + 1));
  // One pass in cache-sized chunks: each is encoded into a slot of the hash thread, written,
  // then hashed there while the next is encoded. The seal has a fixed width, so it is written
  // as a placeholder first and filled in at the end.
  constexpr std::size_t chunk_samples = 1 << 15;
  cfg_background_md5_t hash(16, chunk_samples * 4);
  for (std::size_t first = 0; first < named.size(); first += hash.slot_bytes()) {
    const std::size_t count = std::min(hash.slot_bytes(), named.size() - first);
    std::memcpy(hash.acquire(), named.data() + first, count);
    hash.submit(count);
  }
  const std::string placeholder = "CheckCode," + std::string(32, '0') + ",";
  errno = 0;
  bool written = write_all(file, placeholder.data(), placeholder.size()) &&
                 write_all(file, named.data(), named.size());
  for (std::size_t first = 0; written && first < samples.size(); first += chunk_samples) {
    const std::size_t count = std::min(chunk_samples, samples.size() - first);
    unsigned char* chunk = hash.acquire();
    encode_into(samples.data() + first, count, chunk);
    written = write_all(file, chunk, count * 4);
    hash.submit(count * 4);
  }
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

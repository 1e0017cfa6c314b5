#include "cfg/cfg_waveform_file.h"

#include <QCryptographicHash>
#include <QSaveFile>

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iomanip>
#include <sstream>

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

// The low 16 bits of round(value * 32767), as two bytes, low byte first.
void append_component(fp64 value, std::string& bytes) {
  const fp64 scaled = std::round(value * full_scale);
  const bool representable = std::isfinite(scaled) && std::abs(scaled) < 9.0e18;
  const auto word = static_cast<std::uint16_t>(
      representable ? static_cast<std::uint64_t>(static_cast<std::int64_t>(scaled)) : 0u);
  bytes.push_back(static_cast<char>(word & 0xFFu));
  bytes.push_back(static_cast<char>(word >> 8));
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
  std::string bytes;
  bytes.reserve(samples.size() * 4);
  for (const auto& sample : samples) {
    append_component(sample.real(), bytes);
    append_component(sample.imag(), bytes);
  }
  return bytes;
}

std::string cfg_waveform_file_t::seal_field(const std::string& bytes) {
  const QByteArray digest =
      QCryptographicHash::hash(
          QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size())),
          QCryptographicHash::Md5)
          .toHex();
  return "CheckCode," + digest.toStdString() + ",";
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
  const std::string body = named + encode_samples(samples);
  const std::string sealed = seal_field(body) + body;
  errno = 0;
  const qint64 written = file.write(sealed.data(), static_cast<qint64>(sealed.size()));
  if (written != static_cast<qint64>(sealed.size()) || !file.flush() || !file.commit()) {
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

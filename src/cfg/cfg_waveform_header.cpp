// The header half of the waveform file: its fixed keys, the protocol texts, the tail with
// SampleRate and RMS, and the FileName step.

#include <algorithm>
#include <cmath>
#include <functional>
#include <iomanip>
#include <optional>
#include <sstream>
#include <system_error>
#include <thread>
#include <vector>

#include "cfg/cfg_software_version.h"
#include "cfg/cfg_waveform_file.h"
#include "lib/lib_report.h"

namespace nal {

namespace {

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

// The sum of |sample|^2 over [first, last) of fixed blocks, each block summed in order.
void sum_blocks(const lib_iq_data_arr_t& samples, std::size_t block_samples, std::size_t first,
                std::size_t last, std::vector<fp64>& block_sums) {
  for (std::size_t block = first; block < last; ++block) {
    const std::size_t end = std::min(samples.size(), (block + 1) * block_samples);
    fp64 sum = 0.0;
    for (std::size_t i = block * block_samples; i < end; ++i) {
      sum += samples[i].real() * samples[i].real() + samples[i].imag() * samples[i].imag();
    }
    block_sums[block] = sum;
  }
}

}  // namespace

std::string cfg_waveform_file_t::build_file_header(const std::string& name, protocol_type_t type) {
  std::string header = "FileType,IQ,Version,3.0,FileName,";
  header += name;
  header += ",SoftwareName,Wavelume,SoftwareVersion,";
  header += cfg_software_version;
  header += ",ProtocolType,";
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

fp64 cfg_waveform_file_t::header_rms(const lib_iq_data_arr_t& samples) {
  if (samples.empty()) {
    return 0.0;
  }
  // Fixed blocks whose sums are added in block order, so that the value does not depend on
  // which thread summed which block. One core cannot stream a long waveform from memory as fast
  // as two, and the file's seal can only start once the header is known.
  constexpr std::size_t block_samples = 1 << 16;
  const std::size_t block_count = (samples.size() + block_samples - 1) / block_samples;
  std::vector<fp64> block_sums(block_count);
  const std::size_t half = block_count / 2;
  std::thread helper;
  if (half > 0) {
    try {
      helper = std::thread(sum_blocks, std::cref(samples), block_samples, half, block_count,
                           std::ref(block_sums));
    } catch (const std::system_error&) {
      // No thread to be had: this one sums every block.
    }
  }
  sum_blocks(samples, block_samples, 0, helper.joinable() ? half : block_count, block_sums);
  if (helper.joinable()) {
    helper.join();
  }
  fp64 sum = 0.0;
  for (const fp64 block_sum : block_sums) {
    sum += block_sum;
  }
  return std::sqrt(sum / static_cast<fp64>(samples.size()));
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

}  // namespace nal

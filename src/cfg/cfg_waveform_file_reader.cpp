#include "cfg/cfg_waveform_file_reader.h"

#include <cstdint>
#include <fstream>
#include <iterator>

#include "cfg/cfg_waveform_file.h"

namespace nal {

namespace {

constexpr const char* seal_key = "CheckCode,";
constexpr const char* data_key = "IQData";

}  // namespace

std::string cfg_waveform_file_contents_t::field(const std::string& key) const {
  for (const auto& [name, value] : fields) {
    if (name == key) {
      return value;
    }
  }
  return {};
}

bool cfg_waveform_file_reader_t::read(const std::string& path,
                                      cfg_waveform_file_contents_t& contents, std::string& error) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    error = "cannot open '" + path + "'";
    return false;
  }
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (in.bad()) {
    error = "cannot read '" + path + "'";
    return false;
  }
  return parse(bytes, contents, error);
}

bool cfg_waveform_file_reader_t::parse(const std::string& bytes,
                                       cfg_waveform_file_contents_t& contents, std::string& error) {
  contents = {};
  std::size_t header_start = 0;
  std::string seal;
  const std::size_t seal_key_length = std::char_traits<char>::length(seal_key);
  if (bytes.compare(0, seal_key_length, seal_key) == 0) {
    const std::size_t end = bytes.find(',', seal_key_length);
    if (end == std::string::npos || end - seal_key_length > 64) {
      error = "the seal field is not closed";
      return false;
    }
    seal = bytes.substr(seal_key_length, end - seal_key_length);
    header_start = end + 1;
  }

  // Tokens alternate key, value up to the first token IQData, which has no value.
  std::vector<std::string> tokens;
  std::size_t position = header_start;
  bool closed = false;
  while (position - header_start <= max_header_bytes) {
    const std::size_t comma = bytes.find(',', position);
    if (comma == std::string::npos || comma - header_start > max_header_bytes) {
      break;
    }
    std::string token = bytes.substr(position, comma - position);
    position = comma + 1;
    if (token == data_key) {
      closed = true;
      break;
    }
    tokens.push_back(std::move(token));
  }
  if (!closed) {
    error = "no IQData key within the first " + std::to_string(max_header_bytes) +
            " bytes: not a waveform file";
    return false;
  }
  const std::size_t data_length = bytes.size() - position;
  if (data_length % 4 != 0) {
    error = "the sample area holds " + std::to_string(data_length) +
            " bytes, not whole I/Q pairs of 16-bit values";
    return false;
  }

  for (std::size_t i = 0; i < tokens.size(); i += 2) {
    contents.fields.emplace_back(tokens[i], i + 1 < tokens.size() ? tokens[i + 1] : "");
  }
  const auto word = [&bytes](std::size_t at) {
    const auto low = static_cast<std::uint8_t>(bytes[at]);
    const auto high = static_cast<std::uint8_t>(bytes[at + 1]);
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(low | (high << 8)));
  };
  contents.samples.reserve(data_length / 4);
  for (std::size_t at = position; at < bytes.size(); at += 4) {
    contents.samples.emplace_back(word(at) / 32767.0, word(at + 2) / 32767.0);
  }
  if (header_start != 0) {
    const std::string expected =
        cfg_waveform_file_t::seal_field(bytes.substr(header_start)).substr(seal_key_length);
    contents.seal = expected == seal + "," ? cfg_waveform_file_contents_t::SEAL_MATCHES
                                           : cfg_waveform_file_contents_t::SEAL_MISMATCH;
  }
  return true;
}

}  // namespace nal

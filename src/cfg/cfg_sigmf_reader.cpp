#include "cfg/cfg_sigmf_reader.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cstdint>
#include <cstring>

namespace nal {

namespace {

constexpr const char* meta_suffix = ".sigmf-meta";
constexpr const char* data_suffix = ".sigmf-data";

bool ends_with(const std::string& text, const std::string& ending) {
  return text.size() >= ending.size() &&
         text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

std::string with_suffix(const std::string& path, const char* suffix) {
  const std::size_t stem = path.size() - std::strlen(meta_suffix);
  return path.substr(0, stem) + suffix;
}

template <typename component_t>
component_t component_at(const QByteArray& bytes, std::size_t index) {
  component_t value;
  std::memcpy(&value, bytes.constData() + index * sizeof(component_t), sizeof(component_t));
  return value;
}

// Little-endian components, `per_sample` of them (2 complex, 1 real) per sample, divided by
// `scale`. This build runs on little-endian machines only.
template <typename component_t>
void decode(const QByteArray& bytes, int per_sample, fp64 scale, lib_iq_data_arr_t& samples) {
  const std::size_t count = static_cast<std::size_t>(bytes.size()) / sizeof(component_t) /
                            static_cast<std::size_t>(per_sample);
  samples.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t first = i * static_cast<std::size_t>(per_sample);
    const fp64 in_phase = static_cast<fp64>(component_at<component_t>(bytes, first)) / scale;
    const fp64 quadrature =
        per_sample == 2 ? static_cast<fp64>(component_at<component_t>(bytes, first + 1)) / scale
                        : 0.0;
    samples[i] = lib_iq_sample_t(in_phase, quadrature);
  }
}

bool decode_samples(const std::string& datatype, const QByteArray& bytes,
                    lib_iq_data_arr_t& samples) {
  if (datatype == "cf32_le") {
    decode<float>(bytes, 2, 1.0, samples);
  } else if (datatype == "cf64_le") {
    decode<double>(bytes, 2, 1.0, samples);
  } else if (datatype == "rf32_le") {
    decode<float>(bytes, 1, 1.0, samples);
  } else if (datatype == "ci16_le") {
    decode<std::int16_t>(bytes, 2, 32767.0, samples);
  } else if (datatype == "ci8") {
    decode<std::int8_t>(bytes, 2, 127.0, samples);
  } else {
    return false;
  }
  return true;
}

bool read_file(const std::string& path, long long limit, QByteArray& bytes, std::string& error) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) {
    error = "cannot read '" + path + "': " + file.errorString().toStdString();
    return false;
  }
  if (limit > 0 && file.size() > limit) {
    error = "'" + path + "' is larger than " + std::to_string(limit >> 20) + " MiB";
    return false;
  }
  bytes = file.readAll();
  return true;
}

// A JSON number as a sample index; negative, fractional or absurd values cannot come from a
// writer, and are taken as 0 or as the largest exact index.
uint64 sample_index(const QJsonValue& value) {
  const fp64 number = value.toDouble(0.0);
  constexpr fp64 largest_exact = 9007199254740992.0;
  return number > 0.0 ? static_cast<uint64>(std::min(number, largest_exact)) : 0;
}

}  // namespace

bool cfg_sigmf_reader_t::is_sigmf_path(const std::string& path) {
  return ends_with(path, meta_suffix) || ends_with(path, data_suffix);
}

bool cfg_sigmf_reader_t::read(const std::string& path, cfg_sigmf_recording_t& recording,
                              std::string& error) {
  recording = {};
  if (!is_sigmf_path(path)) {
    error = "'" + path + "' is not a .sigmf-meta or .sigmf-data file";
    return false;
  }
  const std::string meta_path = with_suffix(path, meta_suffix);
  QByteArray meta_bytes;
  if (!read_file(meta_path, max_meta_bytes, meta_bytes, error)) {
    return false;
  }
  QJsonParseError parse_error;
  const QJsonDocument meta = QJsonDocument::fromJson(meta_bytes, &parse_error);
  if (!meta.isObject()) {
    error = "'" + meta_path +
            "' is not a SigMF JSON object: " + parse_error.errorString().toStdString();
    return false;
  }
  const QJsonObject global = meta.object().value("global").toObject();
  recording.datatype = global.value("core:datatype").toString().toStdString();
  recording.sample_rate = global.value("core:sample_rate").toDouble(0.0);
  recording.description = global.value("core:description").toString().toStdString();

  const std::string data_path = with_suffix(path, data_suffix);
  QByteArray data_bytes;
  if (!read_file(data_path, 0, data_bytes, error)) {
    return false;
  }
  if (!decode_samples(recording.datatype, data_bytes, recording.samples)) {
    error = "'" + meta_path + "' has the data type '" + recording.datatype +
            "'; readable are cf32_le, cf64_le, ci16_le, ci8 and rf32_le";
    return false;
  }
  const uint64 sample_count = recording.samples.size();
  for (const QJsonValue& entry : meta.object().value("annotations").toArray()) {
    const QJsonObject annotation = entry.toObject();
    lib_waveform_segment_t segment;
    segment.start = sample_index(annotation.value("core:sample_start"));
    segment.count = annotation.contains("core:sample_count")
                        ? sample_index(annotation.value("core:sample_count"))
                        : (segment.start < sample_count ? sample_count - segment.start : 0);
    segment.label = annotation.value("core:label").toString().toStdString();
    recording.annotations.push_back(std::move(segment));
  }
  return true;
}

}  // namespace nal

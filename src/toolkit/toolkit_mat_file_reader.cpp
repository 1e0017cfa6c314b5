#include "toolkit/toolkit_mat_file_reader.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>

#include "lib/lib_report.h"
#include "toolkit/toolkit_mat_buffer.h"
#include "toolkit/toolkit_mat_inflate.h"
#include "toolkit/toolkit_regular_file.h"

namespace nal {

namespace {

using byte_vector_t = std::vector<std::uint8_t>;

constexpr std::size_t header_bytes = 128;
constexpr std::size_t tag_bytes = 8;
constexpr std::uint32_t complex_flag = 0x800;
constexpr char hdf5_signature[] = "\x89HDF\r\n\x1a\n";

void report(const std::string& text) {
  common_lib::lib_report("toolkit_mat_file_reader_t::read Report: " + text);
}

// The file, the element and, once known, the variable a message is about.
struct element_context_t {
  const std::string& path;
  std::size_t index;
  std::size_t offset;
  std::string name;

  void report(const std::string& text) const {
    std::string where =
        path + ", element " + std::to_string(index) + " at byte " + std::to_string(offset);
    if (!name.empty()) {
      where += ", variable '" + name + "'";
    }
    nal::report(text + " (" + where + ")");
  }
};

bool starts_with(const byte_vector_t& bytes, std::size_t offset, const char* text) {
  const std::size_t length = std::strlen(text);
  return bytes.size() >= offset + length && std::memcmp(bytes.data() + offset, text, length) == 0;
}

// Version 7.3 files are HDF5 containers behind a 512-byte user block whose text names them.
bool is_hdf5(const byte_vector_t& header) {
  return starts_with(header, 0, "MATLAB 7.3 MAT-file") || starts_with(header, 0, hdf5_signature);
}

const char* refused_class_name(std::uint32_t array_class) {
  switch (array_class) {
    case 1:
      return "a cell array";
    case 2:
      return "a structure";
    case 3:
      return "an object";
    case 5:
      return "a sparse array";
    default:
      return array_class >= 4 && array_class <= 15 ? nullptr : "not a numeric array";
  }
}

// Reads one numeric sub-element and moves past it.
bool read_number_element(toolkit_mat_buffer_t& buffer, std::size_t value_limit,
                         const element_context_t& context, const char* part,
                         lib_fp_data_arr_t& values) {
  toolkit_mat_tag_t tag;
  if (!buffer.read_tag(tag)) {
    context.report(std::string("vec err: the element ends before its ") + part);
    return false;
  }
  bool unknown_type = false;
  if (!buffer.read_numbers(tag, value_limit, values, unknown_type)) {
    context.report(std::string("the ") + part + " of " + std::to_string(tag.byte_count) +
                   " bytes runs past the end of the element or holds too many values");
    return false;
  }
  if (unknown_type) {
    context.report("default type = " + std::to_string(tag.type));
  }
  return buffer.skip(tag);
}

// Reads the header sub-elements (flags, dimensions, name); false when they are damaged.
bool read_matrix_header(toolkit_mat_buffer_t& buffer, element_context_t& context,
                        std::uint32_t& flags, toolkit_mat_variable_t& variable) {
  toolkit_mat_tag_t tag;
  std::vector<std::uint32_t> words;
  if (!buffer.read_tag(tag) || tag.type != toolkit_mat_type_uint32 ||
      !buffer.read_words(tag, words) || words.empty() || !buffer.skip(tag)) {
    context.report("vec err: the array flags are missing or damaged");
    return false;
  }
  flags = words[0];
  if (!buffer.read_tag(tag) || tag.type != toolkit_mat_type_int32 ||
      !buffer.read_words(tag, words) || words.empty() || !buffer.skip(tag)) {
    context.report("vec err: the dimensions are missing or damaged");
    return false;
  }
  variable.dimension_list.assign(words.begin(), words.end());
  const std::uint8_t* name = nullptr;
  if (!buffer.read_tag(tag) || !buffer.peek_data(tag, name)) {
    context.report("vec err: the name is missing or damaged");
    return false;
  }
  variable.name.assign(reinterpret_cast<const char*>(name), tag.byte_count);
  context.name = variable.name;
  return buffer.skip(tag) || tag.byte_count == 0;
}

bool dimensions_match(const std::vector<int>& dimensions, std::size_t count) {
  unsigned __int128 product = 1;
  for (const int dimension : dimensions) {
    if (dimension < 0) {
      return false;
    }
    product *= static_cast<unsigned>(dimension);
    if (product > count) {
      return false;
    }
  }
  return product == count;
}

void parse_matrix(toolkit_mat_buffer_t& buffer, std::size_t value_limit, element_context_t& context,
                  toolkit_mat_variable_t& variable) {
  std::uint32_t flags = 0;
  if (!read_matrix_header(buffer, context, flags, variable)) {
    return;
  }
  const bool is_complex = (flags & complex_flag) != 0;
  if (const char* refused = refused_class_name(flags & 0xFF)) {
    context.report(std::string("the variable is ") + refused + "; only numeric arrays import");
    variable.is_complex = is_complex;
    return;
  }
  lib_fp_data_arr_t real;
  if (!read_number_element(buffer, value_limit, context, "real part", real)) {
    return;
  }
  if (!is_complex) {
    // Values are kept in file order whatever the dimensions, but a mismatch is worth a warning.
    if (!dimensions_match(variable.dimension_list, real.size())) {
      context.report("the dimensions " + variable.get_size_text() + " do not match the " +
                     std::to_string(real.size()) + " values stored; they are read in file order");
    }
    variable.element_number = static_cast<fp64>(real.size());
    variable.real_data = std::move(real);
    return;
  }
  variable.is_complex = 1;
  lib_fp_data_arr_t imaginary;
  if (!read_number_element(buffer, value_limit, context, "imaginary part", imaginary)) {
    return;
  }
  if (real.size() != imaginary.size() || real.empty()) {
    context.report("the real part holds " + std::to_string(real.size()) +
                   " values and the imaginary part " + std::to_string(imaginary.size()) +
                   "; the variable is not read");
    return;
  }
  if (!dimensions_match(variable.dimension_list, real.size())) {
    context.report("the dimensions " + variable.get_size_text() + " do not match the " +
                   std::to_string(real.size()) + " values stored; they are read in file order");
  }
  variable.complex_data.resize(real.size());
  for (std::size_t k = 0; k < real.size(); ++k) {
    variable.complex_data[k] = lib_iq_sample_t(real[k], imaginary[k]);
  }
  variable.element_number = static_cast<fp64>(real.size());
}

// Parses the inflated or plain bytes of one matrix element, tag included.
void parse_element(const byte_vector_t& bytes, bool big_endian, std::size_t value_limit,
                   element_context_t& context, toolkit_mat_variable_t& variable) {
  toolkit_mat_buffer_t buffer(bytes.data(), bytes.size(), big_endian);
  toolkit_mat_tag_t tag;
  if (!buffer.read_tag(tag) || tag.type != toolkit_mat_type_matrix) {
    context.report("ERR:var_data_type =  " + std::to_string(tag.type));
    return;
  }
  const std::uint8_t* data = nullptr;
  if (!buffer.peek_data(tag, data)) {
    context.report("the inflated matrix declares " + std::to_string(tag.byte_count) +
                   " bytes but holds " + std::to_string(buffer.remaining()));
    return;
  }
  toolkit_mat_buffer_t matrix(data, tag.byte_count, big_endian);
  parse_matrix(matrix, value_limit, context, variable);
}

// Header checks; false, after its reports, when the file is refused.
bool check_header(const std::string& path, const byte_vector_t& header, bool& big_endian) {
  if (is_hdf5(header)) {
    report("Error: Failed to read .mat file. " + path +
           " is a version 7.3 MAT-file (HDF5), which cannot be imported; save it as version 7 "
           "or older, for example with save(filename, variables, '-v7') in MATLAB");
    return false;
  }
  if (header.size() < header_bytes) {
    report("Error: Failed to read .mat file. " + path + " is shorter than the " +
           std::to_string(header_bytes) + "-byte header");
    return false;
  }
  if (!starts_with(header, 0, "MATLAB 5.0 MAT-file")) {
    report("文件不是MATLAB文件");
    report("Error: Failed to read .mat file. " + path +
           " does not begin with \"MATLAB 5.0 MAT-file\"");
    return false;
  }
  if (header[126] == 'I' && header[127] == 'M') {
    big_endian = false;
  } else if (header[126] == 'M' && header[127] == 'I') {
    big_endian = true;
  } else {
    report("Error: Failed to read .mat file. " + path +
           " has an endian indicator that is neither \"IM\" nor \"MI\"");
    return false;
  }
  return true;
}

}  // namespace

bool toolkit_mat_file_reader_t::read(const std::string& path, std::size_t inflate_limit_bytes,
                                     std::vector<toolkit_mat_variable_t>& variables) {
  variables.clear();
  std::string problem;
  std::ifstream file;
  if (toolkit_is_regular_file(path, problem)) {
    file.open(path, std::ios::binary);
    problem = "cannot be read";
  }
  if (!file.is_open()) {
    report("Error: Failed to open .mat file. " + path + ": " + problem);
    return false;
  }
  file.seekg(0, std::ios::end);
  const std::size_t file_size = static_cast<std::size_t>(file.tellg());
  file.seekg(0);
  byte_vector_t header(std::min<std::size_t>(file_size, header_bytes));
  file.read(reinterpret_cast<char*>(header.data()), static_cast<std::streamsize>(header.size()));
  bool big_endian = false;
  if (!file || !check_header(path, header, big_endian)) {
    return false;
  }
  const std::size_t value_limit = inflate_limit_bytes / sizeof(fp64);
  std::size_t offset = header_bytes;
  byte_vector_t bytes;
  byte_vector_t inflated;
  while (file_size - offset >= tag_bytes) {
    element_context_t context{path, variables.size(), offset, {}};
    byte_vector_t tag_slot(tag_bytes);
    file.read(reinterpret_cast<char*>(tag_slot.data()), tag_bytes);
    toolkit_mat_buffer_t slot(tag_slot.data(), tag_slot.size(), big_endian);
    toolkit_mat_tag_t tag;
    if (!file || !slot.read_tag(tag)) {
      context.report("bad element tag; the rest of the file is ignored");
      break;
    }
    const std::size_t data_bytes = tag.small_form ? 0 : tag.byte_count;
    if (data_bytes > file_size - offset - tag_bytes || data_bytes > inflate_limit_bytes) {
      context.report("the element declares " + std::to_string(tag.byte_count) +
                     " bytes but the file holds " + std::to_string(file_size - offset - tag_bytes) +
                     " after its tag; the file is cut off or damaged");
      break;
    }
    // The tag stays in front of the data: a plain matrix is parsed like an inflated one.
    bytes.assign(tag_slot.begin(), tag_slot.end());
    bytes.resize(tag_bytes + data_bytes);
    file.read(reinterpret_cast<char*>(bytes.data() + tag_bytes),
              static_cast<std::streamsize>(data_bytes));
    variables.emplace_back();
    if (tag.type == toolkit_mat_type_matrix) {
      parse_element(bytes, big_endian, value_limit, context, variables.back());
    } else if (tag.type == toolkit_mat_type_compressed) {
      if (toolkit_mat_inflate_t::inflate(bytes.data() + tag_bytes, data_bytes, big_endian,
                                         inflate_limit_bytes, inflated, problem)) {
        parse_element(inflated, big_endian, value_limit, context, variables.back());
      } else {
        context.report("Error uncompressing data: " + problem);
      }
    } else {
      context.report("ERR:data_type =  " + std::to_string(tag.type));
    }
    offset += tag_bytes + data_bytes;
  }
  if (offset < file_size && file_size - offset < tag_bytes) {
    report(std::to_string(file_size - offset) + " bytes after the last element of " + path +
           " are ignored");
  }
  return true;
}

}  // namespace nal

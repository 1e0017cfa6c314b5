#include "cfg/lib_version_manager.h"

#include "lib/lib_report.h"

namespace nal {

namespace {

constexpr const char* beta_ending = "_BETA";

// Compares a and b field by field; `greater` picks the direction. Different formats are reported
// with the one text both directions share.
bool compare_versions(const std::string& a, const std::string& b, bool greater) {
  std::vector<uint64> first;
  std::vector<uint64> second;
  if (!lib_version_manager_t::is_same_format(a, b)) {
    common_lib::lib_report(
        "lib_version_manager_t::is_version_greater Report : Different Version Format!");
    return false;
  }
  lib_version_manager_t::parse(a, first);
  lib_version_manager_t::parse(b, second);
  for (std::size_t i = 0; i < first.size(); ++i) {
    if (first[i] != second[i]) {
      return greater ? first[i] > second[i] : first[i] < second[i];
    }
  }
  return false;
}

}  // namespace

bool lib_version_manager_t::is_beta_version(const std::string& text) {
  const std::string ending = beta_ending;
  return text.size() >= ending.size() &&
         text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

bool lib_version_manager_t::parse(const std::string& text, std::vector<uint64>& fields) {
  fields.clear();
  std::string numbers = text;
  if (is_beta_version(text)) {
    numbers.resize(text.size() - std::string(beta_ending).size());
  }
  std::size_t start = 0;
  while (true) {
    const std::size_t dot = numbers.find('.', start);
    const std::string field = numbers.substr(start, dot == std::string::npos ? dot : dot - start);
    // Up to 18 digits always fit; longer fields are refused rather than wrapped.
    if (field.empty() || field.size() > 18 ||
        field.find_first_not_of("0123456789") != std::string::npos) {
      fields.clear();
      return false;
    }
    fields.push_back(std::stoull(field));
    if (dot == std::string::npos) {
      return true;
    }
    start = dot + 1;
  }
}

bool lib_version_manager_t::is_same_format(const std::string& a, const std::string& b) {
  std::vector<uint64> first;
  std::vector<uint64> second;
  return parse(a, first) && parse(b, second) && first.size() == second.size();
}

bool lib_version_manager_t::is_version_equal(const std::string& a, const std::string& b) {
  std::vector<uint64> first;
  std::vector<uint64> second;
  return is_same_format(a, b) && is_beta_version(a) == is_beta_version(b) && parse(a, first) &&
         parse(b, second) && first == second;
}

bool lib_version_manager_t::is_version_greater(const std::string& a, const std::string& b) {
  return compare_versions(a, b, true);
}

bool lib_version_manager_t::is_version_less(const std::string& a, const std::string& b) {
  return compare_versions(a, b, false);
}

}  // namespace nal

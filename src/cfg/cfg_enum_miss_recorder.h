#pragma once
// Records, on the thread that made it and while it lives, every enumeration text a state-file
// reader did not find in its table, with the texts that table accepts. The reader's rule stays
// (an unknown text leaves the value unchanged); the command-line tool uses the record to tell a
// user which texts an element takes. Recorders nest; each thread has its own.

#include <map>
#include <string>
#include <vector>

namespace nal {

class cfg_enum_miss_recorder_t {
 public:
  struct miss_t {
    std::string text;
    std::vector<std::string> accepted;
  };

  cfg_enum_miss_recorder_t();
  ~cfg_enum_miss_recorder_t();
  cfg_enum_miss_recorder_t(const cfg_enum_miss_recorder_t&) = delete;
  cfg_enum_miss_recorder_t& operator=(const cfg_enum_miss_recorder_t&) = delete;

  const std::vector<miss_t>& misses() const { return _misses; }

  // Notes `text` as missing from `map` with the recorder of this thread, if any.
  template <typename enum_t>
  static void note(const std::map<enum_t, std::string>& map, const std::string& text) {
    if (_current == nullptr) {
      return;
    }
    miss_t miss{text, {}};
    for (const auto& entry : map) {
      miss.accepted.push_back(entry.second);
    }
    _current->_misses.push_back(std::move(miss));
  }

 private:
  static thread_local cfg_enum_miss_recorder_t* _current;
  cfg_enum_miss_recorder_t* _previous;
  std::vector<miss_t> _misses;
};

}  // namespace nal

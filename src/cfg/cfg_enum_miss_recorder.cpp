#include "cfg/cfg_enum_miss_recorder.h"

namespace nal {

thread_local cfg_enum_miss_recorder_t* cfg_enum_miss_recorder_t::_current = nullptr;

cfg_enum_miss_recorder_t::cfg_enum_miss_recorder_t() : _previous(_current) {
  _current = this;
}

cfg_enum_miss_recorder_t::~cfg_enum_miss_recorder_t() {
  _current = _previous;
}

}  // namespace nal

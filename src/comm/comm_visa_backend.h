#pragma once
// Chooses the VISA implementation: the library named by the environment variable
// WAVELUME_VISA_LIBRARY, else the first of the usual VISA library names that loads with all
// its functions, else the built-in layer. The process keeps its first choice.

#include <memory>
#include <string>
#include <vector>

#include "comm/comm_visa_api.h"

namespace nal {

class comm_visa_backend_t {
 public:
  // The implementation the process uses, chosen on the first call. Thread-safe.
  static std::shared_ptr<comm_visa_api_t> process_backend();
  // A fresh choice by the rule above, with `description` naming it ("built-in" or the path).
  static std::shared_ptr<comm_visa_api_t> choose(std::string& description);
  // Library names tried when the environment names none, in order.
  static std::vector<std::string> library_candidates();
};

}  // namespace nal

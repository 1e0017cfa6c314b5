#pragma once
// The guard in front of every file the import opens: only a regular file is read, so that a
// directory, a device or a pipe named by mistake gives a message instead of a hang or garbage.

#include <string>

namespace nal {

// True when `path` names a regular file (after following links). Otherwise false, and `problem`
// says why in a few words ("no such file", "is a directory", ...). Never throws.
bool toolkit_is_regular_file(const std::string& path, std::string& problem);

}  // namespace nal

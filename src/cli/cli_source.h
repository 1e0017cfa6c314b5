#pragma once
// The SOURCE of `generate` and `download`: a protocol name, a `.state` or `.project` file, or an
// `.xml` file holding one ProtocolConfiguration element; and the `--set PATH=VALUE` edits applied
// to that element before it is read.

#include <pugixml.hpp>

#include <optional>
#include <string>

#include "lib/lib_types.h"

namespace wavelume::cli {

// Fills `document` with the ProtocolConfiguration element of `source` and points `configuration`
// at it. `tab` picks the tab of a state or project file (default: its current tab). False with a
// message in `error` when the source cannot be read or names nothing usable.
bool load_source(const std::string& source, std::optional<nal::uint64> tab,
                 pugi::xml_document& document, pugi::xml_node& configuration, std::string& error);

// The element at "A/B[k]/C" below `configuration`: the k-th (from 1) element of that name at
// each step. Null with a message naming the elements available where the path failed.
pugi::xml_node find_setting(pugi::xml_node configuration, const std::string& path,
                            std::string& error);
// Splits "PATH=VALUE"; false with a message when there is no PATH.
bool split_setting(const std::string& assignment, std::string& path, std::string& value,
                   std::string& error);
// A whole text strtod reads as a number; "true" or "false".
bool is_number(const std::string& text);
bool is_flag(const std::string& text);

// Applies one "A/B[k]/C=VALUE" edit below `configuration`: the k-th (from 1) element of that
// name at each step; the element must exist. A value replacing a number or a flag must be one.
bool apply_setting(pugi::xml_node configuration, const std::string& assignment, std::string& error);

}  // namespace wavelume::cli

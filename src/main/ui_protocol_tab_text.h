#pragma once
// The texts of the protocol kinds on tabs, Home buttons and menus; the single source for the
// captions and for the names that addTabPage accepts. "802.105.4 O-QPSK BPSK" is spelled as the
// program has always shown it.

#include <QString>
#include <map>

#include "cfg/cfg_protocol_type.h"

namespace nal {

const std::map<protocol_type_t, QString>& protocol_type_tab_text_map();
// The text of one kind; empty for a value outside the table.
QString protocol_tab_text(protocol_type_t type);

}  // namespace nal

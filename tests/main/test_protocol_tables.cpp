// Every table keyed by protocol type names the same protocols: a protocol added to one and
// forgotten in another would open a page without a tab text, save a state file it cannot
// recall, or be missing from the command line.

#include <gtest/gtest.h>

#include <set>

#include "cfg/cfg_protocol_registry.h"
#include "cfg/cfg_protocol_type.h"
#include "cfg/cfg_waveform_file.h"
#include "main/ui_home_page.h"
#include "main/ui_page_factory.h"
#include "main/ui_protocol_tab_text.h"

namespace {

using nal::protocol_type_t;
using type_set_t = std::set<protocol_type_t>;

// The nine protocols of the program, written out: Home (0) has no protocol.
const type_set_t protocols = {nal::PROTOCOL_BLUETOOTH_LE,   nal::PROTOCOL_BLUETOOTH_BR_EDR,
                              nal::PROTOCOL_CUSTOM_OFDM,    nal::PROTOCOL_802154_OQPSK_BPSK,
                              nal::PROTOCOL_802154_SUN_FSK, nal::PROTOCOL_802154_SUN_OFDM,
                              nal::PROTOCOL_G9959,          nal::PROTOCOL_CUSTOM_IQ,
                              nal::PROTOCOL_TOOLKIT};

bool is_empty(const std::string& text) {
  return text.empty();
}
bool is_empty(const QString& text) {
  return text.isEmpty();
}

// The protocols a text table names, Home left out; every text must say something.
template <typename map_t>
type_set_t protocols_in(const map_t& map) {
  type_set_t types;
  for (const auto& [type, text] : map) {
    EXPECT_FALSE(is_empty(text)) << type;
    if (type != nal::PROTOCOL_HOME) {
      types.insert(type);
    }
  }
  return types;
}

TEST(ProtocolTables, EveryTableHoldsTheSameProtocols) {
  EXPECT_EQ(protocols_in(nal::protocol_type_state_text_map()), protocols);
  EXPECT_EQ(protocols_in(nal::protocol_type_tab_text_map()), protocols);

  type_set_t home_entries;
  for (const auto& entry : nal::ui_home_page_t::entries()) {
    for (const protocol_type_t type : entry.protocols) {
      EXPECT_TRUE(home_entries.insert(type).second) << "offered twice: " << type;
    }
  }
  EXPECT_EQ(home_entries, protocols);

  type_set_t waveform_texts;
  for (const protocol_type_t type : protocols) {
    const std::string header = nal::cfg_waveform_file_t::build_file_header("x", type);
    const std::size_t key = header.find(",ProtocolType,");
    if (key != std::string::npos && header.compare(key + 14, 1, ",") != 0) {
      waveform_texts.insert(type);
    }
  }
  EXPECT_EQ(waveform_texts, protocols);

  type_set_t rows;
  std::set<std::string> names;
  for (const nal::cfg_protocol_row_t& row : nal::cfg_protocol_registry_t::rows()) {
    EXPECT_TRUE(rows.insert(row.type).second) << "two rows for " << row.type;
    EXPECT_TRUE(names.insert(row.cli_name).second) << "two rows named " << row.cli_name;
    ASSERT_EQ(nal::cfg_protocol_registry_t::find(row.cli_name), &row);
    ASSERT_EQ(nal::cfg_protocol_registry_t::find(row.type), &row);
  }
  EXPECT_EQ(rows, protocols);
  EXPECT_EQ(nal::cfg_protocol_registry_t::find(nal::PROTOCOL_HOME), nullptr);
}

// A protocol comes with its engine and its page, or with neither.
TEST(ProtocolTables, EngineAndPageComeTogether) {
  const nal::ui_page_factory_t pages = nal::ui_page_factory_t::standard();
  for (const nal::cfg_protocol_row_t& row : nal::cfg_protocol_registry_t::rows()) {
    EXPECT_EQ(row.has_engine(), pages.has_page(row.type)) << row.cli_name;
    const bool complete = row.waveform_length && row.sample_points && row.sample_rate &&
                          row.compute && row.annotations;
    EXPECT_EQ(row.has_engine(), complete) << row.cli_name;
  }
  EXPECT_FALSE(pages.has_page(nal::PROTOCOL_HOME));
}

}  // namespace

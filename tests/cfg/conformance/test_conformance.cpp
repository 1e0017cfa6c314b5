// Conformance of every registered protocol configuration to its state file element: names and
// order, a recall that gives back the same bytes and samples, elements that are really read,
// copies that continue bit-identically, foreign elements refused, and out-of-range numbers
// clamped to their limits.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "cfg/cfg_protocol_registry.h"
#include "tests/cfg/conformance/conformance_entry.h"
#include "tests/cfg/conformance/conformance_xml.h"

namespace wavelume_test {

// Failures name the configuration instead of dumping its bytes.
void PrintTo(const conformance_entry_t& entry, std::ostream* out) {
  *out << entry.name;
}

namespace {

// The ProtocolType texts of state files, every protocol type of the program.
const std::vector<std::string> all_state_texts{
    "Empty Protocol",      "Bluetooth LE",     "Bluetooth BR/EDR",  "Custom OFDM",
    "802.15.4 OQPSK BPSK", "802.15.4 SUN FSK", "802.15.4 SUN OFDM", "Z-wave",
    "Custom IQ",           "Toolkit"};

void quietly(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  action();
  testing::internal::GetCapturedStdout();
}

bool parses_as_number(const std::string& text, double& number) {
  char* end = nullptr;
  number = std::strtod(text.c_str(), &end);
  return !text.empty() && *end == '\0';
}

// Equal texts, or texts of the same number.
bool same_value(const std::string& a, const std::string& b) {
  double x = 0.0;
  double y = 0.0;
  return a == b || (parses_as_number(a, x) && parses_as_number(b, y) && x == y);
}

bool is_read(const conformance_element_t& element) {
  return element.kind == conformance_kind_t::value || element.kind == conformance_kind_t::number ||
         element.kind == conformance_kind_t::list;
}

class Conformance : public testing::TestWithParam<conformance_entry_t> {
 protected:
  const conformance_entry_t& entry() const { return GetParam(); }

  config_ptr_t made() const {
    config_ptr_t config;
    quietly([&] { config = entry().make(); });
    return config;
  }
  config_ptr_t preset() const {
    config_ptr_t config = made();
    quietly([&] { config->preset(); });
    return config;
  }
  bool load(nal::cfg_protocol_base_t& config, const std::string& text) const {
    bool loaded = false;
    quietly([&] { loaded = load_text(config, text); });
    return loaded;
  }
  nal::lib_iq_data_arr_t samples_of(nal::cfg_protocol_base_t& config) const {
    nal::lib_iq_data_arr_t samples;
    quietly([&] {
      if (entry().compute) {
        entry().compute(config);
      }
      config.get_waveform_data(samples);
    });
    return samples;
  }

  // The preset element with `text_of` applied to each element that it gives a text for.
  std::string preset_with(
      const std::function<bool(const conformance_element_t&, std::string&)>& text_of) const {
    pugi::xml_document document;
    document.load_string(saved_text(*preset()).c_str());
    for (const conformance_element_t& element : entry().elements) {
      std::string text;
      if (text_of(element, text)) {
        element_at(document.document_element(), element.path).text().set(text.c_str());
      }
    }
    return document_text(document);
  }
  // The preset element with every edited value in place.
  std::string edited() const {
    return preset_with([](const conformance_element_t& element, std::string& text) {
      text = element.edited;
      return is_read(element);
    });
  }
};

TEST_P(Conformance, ElementsAreWrittenByNameInTheirOrder) {
  std::vector<std::string> expected{"@ProtocolType"};
  for (const conformance_element_t& element : entry().elements) {
    expected.push_back(element.path);
  }
  for (const config_ptr_t& config : {made(), preset()}) {
    const std::string text = saved_text(*config);
    EXPECT_EQ(outline_of(text), expected);
    pugi::xml_document document;
    document.load_string(text.c_str());
    EXPECT_EQ(std::string(document.document_element().attribute("ProtocolType").value()),
              entry().state_text);
    EXPECT_EQ(config->protocol_type(), entry().type);
  }
}

TEST_P(Conformance, RecallGivesBackTheSameBytesAndSamples) {
  config_ptr_t edited_config = made();
  ASSERT_TRUE(load(*edited_config, edited()));
  std::vector<config_ptr_t> originals;
  originals.push_back(made());
  originals.push_back(preset());
  originals.push_back(std::move(edited_config));
  for (const config_ptr_t& original : originals) {
    const std::string text = saved_text(*original);
    config_ptr_t recalled = made();
    ASSERT_TRUE(load(*recalled, text));
    EXPECT_EQ(saved_text(*recalled), text);
    EXPECT_EQ(samples_of(*recalled), samples_of(*original)) << text;
  }
}

// An element that is written but not read would keep the value of the fresh configuration.
TEST_P(Conformance, EveryElementIsReadAsWritten) {
  config_ptr_t config = made();
  ASSERT_TRUE(load(*config, edited()));
  const std::string loaded = saved_text(*config);
  const std::string fresh = saved_text(*made());
  const std::string presets = saved_text(*preset());
  for (const conformance_element_t& element : entry().elements) {
    if (!is_read(element)) {
      continue;
    }
    EXPECT_TRUE(same_value(text_at(loaded, element.path), element.edited))
        << element.path << " reads back as \"" << text_at(loaded, element.path) << "\"";
    // An edit to the value the configuration already had would prove nothing.
    EXPECT_FALSE(same_value(text_at(fresh, element.path), element.edited)) << element.path;
    EXPECT_FALSE(same_value(text_at(presets, element.path), element.edited)) << element.path;
  }
}

// What lets a page compute on a snapshot while the user edits on.
TEST_P(Conformance, CopyContinuesBitIdentically) {
  // A page computes in the background on the registry's copy; a class that cannot be copied
  // (Custom IQ, which computes on the GUI thread) must not be offered one.
  const nal::cfg_protocol_row_t* row = nal::cfg_protocol_registry_t::find(entry().type);
  ASSERT_NE(row, nullptr);
  ASSERT_EQ(row->copy != nullptr, static_cast<bool>(entry().copy));
  if (!entry().copy) {
    return;
  }
  config_ptr_t original = preset();
  const std::string before = saved_text(*original);
  const config_ptr_t copy = row->copy(*original);
  EXPECT_EQ(saved_text(*copy), before);
  EXPECT_EQ(samples_of(*copy), samples_of(*original));

  const std::string edits = edited();
  ASSERT_TRUE(load(*original, edits));
  EXPECT_EQ(saved_text(*copy), before) << "the copy shares state with its original";
  ASSERT_TRUE(load(*copy, edits));
  EXPECT_EQ(saved_text(*copy), saved_text(*original));
  EXPECT_EQ(samples_of(*copy), samples_of(*original));
}

TEST_P(Conformance, ElementOfAnotherProtocolIsRefused) {
  ASSERT_NE(std::find(all_state_texts.begin(), all_state_texts.end(), entry().state_text),
            all_state_texts.end());
  std::vector<std::string> foreign;
  for (const std::string& text : all_state_texts) {
    if (text != entry().state_text) {
      foreign.push_back(text);
    }
  }
  // Texts compare exactly, by bytes.
  std::string shouted = entry().state_text;
  std::transform(shouted.begin(), shouted.end(), shouted.begin(), ::toupper);
  foreign.insert(foreign.end(), {shouted, entry().state_text + " ", "", "8"});

  const config_ptr_t config = preset();
  const std::string before = saved_text(*config);
  pugi::xml_document document;
  document.load_string(edited().c_str());
  pugi::xml_node element = document.document_element();
  for (const std::string& text : foreign) {
    element.attribute("ProtocolType").set_value(text.c_str());
    bool loaded = true;
    quietly([&] { loaded = config->load_from_xml(element); });
    EXPECT_FALSE(loaded) << "ProtocolType \"" << text << "\"";
    EXPECT_EQ(saved_text(*config), before) << "ProtocolType \"" << text << "\"";
  }
  element.remove_attribute("ProtocolType");
  bool loaded = true;
  quietly([&] { loaded = config->load_from_xml(element); });
  EXPECT_FALSE(loaded) << "no ProtocolType";
  EXPECT_EQ(saved_text(*config), before) << "no ProtocolType";
}

struct bad_number_t {
  const char* label;
  std::string text;
  double conformance_clamp_t::*expected;
};

TEST_P(Conformance, OutOfRangeNumbersAreClampedToTheirLimits) {
  const std::string nines(400, '9');
  const std::vector<bad_number_t> bad_numbers{
      {"far above", nines, &conformance_clamp_t::above},
      {"far below", "-" + nines, &conformance_clamp_t::below},
      {"NaN", "nan", &conformance_clamp_t::not_a_number},
      {"text", "twelve", &conformance_clamp_t::not_a_number},
      {"empty", "", &conformance_clamp_t::not_a_number},
  };
  for (const bad_number_t& bad : bad_numbers) {
    const std::string file =
        preset_with([&](const conformance_element_t& element, std::string& text) {
          text = element.kind == conformance_kind_t::list
                     ? bad.text + "," + bad.text + "," + bad.text
                     : bad.text;
          return element.kind == conformance_kind_t::number ||
                 element.kind == conformance_kind_t::list ||
                 element.kind == conformance_kind_t::derived;
        });
    config_ptr_t config = made();
    ASSERT_TRUE(load(*config, file)) << bad.label;
    const std::string loaded = saved_text(*config);
    for (const conformance_element_t& element : entry().elements) {
      if (element.kind == conformance_kind_t::number) {
        const double expected = element.clamp.*bad.expected;
        EXPECT_NEAR(std::strtod(text_at(loaded, element.path).c_str(), nullptr), expected,
                    1e-12 * std::max(1.0, std::abs(expected)))
            << element.path << " after " << bad.label;
      }
    }
    // What was clamped stays clamped through another recall.
    config_ptr_t recalled = made();
    ASSERT_TRUE(load(*recalled, loaded)) << bad.label;
    EXPECT_EQ(saved_text(*recalled), loaded) << bad.label;
  }
}

// Missing elements read as zero, false or empty, then clamp; the smallest settings compute.
TEST_P(Conformance, EmptyElementLoadsTheLowerLimits) {
  config_ptr_t config = preset();
  ASSERT_TRUE(
      load(*config, "<ProtocolConfiguration ProtocolType=\"" + entry().state_text + "\"/>"));
  const std::string loaded = saved_text(*config);
  for (const conformance_element_t& element : entry().elements) {
    if (element.kind == conformance_kind_t::number) {
      EXPECT_NEAR(std::strtod(text_at(loaded, element.path).c_str(), nullptr),
                  element.clamp.not_a_number, 1e-12)
          << element.path;
    }
  }
  samples_of(*config);
}

INSTANTIATE_TEST_SUITE_P(Registered, Conformance, testing::ValuesIn(conformance_entries()),
                         [](const testing::TestParamInfo<conformance_entry_t>& param) {
                           return param.param.name;
                         });

}  // namespace

}  // namespace wavelume_test

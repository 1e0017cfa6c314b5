// State and project archives, checked against Python's zipfile module as an independent reader
// and writer of the format.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "cfg/cfg_protocol_state.h"
#include "tests/cfg/test_folder_fixture.h"

namespace {

namespace fs = std::filesystem;
using nal::cfg_protocol_base_t;
using nal::cfg_protocol_state_t;

// A configuration with two settings, enough to see them travel through an archive.
class fake_configuration_t : public cfg_protocol_base_t {
 public:
  explicit fake_configuration_t(nal::protocol_type_t type, int value = 0, std::string name = "")
      : _type(type), _value(value), _name(std::move(name)) {}

  bool get_waveform_data(nal::lib_iq_data_arr_t&) override { return false; }
  bool save_wavefrom_to_file(const std::string&) override { return false; }
  bool download_wavefrom_to_instrument() override { return false; }
  void preset() override { _value = 0; }
  bool load_from_xml(const pugi::xml_node& node) override {
    _value = node.child("Value").text().as_int();
    _name = node.child("Name").text().get();
    return true;
  }
  bool save_to_xml(pugi::xml_node& node) const override {
    node.append_attribute("ProtocolType") = nal::protocol_type_state_text_map().at(_type).c_str();
    node.append_child("Value").text().set(_value);
    node.append_child("Name").text().set(_name.c_str());
    return true;
  }
  nal::protocol_type_t protocol_type() const override { return _type; }

  int value() const { return _value; }
  const std::string& name() const { return _name; }

 private:
  nal::protocol_type_t _type;
  int _value;
  std::string _name;
};

std::unique_ptr<cfg_protocol_base_t> fake_factory(nal::protocol_type_t type) {
  if (type == nal::PROTOCOL_HOME) {
    return nullptr;
  }
  return std::make_unique<fake_configuration_t>(type);
}

class ProtocolState : public wavelume_test::folder_fixture_t {
 protected:
  // Runs a Python snippet with `path` as sys.argv[1]; true on exit status 0.
  bool python(const std::string& script, const fs::path& path) {
    const fs::path file = _folder / "script.py";
    std::ofstream(file) << "import hashlib, sys, zipfile\n" << script << "\n";
    const std::string command =
        "/usr/bin/python3 '" + file.string() + "' '" + path.string() + "' > /dev/null 2>&1";
    return std::system(command.c_str()) == 0;
  }

  // Writes an archive with Python: the given entries (name, bytes expression).
  fs::path python_archive(const std::string& name, const std::string& entries) {
    const fs::path path = _folder / name;
    EXPECT_TRUE(python(
        "with zipfile.ZipFile(sys.argv[1], 'w', zipfile.ZIP_DEFLATED) as z:\n" + entries, path));
    return path;
  }

  bool load(const fs::path& path, std::string& errors) {
    testing::internal::CaptureStderr();
    const bool loaded =
        cfg_protocol_state_t::load_protocol_state(path.string(), _loaded, _index, fake_factory);
    errors = testing::internal::GetCapturedStderr();
    return loaded;
  }

  std::vector<std::unique_ptr<cfg_protocol_base_t>> _loaded;
  nal::uint64 _index = 99;
};

const char* document_with(const char* version, const char* type) {
  static std::string text;
  text = std::string("<?xml version=\"1.0\"?><Wavelume SoftwareVersion=\"") + version +
         "\"><CurrentTabIndex>1</CurrentTabIndex><ProtocolConfigurationList>"
         "<ProtocolConfiguration ProtocolType=\"" +
         type +
         "\"><Value>5</Value></ProtocolConfiguration></ProtocolConfigurationList></Wavelume>";
  return text.c_str();
}

std::string sealed_entries(const char* document) {
  return std::string("    d = b'") + document +
         "'\n    z.writestr('AutoXmlFileName.xml', d)\n"
         "    z.writestr('Md5CheckoutCode.txt', hashlib.md5(d).hexdigest())\n";
}

TEST_F(ProtocolState, ProjectKeepsTabsOrderHomeTabAndIndex) {
  const fake_configuration_t first(nal::PROTOCOL_CUSTOM_IQ, 7, "sweep, fast & <wide>");
  const fake_configuration_t third(nal::PROTOCOL_BLUETOOTH_LE, -3, "");
  const fs::path path = _folder / "three.project";
  ASSERT_TRUE(
      cfg_protocol_state_t::save_protocol_state(path.string(), {&first, nullptr, &third}, 2));

  // Python reads the archive and finds the seal to be the MD5 of the document.
  EXPECT_TRUE(python(
      "z = zipfile.ZipFile(sys.argv[1])\n"
      "d = z.read('AutoXmlFileName.xml')\n"
      "assert z.read('Md5CheckoutCode.txt').decode() == hashlib.md5(d).hexdigest()\n"
      "assert d.startswith(b'<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>')\n"
      "assert b'\\t<CurrentTabIndex>2</CurrentTabIndex>' in d\n",
      path));

  std::string errors;
  ASSERT_TRUE(load(path, errors)) << errors;
  EXPECT_EQ(errors, "");
  ASSERT_EQ(_loaded.size(), 3u);
  EXPECT_EQ(_index, 2u);
  const auto* custom = dynamic_cast<const fake_configuration_t*>(_loaded[0].get());
  ASSERT_NE(custom, nullptr);
  EXPECT_EQ(custom->protocol_type(), nal::PROTOCOL_CUSTOM_IQ);
  EXPECT_EQ(custom->value(), 7);
  EXPECT_EQ(custom->name(), "sweep, fast & <wide>");
  EXPECT_EQ(_loaded[1], nullptr);
  EXPECT_EQ(_loaded[2]->protocol_type(), nal::PROTOCOL_BLUETOOTH_LE);
}

TEST_F(ProtocolState, ForeignArchivesReadWhereSoundAndRefusedWhereNot) {
  std::string errors;
  // Written by another tool, with an extra entry that reaches outside: read, extra ignored.
  const fs::path foreign =
      python_archive("foreign.state", sealed_entries(document_with("2.0.0.1.2", "Custom IQ")) +
                                          "    z.writestr('../outside.txt', b'never extracted')\n");
  ASSERT_TRUE(load(foreign, errors)) << errors;
  EXPECT_EQ(_index, 1u);
  ASSERT_EQ(_loaded.size(), 1u);
  EXPECT_EQ(dynamic_cast<const fake_configuration_t&>(*_loaded[0]).value(), 5);
  EXPECT_FALSE(fs::exists(_folder.parent_path() / "outside.txt"));

  // Another software version is read with a warning; an unknown protocol text is a Home tab.
  ASSERT_TRUE(load(
      python_archive("old.state", sealed_entries(document_with("1.9", "Teleportation"))), errors));
  EXPECT_EQ(errors, "Warning: Software Version Not Equal!\n");
  ASSERT_EQ(_loaded.size(), 1u);
  EXPECT_EQ(_loaded[0], nullptr);

  const fs::path no_seal =
      python_archive("noseal.state", "    z.writestr('AutoXmlFileName.xml', b'<Wavelume/>')\n");
  EXPECT_FALSE(load(no_seal, errors));
  EXPECT_EQ(errors, "The file format is incorrect:" + no_seal.string() + "\n");

  const fs::path wrong_seal =
      python_archive("wrongseal.state",
                     "    z.writestr('AutoXmlFileName.xml', b'<Wavelume/>')\n"
                     "    z.writestr('Md5CheckoutCode.txt', '0' * 32)\n");
  EXPECT_FALSE(load(wrong_seal, errors));
  EXPECT_EQ(errors, "Check failure:" + wrong_seal.string() + "\n");

  EXPECT_FALSE(
      load(python_archive("notxml.state", sealed_entries("<Wavelume><unclosed>")), errors));
  EXPECT_NE(errors.find("The file format is incorrect:"), std::string::npos);
}

TEST_F(ProtocolState, DamagedOrOversizedFilesAreRefusedWithoutHandingOutAnything) {
  _loaded.push_back(std::make_unique<fake_configuration_t>(nal::PROTOCOL_CUSTOM_IQ));
  std::string errors;

  const fake_configuration_t one(nal::PROTOCOL_CUSTOM_IQ, 1, "x");
  const fs::path whole = _folder / "whole.state";
  ASSERT_TRUE(cfg_protocol_state_t::save_protocol_state(whole.string(), {&one}, 0));
  const std::uintmax_t size = fs::file_size(whole);
  for (const std::uintmax_t kept : {size / 2, size - 1, std::uintmax_t{10}, std::uintmax_t{0}}) {
    const fs::path cut = _folder / ("cut" + std::to_string(kept) + ".state");
    fs::copy_file(whole, cut);
    fs::resize_file(cut, kept);
    EXPECT_FALSE(load(cut, errors)) << kept << " bytes";
  }
  std::ofstream(_folder / "text.state") << "just some text, no archive";
  EXPECT_FALSE(load(_folder / "text.state", errors));

  // A small archive whose document inflates above the entry limit.
  EXPECT_FALSE(load(python_archive("bomb.state",
                                   "    z.writestr('AutoXmlFileName.xml', b'<' * (65 << 20))\n"
                                   "    z.writestr('Md5CheckoutCode.txt', '0' * 32)\n"),
                    errors));
  EXPECT_NE(errors.find("The file format is incorrect:"), std::string::npos);

  // An entry whose declared size disagrees with its stream (found by fuzzing: such archives once
  // made the reader loop and allocate without end).
  EXPECT_FALSE(
      load(python_archive("liar.state", sealed_entries("<Wavelume/>") +
                                            "import struct\n"
                                            "b = bytearray(open(sys.argv[1], 'rb').read())\n"
                                            "c = b.rfind(b'PK\\x01\\x02')\n"
                                            "b[c + 24:c + 28] = struct.pack('<I', 8191)\n"
                                            "open(sys.argv[1], 'wb').write(b)\n"),
           errors));
  EXPECT_NE(errors.find("The file format is incorrect:"), std::string::npos);

  EXPECT_FALSE(load(_folder / "missing.state", errors));
  EXPECT_NE(errors.find("could not open the file :"), std::string::npos);
  // Every refusal left the caller's list as it was.
  ASSERT_EQ(_loaded.size(), 1u);
  EXPECT_NE(_loaded[0], nullptr);
}

TEST_F(ProtocolState, XmlBombsAreReadWithoutBlowingUp) {
  std::string errors;
  const auto sealed_python = [](const std::string& document_expression) {
    return "    d = (b'<?xml version=\"1.0\"?><Wavelume SoftwareVersion=\"2.0.0.1.2\">'\n"
           "         b'<CurrentTabIndex>0</CurrentTabIndex><ProtocolConfigurationList>'\n"
           "         b'<ProtocolConfiguration ProtocolType=\"Custom IQ\">' + " +
           document_expression +
           " + b'</ProtocolConfiguration></ProtocolConfigurationList></Wavelume>')\n"
           "    z.writestr('AutoXmlFileName.xml', d)\n"
           "    z.writestr('Md5CheckoutCode.txt', hashlib.md5(d).hexdigest())\n";
  };
  // A million nested elements: the parser and the tree's destruction must not recurse.
  ASSERT_TRUE(load(python_archive("deep.state", sealed_python("b'<Value>' + b'<a>' * 1000000 + "
                                                              "b'</a>' * 1000000 + b'</Value>'")),
                   errors))
      << errors;
  ASSERT_EQ(_loaded.size(), 1u);

  // Sixty megabytes of text in one element, just under the entry limit, arrive whole.
  ASSERT_TRUE(load(
      python_archive("text.state", sealed_python("b'<Name>' + b'x' * (60 << 20) + b'</Name>'")),
      errors))
      << errors;
  ASSERT_EQ(_loaded.size(), 1u);
  EXPECT_EQ(static_cast<const fake_configuration_t&>(*_loaded[0]).name().size(), 60u << 20);

  // Nested entities are never expanded (no document type processing), so they cost nothing.
  const fs::path laughs = python_archive(
      "laughs.state",
      "    e = b''.join(b'<!ENTITY l%d \"&l%d;&l%d;&l%d;&l%d;&l%d;&l%d;&l%d;&l%d;&l%d;&l%d;\">' % "
      "((i,) + (i - 1,) * 10) for i in range(1, 10))\n"
      "    d = (b'<?xml version=\"1.0\"?><!DOCTYPE Wavelume [<!ENTITY l0 \"lol\">' + e + b']>'\n"
      "         b'<Wavelume SoftwareVersion=\"2.0.0.1.2\"><CurrentTabIndex>0</CurrentTabIndex>'\n"
      "         b'<ProtocolConfigurationList><ProtocolConfiguration ProtocolType=\"Custom IQ\">'\n"
      "         b'<Name>&l9;</Name></ProtocolConfiguration></ProtocolConfigurationList>'\n"
      "         b'</Wavelume>')\n"
      "    z.writestr('AutoXmlFileName.xml', d)\n"
      "    z.writestr('Md5CheckoutCode.txt', hashlib.md5(d).hexdigest())\n");
  ASSERT_TRUE(load(laughs, errors)) << errors;
  ASSERT_EQ(_loaded.size(), 1u);
  EXPECT_LT(static_cast<const fake_configuration_t&>(*_loaded[0]).name().size(), 16u);
}

}  // namespace

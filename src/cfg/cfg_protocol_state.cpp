#include "cfg/cfg_protocol_state.h"

#include <QtGui/private/qzipwriter_p.h>
#include <QBuffer>
#include <QCryptographicHash>
#include <QFile>
#include <QSaveFile>

#include <iostream>
#include <sstream>

#include "cfg/cfg_protocol_factory.h"
#include "cfg/cfg_zip_reader.h"
#include "cfg/lib_xml_common.h"

namespace nal {

namespace {

constexpr const char* document_entry = "AutoXmlFileName.xml";
constexpr const char* seal_entry = "Md5CheckoutCode.txt";

QByteArray md5_hex(const QByteArray& bytes) {
  return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

std::string document_text(const std::vector<const cfg_protocol_base_t*>& configurations,
                          uint64 current_tab_index) {
  pugi::xml_document document;
  pugi::xml_node declaration = document.append_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "UTF-8";
  declaration.append_attribute("standalone") = "yes";
  pugi::xml_node root = document.append_child("Wavelume");
  root.append_attribute("SoftwareVersion") = cfg_protocol_state_t::software_version;
  root.append_child("CurrentTabIndex")
      .text()
      .set(static_cast<unsigned long long>(current_tab_index));
  pugi::xml_node list = root.append_child("ProtocolConfigurationList");
  for (const cfg_protocol_base_t* configuration : configurations) {
    pugi::xml_node node = list.append_child("ProtocolConfiguration");
    if (configuration == nullptr) {
      node.append_attribute("ProtocolType") =
          protocol_type_state_text_map().at(PROTOCOL_HOME).c_str();
    } else {
      configuration->save_to_xml(node);
    }
  }
  std::ostringstream text;
  document.save(text, "\t", pugi::format_default, pugi::encoding_utf8);
  return text.str();
}

}  // namespace

bool cfg_protocol_state_t::save_protocol_state(
    const std::string& path, const std::vector<const cfg_protocol_base_t*>& configurations,
    uint64 current_tab_index) {
  const std::string text = document_text(configurations, current_tab_index);
  const QByteArray document(text.data(), static_cast<int>(text.size()));
  QBuffer archive;
  archive.open(QIODevice::WriteOnly);
  {
    QZipWriter writer(&archive);
    writer.addFile(document_entry, document);
    writer.addFile(seal_entry, md5_hex(document));
    writer.close();
  }
  QSaveFile file(QString::fromLocal8Bit(path.c_str()));
  if (!file.open(QIODevice::WriteOnly) || file.write(archive.data()) != archive.data().size() ||
      !file.commit()) {
    std::cerr << "could not open the file :" << path << std::endl;
    return false;
  }
  return true;
}

bool cfg_protocol_state_t::load_protocol_state(
    const std::string& path, std::vector<std::unique_ptr<cfg_protocol_base_t>>& configurations,
    uint64& current_tab_index) {
  return load_protocol_state(path, configurations, current_tab_index,
                             &cfg_protocol_factory_t::create_protocol_config);
}

bool cfg_protocol_state_t::load_protocol_state(
    const std::string& path, std::vector<std::unique_ptr<cfg_protocol_base_t>>& configurations,
    uint64& current_tab_index, const factory_t& factory) {
  QFile file(QString::fromLocal8Bit(path.c_str()));
  if (!file.open(QIODevice::ReadOnly)) {
    std::cerr << "could not open the file :" << path << std::endl;
    return false;
  }
  if (static_cast<std::size_t>(file.size()) > max_archive_bytes) {
    std::cerr << "The file format is incorrect:" << path << std::endl;
    return false;
  }
  const QByteArray bytes = file.readAll();
  return parse_protocol_state(bytes.toStdString(), path, configurations, current_tab_index,
                              factory);
}

bool cfg_protocol_state_t::parse_protocol_state(
    const std::string& bytes, const std::string& path,
    std::vector<std::unique_ptr<cfg_protocol_base_t>>& configurations, uint64& current_tab_index,
    const factory_t& factory) {
  if (bytes.size() > max_archive_bytes) {
    std::cerr << "The file format is incorrect:" << path << std::endl;
    return false;
  }
  cfg_zip_reader_t reader;
  std::string document_bytes;
  std::string seal_bytes;
  if (!reader.open(bytes) || !reader.entry(document_entry, max_entry_bytes, document_bytes) ||
      !reader.entry(seal_entry, max_entry_bytes, seal_bytes)) {
    std::cerr << "The file format is incorrect:" << path << std::endl;
    return false;
  }
  const QByteArray document(document_bytes.data(), static_cast<int>(document_bytes.size()));
  const QByteArray seal(seal_bytes.data(), static_cast<int>(seal_bytes.size()));
  if (seal.trimmed().toLower() != md5_hex(document)) {
    std::cerr << "Check failure:" << path << std::endl;
    return false;
  }

  pugi::xml_document xml;
  const pugi::xml_parse_result parsed =
      xml.load_buffer(document.constData(), static_cast<std::size_t>(document.size()));
  const pugi::xml_node root = xml.child("Wavelume");
  if (!parsed || !root) {
    std::cerr << "The file format is incorrect:" << path << " (" << parsed.description() << ")"
              << std::endl;
    return false;
  }
  if (std::string(root.attribute("SoftwareVersion").value()) != software_version) {
    std::cerr << "Warning: Software Version Not Equal!" << std::endl;
  }
  std::vector<std::unique_ptr<cfg_protocol_base_t>> loaded;
  for (const pugi::xml_node node :
       root.child("ProtocolConfigurationList").children("ProtocolConfiguration")) {
    const protocol_type_t type = lib_xml_common_t::get_enum_value(
        protocol_type_state_text_map(), node.attribute("ProtocolType").value());
    std::unique_ptr<cfg_protocol_base_t> configuration = factory(type);
    if (configuration) {
      configuration->load_from_xml(node);
    }
    loaded.push_back(std::move(configuration));
  }
  configurations = std::move(loaded);
  current_tab_index = root.child("CurrentTabIndex").text().as_ullong(0);
  return true;
}

}  // namespace nal

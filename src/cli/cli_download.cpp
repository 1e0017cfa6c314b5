#include "cli/cli_download.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <set>

#include "cli/cli_protocol_names.h"
#include "cli/cli_source_options.h"
#include "cli/cli_text.h"
#include "comm/visa_device_manager.h"

namespace wavelume::cli {

namespace {

constexpr int exit_link_failed = 3;

// Makes an address or resource name known to the device list; its resource name.
QString add_to_device_list(const std::string& address) {
  nal::visa_device_manager_t& devices = nal::visa_device_manager_t::instance();
  const QString text = QString::fromStdString(address);
  if (!text.contains(QLatin1String("::"))) {
    devices.add_tcpip_resource(text);
    return nal::visa_device_manager_t::tcpip_resource_name(text);
  }
  if (!devices.get_found_names().contains(text)) {
    devices.add_resource(text);
  }
  return text;
}

// Connects and says so: the identification, or why not.
bool connect_and_show(const QString& resource, std::ostream& out, std::ostream& errors) {
  nal::visa_device_manager_t& devices = nal::visa_device_manager_t::instance();
  if (!devices.connect_resource(resource) || devices.get_resource_info(resource).idn.isEmpty()) {
    errors << "wavelume-cli download: cannot reach '" << resource.toStdString()
           << "' (no answer to *IDN?); check the address, the port and that the instrument is "
              "on\n";
    return false;
  }
  out << resource.toStdString() << ": " << devices.get_resource_info(resource).idn.toStdString()
      << "\n";
  return true;
}

}  // namespace

int run_instruments(const std::vector<std::string>& arguments, std::ostream& out,
                    std::ostream& errors) {
  std::vector<std::string> addresses;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] != "--add" || i + 1 >= arguments.size() || arguments[i + 1].empty()) {
      errors << "wavelume-cli instruments: usage: wavelume-cli instruments [--add ADDRESS]...\n";
      return 2;
    }
    addresses.push_back(arguments[++i]);
  }
  nal::visa_device_manager_t& devices = nal::visa_device_manager_t::instance();
  for (const std::string& address : addresses) {
    add_to_device_list(address);
  }
  std::set<QString> names;
  for (const QString& name : devices.get_found_names() + devices.get_added_names()) {
    names.insert(name);
  }
  if (names.empty()) {
    errors << "wavelume-cli instruments: no instrument found; LAN instruments are added with "
              "--add ADDRESS\n";
  }
  for (const QString& name : names) {
    devices.connect_resource(name);
    const QString idn = devices.get_resource_info(name).idn;
    out << name.toStdString() << "\t"
        << (idn.isEmpty() ? std::string("(no answer)") : idn.toStdString()) << "\n";
  }
  return 0;
}

int run_download(const std::vector<std::string>& arguments, std::ostream& out,
                 std::ostream& errors) {
  cli_source_options_t options;
  std::string error;
  if (!parse_source_options(arguments, 2, false, options, error)) {
    errors << "wavelume-cli download: " << error
           << "\nusage: wavelume-cli download RESOURCE SOURCE [--tab N] [--set PATH=VALUE]...\n";
    return 2;
  }
  const std::string& source = options.positional[1];
  if (ends_with(source, ".ARB") || ends_with(source, ".bin")) {
    // A waveform file goes as it is: it brings its own header and seal.
    QFile file(QString::fromStdString(source));
    if (!options.settings.empty() || options.tab) {
      errors << "wavelume-cli download: --set and --tab do not apply to a waveform file\n";
      return 2;
    }
    if (!file.open(QIODevice::ReadOnly)) {
      errors << "wavelume-cli download: cannot read '" << source
             << "': " << file.errorString().toStdString() << "\n";
      return 2;
    }
    const QByteArray bytes = file.readAll();
    const QString resource = add_to_device_list(options.positional[0]);
    if (!connect_and_show(resource, out, errors)) {
      return exit_link_failed;
    }
    if (!nal::visa_device_manager_t::instance().send_to_current(bytes.constData(), bytes.size(),
                                                                QByteArray())) {
      errors << "wavelume-cli download: the transfer to '" << resource.toStdString()
             << "' failed\n";
      return exit_link_failed;
    }
    out << "sent " << bytes.size() << " bytes of " << source << "\n";
    return 0;
  }
  std::string protocol_text;
  std::vector<cli_setting_change_t> changes;
  auto configuration = load_configuration(source, options, protocol_text, changes, error);
  if (!configuration) {
    errors << "wavelume-cli download: " << error << "\n";
    return 2;
  }
  if (!report_setting_changes("wavelume-cli download", changes, options.strict, errors)) {
    return 2;
  }
  cli_waveform_t waveform;
  if (!compute_waveform(*configuration, waveform, error)) {
    errors << "wavelume-cli download: " << error << "\n";
    return 2;
  }
  const std::size_t sample_count = waveform.samples->size();
  if (sample_count == 0) {
    errors << "wavelume-cli download: the settings produced no waveform\n";
    return 1;
  }
  const QString resource = add_to_device_list(options.positional[0]);
  if (!connect_and_show(resource, out, errors)) {
    return exit_link_failed;
  }
  if (!configuration->download_wavefrom_to_instrument()) {
    errors << "wavelume-cli download: the transfer to '" << resource.toStdString() << "' failed\n";
    return exit_link_failed;
  }
  out << "sent " << sample_count << " samples of " << protocol_text << "\n";
  return 0;
}

}  // namespace wavelume::cli

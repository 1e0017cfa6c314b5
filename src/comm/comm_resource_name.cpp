#include "comm/comm_resource_name.h"

#include <QRegularExpression>
#include <QString>

namespace nal {

namespace {

// Host names after RFC 1123: letters, digits and hyphens in dot-separated labels. A name made
// of digits and dots must be a valid IPv4 address.
bool is_valid_host(const QString& host) {
  static const QRegularExpression name(
      QStringLiteral("^[A-Za-z0-9](?:[A-Za-z0-9-]{0,61}[A-Za-z0-9])?"
                     "(?:\\.[A-Za-z0-9](?:[A-Za-z0-9-]{0,61}[A-Za-z0-9])?)*$"));
  static const QRegularExpression numeric(QStringLiteral("^[0-9.]+$"));
  if (host.size() > 253 || !name.match(host).hasMatch()) {
    return false;
  }
  if (!numeric.match(host).hasMatch()) {
    return true;
  }
  const QStringList parts = host.split(QLatin1Char('.'));
  if (parts.size() != 4) {
    return false;
  }
  for (const QString& part : parts) {
    bool ok = false;
    if (part.size() > 3 || part.toUInt(&ok) > 255 || !ok) {
      return false;
    }
  }
  return true;
}

bool parse_port(const QString& text, std::uint16_t& port) {
  bool ok = false;
  const uint value = text.toUInt(&ok, 10);
  if (!ok || value == 0 || value > 65535) {
    return false;
  }
  port = static_cast<std::uint16_t>(value);
  return true;
}

// A USB identifier in VISA's forms: "0x1AB1" or decimal.
bool parse_usb_id(const QString& text, std::uint16_t& id) {
  bool ok = false;
  const uint value = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)
                         ? text.mid(2).toUInt(&ok, 16)
                         : text.toUInt(&ok, 10);
  if (!ok || value > 0xFFFF) {
    return false;
  }
  id = static_cast<std::uint16_t>(value);
  return true;
}

bool parse_tcpip(QStringList parts, comm_resource_name_t& result, std::string& error) {
  if (parts.size() < 2 || !is_valid_host(parts[1])) {
    error = "no valid host name or IPv4 address after TCPIP";
    return false;
  }
  result.host = parts[1].toStdString();
  if (parts.size() == 4 && parts[3].compare(QLatin1String("SOCKET"), Qt::CaseInsensitive) == 0) {
    result.kind = comm_resource_name_t::KIND_SOCKET;
    if (!parse_port(parts[2], result.port)) {
      error = "the port of a SOCKET resource must be a number from 1 to 65535";
      return false;
    }
    return true;
  }
  if (parts.back().compare(QLatin1String("INSTR"), Qt::CaseInsensitive) == 0) {
    parts.removeLast();
  }
  if (parts.size() > 3) {
    error = "a TCPIP resource ends with ::INSTR or ::SOCKET";
    return false;
  }
  const QString device = parts.size() == 3 ? parts[2] : QStringLiteral("inst0");
  static const QRegularExpression hislip(QStringLiteral("^(hislip[0-9]+)(?:,([0-9]+))?$"),
                                         QRegularExpression::CaseInsensitiveOption);
  static const QRegularExpression vxi11(QStringLiteral("^[A-Za-z_][A-Za-z0-9_,]*$"));
  const QRegularExpressionMatch hislip_match = hislip.match(device);
  if (hislip_match.hasMatch()) {
    result.kind = comm_resource_name_t::KIND_HISLIP;
    result.device_name = hislip_match.captured(1).toStdString();
    result.port = comm_resource_name_t::hislip_default_port;
    if (!hislip_match.captured(2).isEmpty() && !parse_port(hislip_match.captured(2), result.port)) {
      error = "the port after hislip must be a number from 1 to 65535";
      return false;
    }
    return true;
  }
  if (!vxi11.match(device).hasMatch()) {
    error = "the device name of a TCPIP resource is not valid";
    return false;
  }
  result.kind = comm_resource_name_t::KIND_VXI11;
  result.device_name = device.toStdString();
  return true;
}

bool parse_usb(QStringList parts, comm_resource_name_t& result, std::string& error) {
  if (parts.back().compare(QLatin1String("INSTR"), Qt::CaseInsensitive) == 0) {
    parts.removeLast();
  }
  if (parts.size() < 4 || parts.size() > 5 || !parse_usb_id(parts[1], result.usb_vendor) ||
      !parse_usb_id(parts[2], result.usb_product) || parts[3].isEmpty()) {
    error = "a USB resource reads USB[board]::vendor::product::serial[::interface]::INSTR";
    return false;
  }
  result.kind = comm_resource_name_t::KIND_USBTMC;
  result.usb_serial = parts[3].toStdString();
  if (parts.size() == 5) {
    bool ok = false;
    result.usb_interface = parts[4].toInt(&ok);
    if (!ok || result.usb_interface < 0 || result.usb_interface > 255) {
      error = "the USB interface number must be from 0 to 255";
      return false;
    }
  }
  return true;
}

}  // namespace

bool comm_resource_name_t::parse(const std::string& text, comm_resource_name_t& result,
                                 std::string& error) {
  result = comm_resource_name_t();
  const QString trimmed = QString::fromStdString(text).trimmed();
  const QStringList parts = trimmed.split(QStringLiteral("::"));
  static const QRegularExpression interface_type(QStringLiteral("^(TCPIP|USB)([0-9]{0,3})$"),
                                                 QRegularExpression::CaseInsensitiveOption);
  const QRegularExpressionMatch type = interface_type.match(parts.front());
  if (!type.hasMatch()) {
    error = "the resource string does not begin with TCPIP or USB";
    return false;
  }
  result.board = type.captured(2).isEmpty() ? 0 : type.captured(2).toInt();
  if (type.captured(1).compare(QLatin1String("USB"), Qt::CaseInsensitive) == 0) {
    return parse_usb(parts, result, error);
  }
  return parse_tcpip(parts, result, error);
}

}  // namespace nal

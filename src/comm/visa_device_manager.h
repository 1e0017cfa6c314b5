#pragma once
// The instruments the program knows: those the VISA search finds and those added by hand, their
// identifications, and the one connected last, to which waveforms go. The process has one
// instance, created on first use and never destroyed; tests build their own on a test double.
// Owns no lock: one thread at a time, the caller keeps a worker's download apart from other use.

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <memory>

#include "comm/comm_block.h"
#include "comm/comm_visa_api.h"

namespace nal {

class visa_resource_manager_t;
class visa_resource_t;

// What the device list shows of one resource.
struct visa_resource_info_t {
  QString symbolic_name;
  QString resource_name;
  QString idn;
};

class visa_device_manager_t {
 public:
  // The process's instance, on the process's VISA implementation.
  static visa_device_manager_t& instance();

  // Searches once at creation.
  explicit visa_device_manager_t(std::shared_ptr<comm_visa_api_t> api);
  ~visa_device_manager_t();
  visa_device_manager_t(const visa_device_manager_t&) = delete;
  visa_device_manager_t& operator=(const visa_device_manager_t&) = delete;

  // Searches "?*::INSTR" again, keeping the objects of names still found.
  void update_resource_list();
  // Adds "TCPIP0::<ip>::inst0::INSTR" ("LOCALHOST" for "localhost"), once.
  void add_tcpip_resource(const QString& ip);
  // The resource name add_tcpip_resource gives an address.
  static QString tcpip_resource_name(const QString& ip);
  // Adds a resource by its full VISA name (any transport, e.g. "TCPIP0::host::5025::SOCKET"),
  // once; for the command-line tool, where an address may carry a port.
  void add_resource(const QString& name);
  void remove_resource(const QString& name);
  // The entry of `name`, or the defaults: "Symbolic Name" and two empty strings.
  visa_resource_info_t get_resource_info(const QString& name) const;
  bool set_symbolic_name(const QString& name, const QString& text);
  // Reopens the resource and makes it current when that succeeds.
  bool connect_resource(const QString& name);
  QStringList get_found_names() const { return _found_resources.keys(); }
  QStringList get_added_names() const { return _added_resources.keys(); }
  // Asks the current resource for its identification again; false without one.
  bool refresh_current();
  // Sends "IQDA ", `header` and the `size` bytes of `data` to the current resource as one
  // block, after checking that it still answers (one reopen as repair). True when all was
  // written.
  bool send_to_current(const char* data, int size, const QByteArray& header);
  // The same for a block whose bytes after "IQDA " are described by `body`, which may produce
  // them while earlier pieces are on the wire.
  bool send_to_current(const comm_block_t& body);

  visa_resource_t* get_current_resource() const { return _current_resource; }
  const QStringList& get_model_filter_list() const { return _model_filter_list; }

 private:
  // Takes a resource out of use: no longer current, closed, deleted later.
  void _retire(visa_resource_t* resource);

  visa_resource_manager_t* _resource_manager;
  QMap<QString, visa_resource_t*> _found_resources;
  QMap<QString, visa_resource_t*> _added_resources;
  QMap<QString, visa_resource_info_t> _resource_info;
  visa_resource_t* _current_resource = nullptr;
  const QStringList _model_filter_list{QStringLiteral("NVG7100Q"), QStringLiteral("NDW")};
  const QString _default_symbolic_name = QStringLiteral("Symbolic Name");
  const QString _default_resource_name;
  const QString _default_idn;
};

}  // namespace nal

#pragma once
// The session with the VISA resource manager, and the parent of every visa_resource_t opened
// through it, so that it outlives them. Owns no lock; one thread at a time.

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

#include "comm/comm_visa_api.h"

namespace nal {

class visa_resource_manager_t : public QObject {
  Q_OBJECT

 public:
  // Opens the default resource manager of the process's VISA implementation
  // (comm_visa_backend_t::process_backend).
  explicit visa_resource_manager_t(QObject* parent = nullptr);
  // The same on a given implementation: a test double, or a second manager in one process.
  explicit visa_resource_manager_t(std::shared_ptr<comm_visa_api_t> api, QObject* parent = nullptr);
  ~visa_resource_manager_t() override;

  // The resource strings that match the VISA search `expression` ("?*::INSTR"); an empty list
  // when none match or the search fails.
  QStringList find_resources(const QString& expression);

  // 0 when the VISA library did not open a manager.
  comm_vi_session_t get_session() const { return _session; }
  comm_visa_api_t& get_api() const { return *_api; }

 private:
  std::shared_ptr<comm_visa_api_t> _api;
  comm_vi_session_t _session = 0;
};

}  // namespace nal

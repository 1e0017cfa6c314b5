#pragma once
// The devices of one Download dialog, keyed and ordered by resource name. The dialog fills it
// from the instrument link's list and forgets it when it closes; identifications live on in the
// device manager. GUI thread only.

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>
#include <functional>

#include "ui/download/ui_device_model.h"

namespace nal {

class ui_devices_model_t : public QObject {
  Q_OBJECT

 public:
  explicit ui_devices_model_t(QObject* parent = nullptr);

  // Makes `names` the devices: a name known already keeps its identification, tick and status,
  // a new one starts unknown. Emits sig_update_ui.
  void set_resource_names(const QVector<QString>& names);
  // Each setter is false for a name not in the list. Each emits sig_update_dev_info even when
  // the value is unchanged, so that a row showing a pending connection returns to the stored
  // state.
  bool set_idn(const QString& name, const QString& idn);
  bool set_selected(const QString& name, bool selected);
  // `status` is one of ui_device_model_t's status values; also emits sig_update_download_status.
  bool set_download_status(const QString& name, int status);

  const QMap<QString, ui_device_model_t>& get_devices() const { return _devices; }
  // The devices a download goes to, ticked and identified, in key order.
  QStringList get_downloadable_names() const;

 signals:
  // The list of devices changed.
  void sig_update_ui();
  void sig_update_dev_info(ui_device_model_t devInfo);
  void sig_update_download_status(QString resName, int download_status);

 private:
  // Applies `change` to the entry of `name` and tells sig_update_dev_info.
  bool _update(const QString& name, const std::function<void(ui_device_model_t&)>& change);

  QMap<QString, ui_device_model_t> _devices;
};

}  // namespace nal

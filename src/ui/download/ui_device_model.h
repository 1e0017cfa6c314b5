#pragma once
// One instrument row of the Download dialog, as the dialog sees it. Copied freely; carried by
// signals, hence the meta type.

#include <QMetaType>
#include <QString>

namespace nal {

struct ui_device_model_t {
  // Values of download_status.
  static constexpr int status_none = 0;
  static constexpr int status_downloading = 1;
  static constexpr int status_succeeded = 2;
  static constexpr int status_failed = 3;

  // The VISA resource string; the key of the row.
  QString resource_name;
  // The reply to "*IDN?"; empty when never connected or when the instrument did not answer.
  QString idn;
  // The tick box of the row.
  bool selected = false;
  int download_status = status_none;
};

}  // namespace nal

Q_DECLARE_METATYPE(nal::ui_device_model_t)

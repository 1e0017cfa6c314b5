#pragma once
// Adds an instrument by its LAN address: "localhost" as it is, or four numbers of 0 to 255.
// The numbers may be separated by any character, not only by dots, which the device list has
// always accepted; the device manager then builds "TCPIP0::<address>::inst0::INSTR". A refused
// text shows an error box and keeps the dialog open.

#include <QString>

#include "ui/download/ui_dialog_base.h"

class QLineEdit;

namespace nal {

class ui_dialog_add_new_resource_t : public ui_dialog_base_t {
  Q_OBJECT

 public:
  explicit ui_dialog_add_new_resource_t(QWidget* parent = nullptr);

 public slots:
  // Checks the address; closes the dialog and tells sig_add_new_tcpip_resource when it passes.
  void accept() override;

 signals:
  void sig_add_new_tcpip_resource(QString ip);

 private:
  QLineEdit* _address_edit;
};

}  // namespace nal

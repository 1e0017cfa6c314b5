#include "ui/download/ui_dialog_add_new_resource.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace nal {

namespace {

bool is_acceptable_address(const QString& address) {
  // The dots are left unescaped on purpose: addresses typed with other separators have always
  // been accepted.
  static const QRegularExpression pattern(
      QStringLiteral("^(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?).){3}(?:25[0-5]|2[0-4][0-9]|[01]?"
                     "[0-9][0-9]?)$"));
  return address == QLatin1String("localhost") || pattern.match(address).hasMatch();
}

}  // namespace

ui_dialog_add_new_resource_t::ui_dialog_add_new_resource_t(QWidget* parent)
    : ui_dialog_base_t(QStringLiteral("Add New Resource"), parent),
      _address_edit(new QLineEdit(QStringLiteral("192.168.1.100"), this)) {
  setObjectName(QStringLiteral("AddNewResourceDialog"));
  _address_edit->setObjectName(QStringLiteral("IpAddress"));
  _address_edit->setMinimumWidth(220);
  _address_edit->selectAll();

  auto* add = new QPushButton(tr("Add"), this);
  add->setObjectName(QStringLiteral("AddResource"));
  auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
  cancel->setObjectName(QStringLiteral("Cancel"));
  connect(add, &QPushButton::clicked, this, &ui_dialog_add_new_resource_t::accept);
  connect(cancel, &QPushButton::clicked, this, &ui_dialog_add_new_resource_t::reject);

  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("IP Address:"), _address_edit);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addLayout(make_button_row({add, cancel}));
}

void ui_dialog_add_new_resource_t::accept() {
  // Blanks around a pasted address are not part of it.
  const QString address = _address_edit->text().trimmed();
  if (!is_acceptable_address(address)) {
    QMessageBox::critical(this, QStringLiteral("Error"), QStringLiteral("Invalid IP Address."));
    _address_edit->setFocus();
    _address_edit->selectAll();
    return;
  }
  emit sig_add_new_tcpip_resource(address);
  ui_dialog_base_t::accept();
}

}  // namespace nal

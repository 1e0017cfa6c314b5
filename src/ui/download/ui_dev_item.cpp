#include "ui/download/ui_dev_item.h"

#include <QCheckBox>
#include <QEvent>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace nal {

namespace {

const char* const known_text =
    "<span style=\"color:#3c3;\">[√]</span> <u style=\"color:#aaa;\">%1.</u>";
const char* const unknown_text =
    "<span style='color:red;'>Unknow</span> <span style=\"color:#888;\">[Double click to connect "
    "device]</span>";
const char* const connecting_text =
    "<span style=\"color:#0069D9;\">[=]</span> <u style=\"color:#aaa;\">Connecting device, please "
    "wait...</u>";

QString status_text(int status) {
  switch (status) {
    case ui_device_model_t::status_downloading:
      return QStringLiteral("<span style='color:#197DDF;'>[Downloading...]</span>");
    case ui_device_model_t::status_succeeded:
      return QStringLiteral("<span style='color:#3c3;'>[Download OK (√)]</span>");
    case ui_device_model_t::status_failed:
      return QStringLiteral("<span style='color:red;'>[Download Failed (×)]</span>");
    default:
      return QString();
  }
}

QLabel* make_label(const QString& name, Qt::TextFormat format, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setTextFormat(format);
  return label;
}

}  // namespace

ui_dev_item_t::ui_dev_item_t(QWidget* parent)
    : QFrame(parent),
      _title(make_label(QStringLiteral("DevItemTitle"), Qt::PlainText, this)),
      _info(make_label(QStringLiteral("DevItemInfo"), Qt::RichText, this)),
      _tick(new QCheckBox(this)),
      _status(make_label(QStringLiteral("DevItemStatus"), Qt::RichText, this)) {
  setObjectName(QStringLiteral("DevItem"));
  setFixedHeight(row_height);
  _title->setText(QStringLiteral("Resource Name"));
  // A long identification is shortened to the row instead of widening the dialog; the tool tip
  // holds it whole.
  _info->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  _info->installEventFilter(this);
  _tick->setObjectName(QStringLiteral("DevItemSelect"));
  _tick->setFixedWidth(12);
  _tick->setToolTip(tr("Send the waveform to this device"));
  _status->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

  auto* first_line = new QHBoxLayout;
  first_line->setSpacing(8);
  first_line->addWidget(_title, 1);
  first_line->addWidget(_tick);
  auto* second_line = new QHBoxLayout;
  second_line->setSpacing(8);
  second_line->addWidget(_info, 1);
  second_line->addWidget(_status);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(8, 4, 8, 4);
  layout->setSpacing(2);
  layout->addLayout(first_line);
  layout->addLayout(second_line);

  connect(_tick, &QCheckBox::clicked, this,
          [this](bool checked) { emit sig_selected_changed(get_resource_name(), checked); });
}

QString ui_dev_item_t::get_resource_name() const {
  return _title->text();
}

void ui_dev_item_t::show_device(const ui_device_model_t& device) {
  _connecting = false;
  _title->setText(device.resource_name);
  _idn = device.idn;
  _show_idn();
  _info->setToolTip(device.idn);
  _tick->setChecked(device.selected);
  _status->setText(status_text(device.download_status));
}

void ui_dev_item_t::on_update_dev_info(const ui_device_model_t& devInfo) {
  if (devInfo.resource_name == get_resource_name()) {
    show_device(devInfo);
  }
}

void ui_dev_item_t::_show_idn() {
  if (_idn.isEmpty()) {
    _info->setText(QString::fromUtf8(unknown_text));
    return;
  }
  QString shown = _idn;
  if (_info->isVisible()) {
    const QFontMetrics metrics(_info->font());
    const int room =
        _info->contentsRect().width() - metrics.horizontalAdvance(QStringLiteral("[√] ."));
    shown = metrics.elidedText(_idn, Qt::ElideRight, room);
  }
  _info->setText(QString::fromUtf8(known_text).arg(shown.toHtmlEscaped()));
}

bool ui_dev_item_t::eventFilter(QObject* watched, QEvent* event) {
  if (watched == _info && (event->type() == QEvent::Resize || event->type() == QEvent::Show) &&
      !_connecting) {
    _show_idn();
  }
  return QFrame::eventFilter(watched, event);
}

void ui_dev_item_t::request_connection() {
  _connecting = true;
  _info->setText(QString::fromUtf8(connecting_text));
  emit sig_connect_resource(get_resource_name());
}

void ui_dev_item_t::toggle_selected() {
  _tick->click();
}

void ui_dev_item_t::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    request_connection();
    event->accept();
    return;
  }
  QFrame::mouseDoubleClickEvent(event);
}

}  // namespace nal

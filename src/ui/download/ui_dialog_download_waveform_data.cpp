#include "ui/download/ui_dialog_download_waveform_data.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>
#include <limits>
#include <new>

#include "comm/comm_deal.h"
#include "ui/download/ui_dev_list_widget.h"
#include "ui/download/ui_devices_model.h"
#include "ui/download/ui_dialog_add_new_resource.h"

namespace nal {

namespace {

// The largest file that fits one VISA write after "IQDA ".
constexpr qint64 max_file_bytes = std::numeric_limits<int>::max() - 1024;

// A framed group with an icon and a title above `content`.
QWidget* make_group(const QString& name, const QString& icon, const QString& title,
                    QLayout* content, QWidget* parent) {
  auto* group = new QFrame(parent);
  group->setObjectName(name);
  group->setFrameShape(QFrame::StyledPanel);
  auto* icon_label = new QLabel(group);
  icon_label->setObjectName(QStringLiteral("DialogGroupIcon"));
  // The images come with the application's resources; without them the group has no icon.
  const QPixmap pixmap = QFile::exists(icon) ? QIcon(icon).pixmap(16, 16) : QPixmap();
  icon_label->setPixmap(pixmap);
  icon_label->setVisible(!pixmap.isNull());
  auto* title_label = new QLabel(title, group);
  title_label->setObjectName(QStringLiteral("DialogGroupTitle"));
  QFont bold = title_label->font();
  bold.setBold(true);
  title_label->setFont(bold);

  auto* header = new QHBoxLayout;
  header->setSpacing(6);
  header->addWidget(icon_label);
  header->addWidget(title_label, 1);
  auto* layout = new QVBoxLayout(group);
  layout->setContentsMargins(8, 6, 8, 8);
  layout->setSpacing(6);
  layout->addLayout(header);
  layout->addLayout(content);
  return group;
}

// Lets the texts just set reach the screen before a call that blocks the GUI thread; user input
// waits for the call to end.
void paint_pending_changes() {
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace

ui_dialog_download_waveform_data_t::ui_dialog_download_waveform_data_t(QWidget* parent)
    : ui_dialog_download_waveform_data_t(*comm_deal_t::instance(), parent) {}

ui_dialog_download_waveform_data_t::ui_dialog_download_waveform_data_t(comm_deal_t& deal,
                                                                       QWidget* parent)
    : ui_dialog_base_t(QStringLiteral("Download"), parent),
      _deal(deal),
      _devices(new ui_devices_model_t(this)),
      _dev_list(new ui_dev_list_widget_t(this)),
      _add_new(new QPushButton(QStringLiteral("Add New..."), this)),
      _current_setting(new QRadioButton(QStringLiteral("Current Setting"), this)),
      _from_file(new QRadioButton(QStringLiteral("From File"), this)),
      _download_button(new QPushButton(QStringLiteral("Download"), this)),
      _choose_file([](QWidget* chooser_parent, const QString& caption, const QString& filter) {
        return QFileDialog::getOpenFileName(chooser_parent, caption, QString(), filter);
      }) {
  setObjectName(QStringLiteral("DownloadDialog"));
  resize(500, 440);
  _download_button->setObjectName(QStringLiteral("Download"));
  _download_button->setEnabled(false);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->setSpacing(12);
  layout->addWidget(_make_devices_group(), 1);
  layout->addWidget(_make_data_source_group());
  layout->addLayout(make_button_row({_download_button}));

  _dev_list->set_devices_model(_devices);
  connect(_devices, &ui_devices_model_t::sig_update_ui, this,
          &ui_dialog_download_waveform_data_t::on_dev_list_changed);
  connect(_devices, &ui_devices_model_t::sig_update_dev_info, this,
          &ui_dialog_download_waveform_data_t::sig_update_dev_info);
  connect(_devices, &ui_devices_model_t::sig_update_dev_info, this,
          &ui_dialog_download_waveform_data_t::update_download_enabled);
  connect(this, &ui_dialog_download_waveform_data_t::sig_list_resources, _devices,
          &ui_devices_model_t::set_resource_names);
  connect(_dev_list, &ui_dev_list_widget_t::sig_connect_resource, this,
          &ui_dialog_download_waveform_data_t::_connect_resource);
  connect(_add_new, &QPushButton::clicked, this,
          &ui_dialog_download_waveform_data_t::_add_new_resource);
  connect(_download_button, &QPushButton::clicked, this,
          &ui_dialog_download_waveform_data_t::_download);
  _connect_to_link();

  // Asked for once the dialog is on screen, so that the overlay shows while the link answers.
  _dev_list->set_overlay_visible(true);
  QTimer::singleShot(0, this, [this] { _deal.update_resource_list(); });
}

QWidget* ui_dialog_download_waveform_data_t::_make_devices_group() {
  _add_new->setObjectName(QStringLiteral("AddNewResource"));
  _add_new->setAutoDefault(false);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(_add_new);
  buttons->addStretch(1);
  auto* content = new QVBoxLayout;
  content->setSpacing(4);
  content->addWidget(_dev_list, 1);
  content->addLayout(buttons);
  return make_group(QStringLiteral("DevicesGroup"), QStringLiteral(":/image/device_box.svg"),
                    QStringLiteral("Devices"), content, this);
}

QWidget* ui_dialog_download_waveform_data_t::_make_data_source_group() {
  _current_setting->setObjectName(QStringLiteral("CurrentSetting"));
  _from_file->setObjectName(QStringLiteral("FromFile"));
  auto* sources = new QButtonGroup(this);
  sources->setExclusive(true);
  sources->addButton(_current_setting);
  sources->addButton(_from_file);
  _current_setting->setChecked(true);
  auto* content = new QHBoxLayout;
  content->setSpacing(24);
  content->addWidget(_current_setting);
  content->addWidget(_from_file);
  content->addStretch(1);
  return make_group(QStringLiteral("DataSourceGroup"), QStringLiteral(":/image/source.svg"),
                    QStringLiteral("Data Source"), content, this);
}

void ui_dialog_download_waveform_data_t::_connect_to_link() {
  connect(&_deal, &comm_deal_t::sig_list_resources, this,
          &ui_dialog_download_waveform_data_t::sig_list_resources);
  connect(&_deal, &comm_deal_t::sig_update_resource_info, _devices, &ui_devices_model_t::set_idn);
  connect(&_deal, &comm_deal_t::sig_download_data_to_inst_callback, this,
          &ui_dialog_download_waveform_data_t::on_download_data_callback);
  connect(this, &ui_dialog_download_waveform_data_t::sig_add_new_tcpip_resource, &_deal,
          &comm_deal_t::add_tcpip_inst_res);
  connect(this, &ui_dialog_download_waveform_data_t::sig_download_waveform_to_inst, &_deal,
          &comm_deal_t::download_waveform_data_to_inst);
}

void ui_dialog_download_waveform_data_t::set_file_chooser(file_chooser_t chooser) {
  _choose_file = std::move(chooser);
}

void ui_dialog_download_waveform_data_t::update_download_enabled() {
  _download_button->setEnabled(!_devices->get_downloadable_names().isEmpty());
}

void ui_dialog_download_waveform_data_t::on_dev_list_changed() {
  _dev_list->set_overlay_visible(false);
  update_download_enabled();
}

void ui_dialog_download_waveform_data_t::on_download_data_callback(const QString& resName,
                                                                   bool successed) {
  _devices->set_download_status(
      resName, successed ? ui_device_model_t::status_succeeded : ui_device_model_t::status_failed);
}

void ui_dialog_download_waveform_data_t::_add_new_resource() {
  auto* dialog = new ui_dialog_add_new_resource_t(this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &ui_dialog_add_new_resource_t::sig_add_new_tcpip_resource, this,
          &ui_dialog_download_waveform_data_t::sig_add_new_tcpip_resource);
  dialog->open();
}

void ui_dialog_download_waveform_data_t::_connect_resource(const QString& resName) {
  paint_pending_changes();
  _deal.connect_resource(resName);
}

void ui_dialog_download_waveform_data_t::_download() {
  const QStringList targets = _devices->get_downloadable_names();
  if (targets.isEmpty()) {
    return;
  }
  const bool from_file = _from_file->isChecked();
  // A cancelled file box still goes out, as an empty array the link refuses: the rows say
  // "failed" rather than nothing.
  const QByteArray file_bytes = from_file ? _read_chosen_file() : QByteArray();
  // Without a page behind the dialog nobody generates the current setting.
  const bool page_listens = isSignalConnected(QMetaMethod::fromSignal(
      &ui_dialog_download_waveform_data_t::sig_download_curr_waveform_to_inst));
  for (const QString& name : targets) {
    _devices->set_download_status(name, ui_device_model_t::status_downloading);
  }
  paint_pending_changes();
  for (const QString& name : targets) {
    if (from_file) {
      emit sig_download_waveform_to_inst(name, file_bytes);
    } else if (page_listens) {
      emit sig_download_curr_waveform_to_inst(name);
    } else {
      on_download_data_callback(name, false);
    }
    paint_pending_changes();
  }
}

QByteArray ui_dialog_download_waveform_data_t::_read_chosen_file() {
  const QString path = _choose_file(
      this, QStringLiteral("Select Waveform Data File"),
      QStringLiteral("Waveform Files (*.ARB);;Waveform Files (*.bin);;Raw IQ Data (*.txt)"));
  if (path.isEmpty()) {
    return QByteArray();
  }
  QFile file(path);
  QString problem;
  if (!file.open(QIODevice::ReadOnly)) {
    problem = file.errorString();
  } else if (file.isSequential()) {
    // A device or pipe may never end.
    problem = QStringLiteral("not a regular file");
  } else if (file.size() > max_file_bytes) {
    problem = QStringLiteral("larger than one instrument transfer");
  }
  if (!problem.isEmpty()) {
    qWarning("Download: cannot read '%s': %s", qUtf8Printable(path), qUtf8Printable(problem));
    return QByteArray();
  }
  try {
    return file.readAll();
  } catch (const std::bad_alloc&) {
    qWarning("Download: not enough memory to read '%s'", qUtf8Printable(path));
    return QByteArray();
  }
}

}  // namespace nal

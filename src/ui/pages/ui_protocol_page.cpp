#include "ui/pages/ui_protocol_page.h"

#include <QAction>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>
#include <typeinfo>

#include "cfg/cfg_protocol_state.h"
#include "comm/comm_deal.h"
#include "ui/chart/ui_fft_spectrum_view.h"
#include "ui/chart/ui_iq_waveform_view.h"
#include "ui/download/ui_dialog_download_waveform_data.h"
#include "ui/pages/ui_tab_bar.h"
#include "ui/pages/ui_tab_widget.h"
#include "ui/pages/ui_update_blink.h"

namespace nal {

namespace {

std::string local_path(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

ui_tab_widget_t* fixed_tab_widget(QWidget* parent) {
  auto* tabs = new ui_tab_widget_t(parent);
  tabs->tab_bar()->set_closable(false);
  return tabs;
}

}  // namespace

ui_protocol_page_t::ui_protocol_page_t(std::unique_ptr<cfg_protocol_base_t> configuration,
                                       const QString& update_tooltip, QWidget* parent)
    : QWidget(parent),
      _configuration(std::move(configuration)),
      _iq_view(new ui_iq_waveform_view_t),
      _spectrum_view(new ui_fft_spectrum_view_t),
      _view_tab_widget(fixed_tab_widget(this)),
      _setup_tab_widget(fixed_tab_widget(this)),
      _status_line(new QLabel(this)) {
  setAttribute(Qt::WA_DeleteOnClose);
  _view_tab_widget->add_page(_iq_view, "I | Q");
  _view_tab_widget->add_page(_spectrum_view, "Spectrum");
  _view_tab_widget->set_current_index(0);

  auto* splitter = new QSplitter(Qt::Horizontal, this);
  splitter->addWidget(_setup_tab_widget);
  splitter->addWidget(_view_tab_widget);
  splitter->setStretchFactor(0, 0);
  splitter->setStretchFactor(1, 1);
  splitter->setSizes({400, 800});
  splitter->setChildrenCollapsible(false);

  _status_line->setObjectName("StatusLine");
  _status_line->setTextInteractionFlags(Qt::TextSelectableByMouse);

  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(0);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(_build_toolbar(update_tooltip));
  layout->addWidget(splitter, 1);
  layout->addWidget(_status_line);
}

ui_protocol_page_t::~ui_protocol_page_t() {
  // Setup widgets refer to the configuration: they go first.
  qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
}

QToolBar* ui_protocol_page_t::_build_toolbar(const QString& update_tooltip) {
  auto* toolbar = new QToolBar(this);
  toolbar->setObjectName("MainWindowToolBar");
  toolbar->setFloatable(false);
  toolbar->setMovable(false);
  toolbar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  toolbar->setIconSize(QSize(20, 20));
  connect(toolbar->addAction(QIcon(":/image/New.ico"), "Preset"), &QAction::triggered, this,
          [this] { _run_preset(); });
  connect(toolbar->addAction(QIcon(":/image/Save.ico"), "Save"), &QAction::triggered, this,
          &ui_protocol_page_t::_on_save);
  connect(toolbar->addAction(QIcon(":/image/Open.ico"), "Recall"), &QAction::triggered, this,
          &ui_protocol_page_t::_on_recall);
  connect(toolbar->addAction(QIcon(":/image/Download.ico"), "Download"), &QAction::triggered, this,
          &ui_protocol_page_t::_on_download);
  _update_action = toolbar->addAction(QIcon(":/image/Wave.ico"), "Update");
  _update_action->setToolTip(update_tooltip);
  _update_action->setShortcut(QKeySequence(Qt::Key_F5));
  _update_action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(_update_action, &QAction::triggered, this, [this] { _run_update(); });
  _blink = new ui_update_blink_t(toolbar->widgetForAction(_update_action));
  return toolbar;
}

bool ui_protocol_page_t::set_configuration(std::unique_ptr<cfg_protocol_base_t> configuration) {
  if (!configuration) {
    return false;
  }
  const cfg_protocol_base_t& offered = *configuration;
  const cfg_protocol_base_t& current = *_configuration;
  if (typeid(offered) != typeid(current)) {
    return false;
  }
  _unbind_configuration();
  _configuration = std::move(configuration);
  _bind_configuration();
  _run_update();
  return true;
}

bool ui_protocol_page_t::save_wavefrom_to_file(const QString& FilePath) {
  return _configuration->save_wavefrom_to_file(local_path(FilePath));
}

void ui_protocol_page_t::download_waveform_to_instrument(const QString& resName) {
  // The configuration sends to the current instrument, so this one becomes current first.
  const bool successed = comm_deal_t::instance()->connect_resource(resName) &&
                         _configuration->download_wavefrom_to_instrument();
  emit sig_download_data_callback(resName, successed);
}

void ui_protocol_page_t::set_toolbar_update_action_blink(bool state) {
  _blink->set_blink(state);
}

bool ui_protocol_page_t::is_update_blinking() const {
  return _blink->is_blinking();
}

bool ui_protocol_page_t::save_to_path(const QString& path) {
  bool saved = false;
  if (QFileInfo(path).suffix() == "ARB") {
    saved = save_wavefrom_to_file(path);
  } else {
    saved = cfg_protocol_state_t::save_protocol_state(local_path(path), {_configuration.get()}, 0);
  }
  _set_status(saved ? tr("Saved %1").arg(path) : tr("Could not save %1").arg(path));
  return saved;
}

bool ui_protocol_page_t::recall_from_path(const QString& path) {
  if (!QFileInfo(path).isFile()) {
    _set_status(tr("%1 does not exist").arg(path));
    return false;
  }
  std::vector<std::unique_ptr<cfg_protocol_base_t>> configurations;
  uint64 current_index = 0;
  if (!cfg_protocol_state_t::load_protocol_state(local_path(path), configurations, current_index)) {
    _set_status(tr("%1 is not a readable state file").arg(path));
    return false;
  }
  if (configurations.empty() || !set_configuration(std::move(configurations.front()))) {
    _set_status(tr("%1 holds the settings of another protocol; nothing changed").arg(path));
    return false;
  }
  _set_status(tr("Recalled %1").arg(path));
  return true;
}

QString ui_protocol_page_t::status_text() const {
  return _status_line->text();
}

void ui_protocol_page_t::_show_waveform(ui_page_waveform_t waveform) {
  _iq_view->show_prepared(std::move(waveform.iq));
  _spectrum_view->show_prepared(std::move(waveform.spectrum));
  if (!waveform.error.empty()) {
    _set_status(
        tr("The waveform could not be computed: %1").arg(QString::fromStdString(waveform.error)));
  } else if (_showing_error) {
    _set_status(QString());
  }
  _showing_error = !waveform.error.empty();
  emit sig_waveform_shown();
}

void ui_protocol_page_t::_set_status(const QString& text) {
  _status_line->setText(text);
}

void ui_protocol_page_t::_run_preset() {
  _configuration->preset();
}

void ui_protocol_page_t::_on_save() {
  QString filter;
  QString path = QFileDialog::getSaveFileName(
      window(), "Save", QString(), "App State Files (*.state);;Waveform Files (*.ARB)", &filter);
  if (path.isEmpty()) {
    return;
  }
  if (QFileInfo(path).suffix().isEmpty()) {
    path += filter.contains("*.ARB") ? ".ARB" : ".state";
  }
  save_to_path(path);
}

void ui_protocol_page_t::_on_recall() {
  const QString path =
      QFileDialog::getOpenFileName(window(), "Recall", QString(), "App State Files (*.state)");
  if (!path.isEmpty()) {
    recall_from_path(path);
  }
}

void ui_protocol_page_t::_on_download() {
  ui_dialog_download_waveform_data_t dialog(window());
  connect(&dialog, &ui_dialog_download_waveform_data_t::sig_download_curr_waveform_to_inst, this,
          &ui_protocol_page_t::download_waveform_to_instrument);
  connect(this, &ui_protocol_page_t::sig_download_data_callback, &dialog,
          &ui_dialog_download_waveform_data_t::on_download_data_callback);
  dialog.exec();
}

}  // namespace nal

#pragma once
// The frame every protocol page shares: a toolbar (Preset, Save, Recall, Download, Update), the
// setup tabs and the view tabs side by side in a splitter, and a status line. The page owns one
// configuration for its whole life; a recall may replace it by another of the same class.
//
// Derived pages add their setup widgets, bind them to the configuration and say how Update
// computes: on the GUI thread (Custom IQ) or in the background (ui_background_page_t).
// GUI thread only.

#include <QWidget>
#include <memory>

#include "cfg/cfg_protocol_base.h"
#include "ui/pages/ui_page_waveform.h"

class QAction;
class QLabel;
class QToolBar;

namespace nal {

class ui_fft_spectrum_view_t;
class ui_iq_waveform_view_t;
class ui_tab_widget_t;
class ui_update_blink_t;

class ui_protocol_page_t : public QWidget {
  Q_OBJECT

 public:
  ~ui_protocol_page_t() override;

  cfg_protocol_base_t& configuration() const { return *_configuration; }
  // Takes a recalled configuration of this page's own class and shows it; anything else is
  // dropped and the page stays as it was (false).
  bool set_configuration(std::unique_ptr<cfg_protocol_base_t> configuration);

  bool save_wavefrom_to_file(const QString& FilePath);
  void download_waveform_to_instrument(const QString& resName);
  void set_toolbar_update_action_blink(bool state);
  bool is_update_blinking() const;

  // Save and Recall without their file dialogs. Save writes a waveform file for the suffix
  // "ARB" and a state file of this page for any other; Recall reads a state file.
  bool save_to_path(const QString& path);
  bool recall_from_path(const QString& path);

  QAction* update_action() const { return _update_action; }
  QString status_text() const;
  ui_iq_waveform_view_t* iq_view() const { return _iq_view; }
  ui_fft_spectrum_view_t* spectrum_view() const { return _spectrum_view; }

 signals:
  void sig_download_data_callback(QString resName, bool successed);
  // After the views received a new waveform.
  void sig_waveform_shown();

 protected:
  // `update_tooltip` differs between the Custom IQ page and the packet pages.
  ui_protocol_page_t(std::unique_ptr<cfg_protocol_base_t> configuration,
                     const QString& update_tooltip, QWidget* parent);

  ui_tab_widget_t* _setup_tabs() const { return _setup_tab_widget; }
  ui_tab_widget_t* _view_tabs() const { return _view_tab_widget; }
  // Moves the prepared waveform into the I/Q view, then the spectrum view; an error goes to the
  // status line.
  void _show_waveform(ui_page_waveform_t waveform);
  void _set_status(const QString& text);

  // The Update action: compute the current settings and show them.
  virtual void _run_update() = 0;
  // Removes the setup widgets and callbacks bound to the configuration before it is replaced.
  virtual void _unbind_configuration() = 0;
  // Builds them for the current configuration. A recall then runs Update.
  virtual void _bind_configuration() = 0;
  // The Preset action; by default the configuration's own preset.
  virtual void _run_preset();

 private slots:
  void _on_save();
  void _on_recall();
  void _on_download();

 private:
  QToolBar* _build_toolbar(const QString& update_tooltip);

  std::unique_ptr<cfg_protocol_base_t> _configuration;
  ui_iq_waveform_view_t* _iq_view;
  ui_fft_spectrum_view_t* _spectrum_view;
  ui_tab_widget_t* _view_tab_widget;
  ui_tab_widget_t* _setup_tab_widget;
  QAction* _update_action = nullptr;
  ui_update_blink_t* _blink = nullptr;
  QLabel* _status_line;
  // The status line shows a failed computation, to be cleared by the next good one.
  bool _showing_error = false;
};

}  // namespace nal

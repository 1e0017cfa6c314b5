#pragma once
// Every Custom IQ parameter in one setup tree, grouped as the state file groups them: Basic,
// Data Source, Modulation, Filter. The controls follow the engine: any sig_update_ui (a clamp, a
// cascade, a preset, a recall) is shown at once, and refreshing never calls a setter. Groups that
// do not apply to the modulator in use grey out; rows of other modulators are hidden.
//
// Holds a reference to the engine, which must outlive the widget. GUI thread only.

#include <QWidget>
#include <vector>

class QTreeWidget;

namespace nal {

class custom_iq_t;
class ui_custom_iq_section_t;

class ui_custom_iq_setup_widget_t : public QWidget {
  Q_OBJECT

 public:
  ui_custom_iq_setup_widget_t(custom_iq_t& engine, QWidget* parent = nullptr);

  // Re-reads every control from the engine.
  void refresh_from_engine();

 protected:
  // See base class.
  void showEvent(QShowEvent* event) override;

 private:
  QTreeWidget* _tree;
  std::vector<ui_custom_iq_section_t*> _boxes;
};

}  // namespace nal

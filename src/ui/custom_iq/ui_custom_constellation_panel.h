#pragma once
// The custom constellation rows of the Modulation group: the constellation's name (it goes into
// the waveform file header) and its points, edited in ui_constellation_editor_dialog_t.

#include "ui/custom_iq/ui_custom_iq_section.h"

namespace nal {

class ui_custom_constellation_panel_t : public ui_custom_iq_section_t {
  Q_OBJECT

 public:
  ui_custom_constellation_panel_t(custom_iq_t& engine, QTreeWidgetItem& group,
                                  QObject* parent = nullptr);

  // See base class.
  void refresh_from_engine() override;

 private:
  void _edit_points();

  QLineEdit* _name;
  QLabel* _points;
};

}  // namespace nal

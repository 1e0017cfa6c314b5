#include "ui/custom_iq/ui_custom_constellation_panel.h"

#include <QLabel>
#include <QTreeWidget>

#include "ui/widgets/ui_constellation_editor_dialog.h"
#include "ui/widgets/ui_count_text.h"

namespace nal {

ui_custom_constellation_panel_t::ui_custom_constellation_panel_t(custom_iq_t& engine,
                                                                 QTreeWidgetItem& group,
                                                                 QObject* parent)
    : ui_custom_iq_section_t(engine, group, parent) {
  _name =
      _add_text(tr("Constellation name"), QStringLiteral("customConstellationName"),
                [this](const std::string& name) { _engine.set_custom_constellation_name(name); });
  _points = _add_dialog_launcher(tr("Constellation"), QStringLiteral("customConstellationData"),
                                 [this] { _edit_points(); });
}

void ui_custom_constellation_panel_t::_edit_points() {
  ui_constellation_editor_dialog_t dialog(_engine.get_custom_constellation(), _group.treeWidget());
  if (dialog.exec() == QDialog::Accepted) {
    _apply([&] { _engine.set_custom_constellation(dialog.constellation()); });
  }
}

void ui_custom_constellation_panel_t::refresh_from_engine() {
  _show(_name, _engine.get_custom_constellation_name());
  const std::size_t points = _engine.get_custom_constellation().size();
  _points->setText(points == 0 ? tr("None") : ui_count_text_t::points(static_cast<qint64>(points)));
  set_rows_visible(_engine.get_modulator_type() == MODULATOR_CUSTOM);
}

}  // namespace nal

#pragma once
// Editor of a custom constellation: a table of symbol, I and Q with a preview of the points, a
// message naming the first problem (ui_constellation_file_t::check), and load and save of
// constellation text files. OK is enabled only while the table makes a usable constellation.
// A file that cannot be read leaves the table as it was.

#include "lib/lib_types.h"
#include "ui/widgets/ui_constellation_file.h"
#include "ui/widgets/ui_file_editor_dialog.h"

class QPushButton;
class QTableWidget;

namespace nal {

class ui_constellation_chart_t;

class ui_constellation_editor_dialog_t : public ui_file_editor_dialog_t {
  Q_OBJECT

 public:
  explicit ui_constellation_editor_dialog_t(const lib_constellation_map_t& map,
                                            QWidget* parent = nullptr);

  // The table's rows in table order.
  ui_constellation_rows_t rows() const;
  // The table as a map; meaningful when problem() is empty.
  lib_constellation_map_t constellation() const;
  // Empty while the table makes a usable constellation.
  QString problem() const { return _problem; }

  // See base class. A faulty line is named in the message.
  bool load_file(const QString& path) override;
  bool save_file(const QString& path) override;

 private:
  void _set_rows(const ui_constellation_rows_t& rows);
  void _on_table_changed();
  void _add_point();
  void _remove_points();

  QTableWidget* _table;
  ui_constellation_chart_t* _preview;
  QPushButton* _ok;
  QString _problem;
};

}  // namespace nal

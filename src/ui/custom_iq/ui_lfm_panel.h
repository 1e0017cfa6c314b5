#pragma once
// The chirp rows of the Modulation group. Sweep mode: sweep time, bandwidth, offset and sweep
// shape. Custom mode: the segment table with rows to insert and remove, and the total time.
// The sample rate applies to both; rows of the other mode are hidden.

#include "ui/custom_iq/ui_custom_iq_section.h"

class QPushButton;

namespace nal {

class ui_lfm_segment_table_t;

class ui_lfm_panel_t : public ui_custom_iq_section_t {
  Q_OBJECT

 public:
  ui_lfm_panel_t(custom_iq_t& engine, QTreeWidgetItem& group, QObject* parent = nullptr);

  // See base class.
  void refresh_from_engine() override;

 private:
  void _commit_cell(int row, int column, fp64 value);
  // Inserts a new row (0 Hz to 0 Hz, 1 ms) after the selected one, or at the end.
  void _insert_segment();
  void _remove_segment();

  QComboBox* _mode;
  ui_double_spin_box_t* _sample_rate;
  ui_double_spin_box_t* _sweep_time;
  ui_double_spin_box_t* _bandwidth;
  ui_double_spin_box_t* _offset;
  QComboBox* _sweep_type;
  ui_double_spin_box_t* _segments;
  ui_lfm_segment_table_t* _table;
  QWidget* _table_buttons;
  QPushButton* _remove;
  QLabel* _total_time;
};

}  // namespace nal

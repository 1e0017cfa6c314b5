#pragma once
// The custom chirp segments as a table: start frequency, stop frequency and duration per row,
// shown and typed with engineering units ("-1 MHz", "2 ms"). Edits are not kept by the table: each
// committed cell goes out as sig_cell_committed and the table shows whatever show_segments() is
// given next, so the engine's clamping is what the user sees.

#include "custom_iq/custom_iq.h"
#include "ui/widgets/ui_compact_table.h"

namespace nal {

class ui_unit_item_delegate_t;

class ui_lfm_segment_table_t : public ui_compact_table_t {
  Q_OBJECT

 public:
  enum column_t { COLUMN_START = 0, COLUMN_STOP = 1, COLUMN_DURATION = 2 };

  explicit ui_lfm_segment_table_t(QWidget* parent = nullptr);

  // Shows `segments`; frequencies are limited to plus and minus `half_rate` in the editors.
  void show_segments(const custom_iq_t::lfm_segment_list_t& segments, fp64 half_rate);

 signals:
  void sig_cell_committed(int row, int column, nal::fp64 value);

 private:
  void _on_item_changed(QTableWidgetItem* item);

  ui_unit_item_delegate_t* _delegate;
};

}  // namespace nal

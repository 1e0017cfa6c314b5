#include "ui/custom_iq/ui_lfm_panel.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "ui/units/lib_unit.h"
#include "ui/custom_iq/ui_lfm_segment_table.h"

namespace nal {
namespace {

const common_lib::plib_lfm_custom_sweep_config_t new_segment{0.0, 0.0, 0.001};

}  // namespace

ui_lfm_panel_t::ui_lfm_panel_t(custom_iq_t& engine, QTreeWidgetItem& group, QObject* parent)
    : ui_custom_iq_section_t(engine, group, parent),
      _table(new ui_lfm_segment_table_t),
      _table_buttons(new QWidget),
      _remove(new QPushButton(tr("Remove row"))) {
  const QString hertz = QStringLiteral("Hz");
  _mode = _add_choice(tr("Chirp"), QStringLiteral("lfmMode"),
                      {{tr("Sweep"), 0}, {tr("Custom segments"), 1}},
                      [this](uint32 mode) { _engine.set_lfm_mode(mode != 0); });
  _sample_rate = _add_number(tr("Sample rate"), QStringLiteral("lfmSampleRate"), hertz,
                             [this](fp64 rate) { _engine.set_lfm_sample_rate(rate); });
  _sweep_time = _add_number(tr("Sweep time"), QStringLiteral("lfmSweepTime"), QStringLiteral("s"),
                            [this](fp64 seconds) { _engine.set_lfm_sweep_time(seconds); });
  _bandwidth = _add_number(tr("Bandwidth"), QStringLiteral("lfmBandWidth"), hertz,
                           [this](fp64 bandwidth) { _engine.set_lfm_bandwidth(bandwidth); });
  _offset = _add_number(tr("Frequency offset"), QStringLiteral("lfmFreqOffset"), hertz,
                        [this](fp64 offset) { _engine.set_lfm_offset(offset); });
  _sweep_type = _add_choice(
      tr("Sweep type"), QStringLiteral("lfmSweepType"),
      choices(common_lib::lfm_sweep_type_text_map(), LFM_SWEEP_TRIANGLE, LFM_SWEEP_DOWN),
      [this](uint32 type) { _engine.set_lfm_sweep_type(static_cast<lfm_sweep_type_t>(type)); });
  _segments = _add_count(tr("Segments"), QStringLiteral("lfmSegments"),
                         [this](uint32 segments) { _engine.set_lfm_segments(segments); });
  _add_wide_row(_table);
  auto* insert = new QPushButton(tr("Insert row"));
  insert->setObjectName(QStringLiteral("lfmInsertSegment"));
  _remove->setObjectName(QStringLiteral("lfmRemoveSegment"));
  auto* buttons = new QHBoxLayout(_table_buttons);
  buttons->setContentsMargins(0, 0, 0, 0);
  buttons->addStretch(1);
  buttons->addWidget(insert);
  buttons->addWidget(_remove);
  _add_wide_row(_table_buttons);
  _total_time = _add_readout(tr("Total time"), QStringLiteral("lfmTotalTime"));

  connect(_table, &ui_lfm_segment_table_t::sig_cell_committed, this, &ui_lfm_panel_t::_commit_cell);
  connect(insert, &QPushButton::clicked, this, &ui_lfm_panel_t::_insert_segment);
  connect(_remove, &QPushButton::clicked, this, &ui_lfm_panel_t::_remove_segment);
}

void ui_lfm_panel_t::_commit_cell(int row, int column, fp64 value) {
  const auto index = static_cast<uint32>(row);
  _apply([&] {
    if (column == ui_lfm_segment_table_t::COLUMN_DURATION) {
      _engine.set_duration_time(index, value);
    } else {
      _engine.set_frequency(index, value, column == ui_lfm_segment_table_t::COLUMN_STOP);
    }
  });
}

void ui_lfm_panel_t::_insert_segment() {
  custom_iq_t::lfm_segment_list_t list = _engine.get_lfm_segment_list();
  if (list.size() >= _engine.get_lfm_segments_bounds().maximum()) {
    return;
  }
  const int selected = _table->currentRow();
  const auto at = selected < 0 ? list.end() : list.begin() + selected + 1;
  const auto position = list.insert(at, new_segment) - list.begin();
  _apply([&] {
    // The list first, so that raising the count finds every row in place.
    _engine.set_lfm_segment_list(list);
    _engine.set_lfm_segments(static_cast<uint32>(list.size()));
  });
  _table->setCurrentCell(static_cast<int>(position), ui_lfm_segment_table_t::COLUMN_START);
}

void ui_lfm_panel_t::_remove_segment() {
  custom_iq_t::lfm_segment_list_t list = _engine.get_lfm_segment_list();
  if (list.size() <= _engine.get_lfm_segments_bounds().minimum()) {
    return;
  }
  const int selected = _table->currentRow();
  list.erase(selected < 0 ? list.end() - 1 : list.begin() + selected);
  _apply([&] {
    _engine.set_lfm_segment_list(list);
    _engine.set_lfm_segments(static_cast<uint32>(list.size()));
  });
}

void ui_lfm_panel_t::refresh_from_engine() {
  const bool custom = _engine.get_lfm_mode();
  _show(_mode, custom ? 1u : 0u);
  _show(_sample_rate, _engine.get_lfm_sample_rate_bounds());
  _show(_sweep_time, _engine.get_lfm_sweep_time_bounds());
  _show(_bandwidth, _engine.get_lfm_bandwidth_bounds());
  _show(_offset, _engine.get_lfm_offset_bounds());
  _show(_sweep_type, _engine.get_lfm_sweep_type());
  _show(_segments, _engine.get_lfm_segments_bounds());
  _table->show_segments(_engine.get_lfm_segment_list(), _engine.get_lfm_sample_rate() / 2.0);
  _row_of(_table).fit_height();
  _total_time->setText(lib_unit_t::format(_engine.get_lfm_total_time(), QStringLiteral("s"), 6));
  _remove->setEnabled(_engine.get_lfm_segment_list().size() > 1);

  const bool visible = _engine.get_modulator_type() == MODULATOR_LFM;
  set_rows_visible(visible);
  if (visible) {
    for (QWidget* sweep_row :
         std::initializer_list<QWidget*>{_sweep_time, _bandwidth, _offset, _sweep_type}) {
      _row_of(sweep_row).set_visible(!custom);
    }
    for (QWidget* custom_row :
         std::initializer_list<QWidget*>{_segments, _table, _table_buttons, _total_time}) {
      _row_of(custom_row).set_visible(custom);
    }
  }
}

}  // namespace nal

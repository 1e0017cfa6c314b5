#include "ui/custom_iq/ui_multitone_panel.h"

namespace nal {
namespace {

const QString hertz = QStringLiteral("Hz");

}  // namespace

ui_multitone_panel_t::ui_multitone_panel_t(custom_iq_t& engine, QTreeWidgetItem& group,
                                           QObject* parent)
    : ui_custom_iq_section_t(engine, group, parent) {
  _mode = _add_choice(tr("Tone placement"), QStringLiteral("multitoneMode"),
                      {{tr("Span"), 0}, {tr("Start and stop"), 1}},
                      [this](uint32 mode) { _engine.set_multitone_mode(mode != 0); });
  _sample_rate = _add_number(tr("Sample rate"), QStringLiteral("multitoneSampleRate"), hertz,
                             [this](fp64 rate) { _engine.set_multitone_sample_rate(rate); });
  _span = _add_number(tr("Span"), QStringLiteral("multitoneFreqSpacing"), hertz,
                      [this](fp64 span) { _engine.set_multitone_span(span); });
  _start = _add_number(tr("Start frequency"), QStringLiteral("multitoneStartFreq"), hertz,
                       [this](fp64 frequency) { _engine.set_multitone_start(frequency); });
  _stop = _add_number(tr("Stop frequency"), QStringLiteral("multitoneStopFreq"), hertz,
                      [this](fp64 frequency) { _engine.set_multitone_stop(frequency); });
  _number = _add_count(tr("Tones"), QStringLiteral("multitoneNumber"),
                       [this](uint32 number) { _engine.set_multitone_number(number); });
  _single_side = _add_flag(tr("Single side"), QStringLiteral("multitoneSingleSide"),
                           [this](bool enable) { _engine.set_multitone_single_side(enable); });
  _notch = _add_flag(tr("Notch"), QStringLiteral("multitoneNotchEnable"),
                     [this](bool enable) { _engine.set_multitone_notch_enable(enable); });
  _notch_start =
      _add_number(tr("Notch start"), QStringLiteral("multitoneNotchStartFreq"), hertz,
                  [this](fp64 frequency) { _engine.set_multitone_notch_start(frequency); });
  _notch_stop =
      _add_number(tr("Notch stop"), QStringLiteral("multitoneNotchStopFreq"), hertz,
                  [this](fp64 frequency) { _engine.set_multitone_notch_stop(frequency); });
}

void ui_multitone_panel_t::refresh_from_engine() {
  const bool start_stop = _engine.get_multitone_mode();
  _show(_mode, start_stop ? 1u : 0u);
  _show(_sample_rate, _engine.get_multitone_sample_rate_bounds());
  _show(_span, _engine.get_multitone_span_bounds());
  _show(_start, _engine.get_multitone_start_bounds());
  _show(_stop, _engine.get_multitone_stop_bounds());
  _show(_number, _engine.get_multitone_number_bounds());
  _show(_single_side, _engine.get_multitone_single_side());
  _show(_notch, _engine.get_multitone_notch_enable());
  _show(_notch_start, _engine.get_multitone_notch_start_bounds());
  _show(_notch_stop, _engine.get_multitone_notch_stop_bounds());

  const bool visible = _engine.get_modulator_type() == MODULATOR_MULTITONE;
  set_rows_visible(visible);
  if (visible) {
    _row_of(_span).set_visible(!start_stop);
    _row_of(_start).set_visible(start_stop);
    _row_of(_stop).set_visible(start_stop);
  }
  const bool notch = _engine.get_multitone_notch_enable();
  _row_of(_notch_start).set_enabled(notch);
  _row_of(_notch_stop).set_enabled(notch);
}

}  // namespace nal

#include "ui/custom_iq/ui_basic_box.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

#include "ui/units/lib_unit.h"

namespace nal {

ui_basic_box_t::ui_basic_box_t(custom_iq_t& engine, QTreeWidgetItem& group, QObject* parent)
    : ui_custom_iq_section_t(engine, group, parent) {
  _name = _add_text(tr("Waveform name"), QStringLiteral("WaveformName"),
                    [this](const std::string& name) { _engine.set_waveform_name(name); });
  _frames = _add_count(tr("Frames"), QStringLiteral("WaveformFrameNumber"),
                       [this](uint32 frames) { _engine.set_frame_number(frames); });
  _mirror = _add_flag(tr("Mirror spectrum"), QStringLiteral("MirrorSpectrumEnable"),
                      [this](bool enable) { _engine.set_mirror_spectrum_enable(enable); });
  _sample_rate = _add_readout(tr("Sample rate"), QStringLiteral("SampleRate"));
  _length = _add_readout(tr("Waveform length"), QStringLiteral("WaveformLength"));
  _points = _add_readout(tr("Sample points"), QStringLiteral("TotalSamplePoints"));
  _name->setPlaceholderText(tr("Optional"));
}

void ui_basic_box_t::refresh_from_engine() {
  _show(_name, _engine.get_waveform_name());
  _show(_frames, _engine.get_frame_number_bounds());
  _show(_mirror, _engine.get_mirror_spectrum_enable());
  _sample_rate->setText(lib_unit_t::format(_engine.get_sample_rate(), QStringLiteral("Hz"), 10));
  _length->setText(lib_unit_t::format(_engine.get_waveform_length(), QStringLiteral("s"), 6));
  _points->setText(QString::number(_engine.get_total_sample_points()));
  // Multitone and chirp waveforms are one frame by construction.
  const custom_iq_bounded_value_t<uint32>& frames = _engine.get_frame_number_bounds();
  _row_of(_frames).set_enabled(frames.maximum() > frames.minimum());
}

}  // namespace nal

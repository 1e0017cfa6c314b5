#include "ui/custom_iq/ui_modulation_box.h"

#include <QCheckBox>
#include <QComboBox>

#include "ui/custom_iq/ui_custom_constellation_panel.h"
#include "ui/custom_iq/ui_fsk_deviation_table.h"
#include "ui/custom_iq/ui_lfm_panel.h"
#include "ui/custom_iq/ui_multitone_panel.h"

namespace nal {

ui_modulation_box_t::ui_modulation_box_t(custom_iq_t& engine, QTreeWidgetItem& group,
                                         QObject* parent)
    : ui_custom_iq_section_t(engine, group, parent),
      _deviation_table(new ui_fsk_deviation_table_t) {
  const auto& modulations = common_lib::modulation_type_text_map();
  _modulator = _add_choice(
      tr("Modulator"), QStringLiteral("modulationType"),
      choices(common_lib::modulator_type_text_map(), MODULATOR_APSK_QAM, MODULATOR_LFM),
      [this](uint32 type) { _engine.set_modulator_type(static_cast<modulator_type_t>(type)); });
  _apsk_qam = _add_choice(tr("Modulation"), QStringLiteral("ApskQamModulation"),
                          choices(modulations, MOD_2ASK, MOD_4096QAM), [this](uint32 type) {
                            _engine.set_apsk_qam_type(static_cast<modulation_type_t>(type));
                          });
  _gray = _add_flag(tr("Gray code"), QStringLiteral("grayEnable"),
                    [this](bool enable) { _engine.set_gray_code_enable(enable); });
  _mfsk = _add_choice(
      tr("FSK type"), QStringLiteral("MfskModulation"), choices(modulations, MOD_2FSK, MOD_16FSK),
      [this](uint32 type) { _engine.set_mfsk_type(static_cast<modulation_type_t>(type)); });
  _deviation = _add_number(tr("Deviation"), QStringLiteral("fskDeviation"), QStringLiteral("Hz"),
                           [this](fp64 deviation) { _engine.set_fsk_deviation(deviation); });
  _add_wide_row(_deviation_table);
  _show_symbols = _add_flag(tr("Show symbols"), QStringLiteral("showConstellationSymbol"),
                            [this](bool show) { _engine.set_show_constellation_symbol(show); });
  _panels = {new ui_multitone_panel_t(engine, group, this),
             new ui_custom_constellation_panel_t(engine, group, this),
             new ui_lfm_panel_t(engine, group, this)};
  for (ui_custom_iq_section_t* panel : _panels) {
    connect(panel, &ui_custom_iq_section_t::sig_edited, this, &ui_custom_iq_section_t::sig_edited);
  }
}

void ui_modulation_box_t::refresh_from_engine() {
  const modulator_type_t modulator = _engine.get_modulator_type();
  _show(_modulator, modulator);
  _show(_apsk_qam, _engine.get_apsk_qam_type());
  _show(_gray, _engine.get_gray_code_enable());
  _show(_mfsk, _engine.get_mfsk_type());
  _show(_deviation, _engine.get_fsk_deviation_bounds());
  _deviation_table->show_table(_engine.get_fsk_deviation_table());
  _row_of(_deviation_table).fit_height();
  _show(_show_symbols, _engine.get_show_constellation_symbol());

  const bool apsk_qam = modulator == MODULATOR_APSK_QAM;
  const bool mfsk = modulator == MODULATOR_MFSK;
  _row_of(_apsk_qam).set_visible(apsk_qam);
  _row_of(_gray).set_visible(apsk_qam);
  _row_of(_mfsk).set_visible(mfsk);
  _row_of(_deviation).set_visible(mfsk);
  _row_of(_deviation).set_enabled(_engine.is_fsk_deviation_editable());
  if (!_engine.is_fsk_deviation_editable()) {
    _deviation->setToolTip(tr("Fixed by MSK"));
  }
  _row_of(_deviation_table).set_visible(mfsk);
  _row_of(_show_symbols).set_visible(apsk_qam || modulator == MODULATOR_CUSTOM);
  for (ui_custom_iq_section_t* panel : _panels) {
    panel->refresh_from_engine();
  }
}

void ui_modulation_box_t::fit_row_heights() {
  ui_custom_iq_section_t::fit_row_heights();
  for (ui_custom_iq_section_t* panel : _panels) {
    panel->fit_row_heights();
  }
}

}  // namespace nal

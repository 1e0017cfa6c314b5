#include "ui/custom_iq/ui_filter_box.h"

#include <QComboBox>
#include <QStandardItemModel>

namespace nal {

ui_filter_box_t::ui_filter_box_t(custom_iq_t& engine, QTreeWidgetItem& group, QObject* parent)
    : ui_custom_iq_section_t(engine, group, parent) {
  _type = _add_choice(
      tr("Filter type"), QStringLiteral("filterType"),
      choices(common_lib::filter_type_text_map(), FILTER_NONE, FILTER_HALF_SINE),
      [this](uint32 type) { _engine.set_filter_type(static_cast<filter_type_t>(type)); });
  _alpha = _add_number(tr("Roll-off"), QStringLiteral("filterAlpha"), QString(),
                       [this](fp64 alpha) { _engine.set_filter_alpha(alpha); });
  _alpha->set_digits(4);
  _length = _add_count(tr("Filter length"), QStringLiteral("filterLength"),
                       [this](uint32 length) { _engine.set_filter_length(length); });
  _length->set_unit(QStringLiteral("sym"));
  _oversampling = _add_count(tr("Oversampling"), QStringLiteral("oversampling"),
                             [this](uint32 factor) { _engine.set_oversampling(factor); });
}

void ui_filter_box_t::_show_allowed_filter_types(bool oqpsk) {
  auto* model = qobject_cast<QStandardItemModel*>(_type->model());
  const auto allow = [&](filter_type_t type, bool allowed, const QString& reason) {
    QStandardItem* item = model->item(_type->findData(static_cast<uint32>(type)));
    item->setEnabled(allowed);
    item->setToolTip(allowed ? QString() : reason);
  };
  allow(FILTER_GAUSSIAN, !oqpsk, tr("Not with OQPSK"));
  allow(FILTER_HALF_SINE, oqpsk, tr("Only with OQPSK"));
}

void ui_filter_box_t::refresh_from_engine() {
  const filter_type_t type = _engine.get_filter_type();
  _show(_type, type);
  _show(_alpha, _engine.get_filter_alpha_bounds());
  _show(_length, _engine.get_filter_length_bounds());
  _show(_oversampling, _engine.get_oversampling_bounds());
  _row_of(_alpha).set_name(type == FILTER_GAUSSIAN ? tr("BT product") : tr("Roll-off"));

  const modulator_type_t modulator = _engine.get_modulator_type();
  const bool shaped = modulator != MODULATOR_MULTITONE && modulator != MODULATOR_LFM;
  set_rows_enabled(shaped);
  const bool oqpsk = modulator == MODULATOR_APSK_QAM && _engine.get_apsk_qam_type() == MOD_OQPSK;
  _show_allowed_filter_types(oqpsk);
  // OQPSK keeps odd factors out, so the arrows skip them.
  _oversampling->set_fixed_step(oqpsk ? 2.0 : 1.0);
  const bool msk = modulator == MODULATOR_MFSK && _engine.get_mfsk_type() == MOD_MSK;
  _row_of(_type).set_enabled(shaped && !msk);
  _type->setToolTip(msk ? tr("MSK always uses the Gaussian filter") : QString());
  _row_of(_alpha).set_enabled(shaped && _engine.is_filter_alpha_enabled());
  _row_of(_length).set_enabled(shaped && _engine.is_filter_length_enabled());
}

}  // namespace nal

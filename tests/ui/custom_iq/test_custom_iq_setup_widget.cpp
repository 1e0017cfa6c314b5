// The Custom IQ setup tree against a live engine: typed values reach the engine, the engine's
// clamps and cascades show at once, and refreshing never writes back.

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableWidget>
#include <QtTest>

#include "custom_iq/custom_iq.h"
#include "ui/custom_iq/ui_custom_iq_setup_widget.h"
#include "ui/widgets/ui_double_spin_box.h"

class test_custom_iq_setup_widget_t : public QObject {
  Q_OBJECT

 private slots:
  void typed_rate_reaches_the_engine();
  void out_of_range_shows_the_engine_clamp();
  void msk_forces_gaussian_in_the_filter_box();
  void oqpsk_keeps_even_oversampling_and_refuses_gaussian();
  void lfm_segment_table_follows_the_engine();
  void refresh_calls_no_setter();
};

using namespace nal;

namespace {

// An engine at its preset with the setup widget on it, counting every change the engine reports.
struct fixture_t {
  custom_iq_t engine;
  ui_custom_iq_setup_widget_t widget{engine};
  int changes = 0;

  fixture_t() {
    engine.preset();
    engine.set_dirty_callback([this](bool dirty) { changes += dirty ? 1 : 0; });
    widget.resize(420, 900);
  }

  template <typename widget_t>
  widget_t* find(const char* name) {
    auto* found = widget.findChild<widget_t*>(QLatin1String(name));
    if (found == nullptr) {
      qFatal("no control %s", name);
    }
    return found;
  }

  // Types `text` into a spin box and presses Enter.
  void type(const char* name, const QString& text) {
    auto* box = find<ui_double_spin_box_t>(name);
    box->findChild<QLineEdit*>()->selectAll();
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
  }

  // What a user's choice in a combo box does.
  void choose(const char* name, uint32 value) {
    auto* combo = find<QComboBox>(name);
    const int index = combo->findData(value);
    QVERIFY(index >= 0);
    combo->setCurrentIndex(index);
    emit combo->activated(index);
  }

  uint32 shown_choice(const char* name) { return find<QComboBox>(name)->currentData().toUInt(); }
};

}  // namespace

void test_custom_iq_setup_widget_t::typed_rate_reaches_the_engine() {
  fixture_t f;
  f.type("symbolRate", QStringLiteral("2.5 M"));
  QCOMPARE(f.engine.get_symbol_rate(), uint64(2500000));
  QCOMPARE(f.find<ui_double_spin_box_t>("symbolRate")->text(), QStringLiteral("2.5 MSym/s"));

  f.type("multitoneSampleRate", QStringLiteral("20 MHz"));
  QCOMPARE(f.engine.get_multitone_sample_rate(), 2e7);
  // The dependent limit moved with it: span up to rate / 1.28.
  QCOMPARE(f.find<ui_double_spin_box_t>("multitoneFreqSpacing")->maximum(), 2e7 / 1.28);
}

void test_custom_iq_setup_widget_t::out_of_range_shows_the_engine_clamp() {
  fixture_t f;
  f.type("oversampling", QStringLiteral("32"));
  QCOMPARE(f.engine.get_oversampling(), uint32(32));
  // 8 GHz of sample rate over 32 samples per symbol allows 250 MSym/s at most.
  f.type("symbolRate", QStringLiteral("300 M"));
  QCOMPARE(f.engine.get_symbol_rate(), uint64(250000000));
  auto* rate = f.find<ui_double_spin_box_t>("symbolRate");
  QCOMPARE(rate->value(), 2.5e8);
  QCOMPARE(rate->text(), QStringLiteral("250 MSym/s"));
  QVERIFY(rate->toolTip().contains(QStringLiteral("250 MSym/s")));

  f.type("symbolLength", QStringLiteral("1e9"));
  QCOMPARE(f.engine.get_symbol_length(), uint32(100000));
  QCOMPARE(f.find<ui_double_spin_box_t>("symbolLength")->text(), QStringLiteral("100000"));

  // Below the lower limit, and a fraction on a whole-number control.
  f.type("WaveformFrameNumber", QStringLiteral("0.4"));
  QCOMPARE(f.engine.get_frame_number(), uint32(1));
  f.type("filterLength", QStringLiteral("12.6"));
  QCOMPARE(f.engine.get_filter_length(), uint32(13));
}

void test_custom_iq_setup_widget_t::msk_forces_gaussian_in_the_filter_box() {
  fixture_t f;
  QCOMPARE(f.shown_choice("filterType"), uint32(FILTER_ROOT_COSINE));
  f.choose("modulationType", MODULATOR_MFSK);
  f.choose("MfskModulation", MOD_MSK);
  QCOMPARE(f.engine.get_filter_type(), FILTER_GAUSSIAN);
  QCOMPARE(f.shown_choice("filterType"), uint32(FILTER_GAUSSIAN));
  QVERIFY(!f.find<QComboBox>("filterType")->isEnabled());
  QVERIFY(!f.find<ui_double_spin_box_t>("fskDeviation")->isEnabled());
  // The roll-off became a bandwidth-time product with its own limits.
  auto* alpha = f.find<ui_double_spin_box_t>("filterAlpha");
  QCOMPARE(alpha->maximum(), 5.0);

  // A cascade started outside the widget shows as well.
  f.engine.set_mfsk_type(MOD_4FSK);
  QVERIFY(f.find<QComboBox>("filterType")->isEnabled());
  QCOMPARE(f.find<QTableWidget>("FskDeviationTable")->rowCount(), 4);
}

void test_custom_iq_setup_widget_t::oqpsk_keeps_even_oversampling_and_refuses_gaussian() {
  fixture_t f;
  f.choose("ApskQamModulation", MOD_OQPSK);
  f.type("oversampling", QStringLiteral("3"));
  QCOMPARE(f.engine.get_oversampling(), uint32(2));
  QCOMPARE(f.find<ui_double_spin_box_t>("oversampling")->text(), QStringLiteral("2"));
  // The arrow steps over the odd factors.
  QTest::keyClick(f.find<ui_double_spin_box_t>("oversampling"), Qt::Key_Up);
  QCOMPARE(f.engine.get_oversampling(), uint32(4));
  f.type("oversampling", QStringLiteral("2"));

  auto* model = qobject_cast<QStandardItemModel*>(f.find<QComboBox>("filterType")->model());
  const auto allowed = [&](filter_type_t type) {
    return model->item(f.find<QComboBox>("filterType")->findData(uint32(type)))->isEnabled();
  };
  QVERIFY(!allowed(FILTER_GAUSSIAN));
  QVERIFY(allowed(FILTER_HALF_SINE));

  f.choose("filterType", FILTER_HALF_SINE);
  QCOMPARE(f.engine.get_oversampling(), uint32(8));
  QCOMPARE(f.find<ui_double_spin_box_t>("oversampling")->text(), QStringLiteral("8"));

  // Back to 16QAM: Half Sine is not allowed there and the engine picks Root Cosine.
  f.choose("ApskQamModulation", MOD_16QAM);
  QCOMPARE(f.shown_choice("filterType"), uint32(FILTER_ROOT_COSINE));
  QVERIFY(!allowed(FILTER_HALF_SINE));
  // Were the greyed entry chosen anyway, the engine refuses and the box returns.
  f.choose("filterType", FILTER_HALF_SINE);
  QCOMPARE(f.shown_choice("filterType"), uint32(FILTER_ROOT_COSINE));
}

void test_custom_iq_setup_widget_t::lfm_segment_table_follows_the_engine() {
  fixture_t f;
  f.choose("modulationType", MODULATOR_LFM);
  f.choose("lfmMode", 1);
  auto* table = f.find<QTableWidget>("lfmSweepData");
  QCOMPARE(table->rowCount(), 3);
  QCOMPARE(table->item(0, 0)->data(Qt::EditRole).toDouble(), -1e6);

  f.type("lfmSegments", QStringLiteral("5"));
  QCOMPARE(table->rowCount(), 5);
  QCOMPARE(table->item(4, 2)->data(Qt::EditRole).toDouble(), 0.001);

  // A cell edit goes through the engine, which clamps to half the sample rate (50 MHz).
  table->item(1, 1)->setData(Qt::EditRole, 80e6);
  QCOMPARE(f.engine.get_lfm_segment_list()[1].stop_frequency, 5e7);
  QCOMPARE(table->item(1, 1)->data(Qt::EditRole).toDouble(), 5e7);
  // Typed into the cell's own editor, with units.
  f.widget.show();
  table->editItem(table->item(2, 2));
  auto* editor = table->viewport()->findChild<ui_double_spin_box_t*>();
  QVERIFY(editor != nullptr);
  QCOMPARE(editor->text(), QStringLiteral("1 ms"));
  editor->findChild<QLineEdit*>()->selectAll();
  QTest::keyClicks(editor, QStringLiteral("250 m"));
  QTest::keyClick(editor, Qt::Key_Return);
  // The view commits and closes its editor through the event loop.
  QApplication::processEvents();
  QCOMPARE(f.engine.get_lfm_segment_list()[2].duration, 0.25);
  QCOMPARE(f.find<QLabel>("lfmTotalTime")->text(), QStringLiteral("255 ms"));

  // Removing the selected row keeps the others in order.
  table->setCurrentCell(0, 0);
  const auto before = f.engine.get_lfm_segment_list();
  f.find<QPushButton>("lfmRemoveSegment")->click();
  QCOMPARE(f.engine.get_lfm_segments(), uint32(4));
  QCOMPARE(table->rowCount(), 4);
  QCOMPARE(f.engine.get_lfm_segment_list()[0].start_frequency, before[1].start_frequency);
}

void test_custom_iq_setup_widget_t::refresh_calls_no_setter() {
  // The same sequence of setter calls on an engine alone and on one with the widget attached
  // reports the same number of changes: the widget adds none of its own.
  const auto run = [](custom_iq_t& engine) {
    int changes = 0;
    engine.set_dirty_callback([&changes](bool dirty) { changes += dirty ? 1 : 0; });
    engine.preset();
    for (const modulator_type_t type : {MODULATOR_MFSK, MODULATOR_MULTITONE, MODULATOR_CUSTOM,
                                        MODULATOR_LFM, MODULATOR_APSK_QAM}) {
      engine.set_modulator_type(type);
    }
    engine.set_mfsk_type(MOD_MSK);
    engine.set_oversampling(32);
    engine.set_symbol_rate(300000000);
    engine.set_lfm_sample_rate(1e9);
    engine.set_lfm_segments(7);
    engine.set_apsk_qam_type(MOD_OQPSK);
    engine.set_oversampling(5);
    return changes;
  };
  custom_iq_t alone;
  alone.preset();
  fixture_t f;
  QCOMPARE(run(f.engine), run(alone));

  f.changes = 0;
  f.engine.set_dirty_callback([&f](bool dirty) { f.changes += dirty ? 1 : 0; });
  f.widget.refresh_from_engine();
  emit f.engine.sig_update_ui();
  emit f.engine.sig_update_constellation();
  QCOMPARE(f.changes, 0);
}

QTEST_MAIN(test_custom_iq_setup_widget_t)
#include "test_custom_iq_setup_widget.moc"

// The Custom IQ setup tree against a live engine: typed values reach the engine, the engine's
// clamps and cascades show at once, and refreshing never writes back.

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableWidget>
#include <QTreeWidget>
#include <QtTest>

#include "custom_iq/custom_iq.h"
#include "test_widget_classes.h"
#include "ui/widgets/ui_custom_iq_setup_widget.h"
#include "ui/widgets/ui_double_spin_box.h"

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

  // Whether the row of a control is on screen (its group expanded and the row not hidden).
  bool row_shown(const char* name) {
    QWidget* control = find<QWidget>(name);
    auto* tree = find<QTreeWidget>("CustomIqSetupTree");
    for (QTreeWidgetItemIterator it(tree); *it != nullptr; ++it) {
      for (int column = 0; column < 2; ++column) {
        QWidget* item_widget = tree->itemWidget(*it, column);
        if (item_widget != nullptr &&
            (item_widget == control || item_widget->isAncestorOf(control))) {
          return !(*it)->isHidden();
        }
      }
    }
    return false;
  }
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

  f.find<QLineEdit>("WaveformName")->setText(QStringLiteral("burst"));
  f.find<QLineEdit>("WaveformName")->setModified(true);
  emit f.find<QLineEdit>("WaveformName")->editingFinished();
  QCOMPARE(f.engine.get_waveform_name(), std::string("burst"));
}

void test_custom_iq_setup_widget_t::tab_walks_down_the_column() {
  fixture_t f;
  f.widget.show();
  QApplication::setActiveWindow(&f.widget);
  QVERIFY(QTest::qWaitForWindowActive(&f.widget));
  f.find<QComboBox>("DataSourceType")->setFocus();
  // The disabled custom bits button is skipped.
  for (const char* next : {"symbolLength", "symbolRate", "modulationType", "ApskQamModulation"}) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QWidget* focused = QApplication::focusWidget();
    QVERIFY2(focused == f.find<QWidget>(next) || f.find<QWidget>(next)->isAncestorOf(focused),
             next);
  }
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

void test_custom_iq_setup_widget_t::rows_follow_the_modulator() {
  fixture_t f;
  QVERIFY(f.row_shown("ApskQamModulation"));
  QVERIFY(!f.row_shown("MfskModulation"));
  QVERIFY(!f.row_shown("multitoneSampleRate"));

  f.choose("modulationType", MODULATOR_MULTITONE);
  QVERIFY(!f.row_shown("ApskQamModulation"));
  QVERIFY(f.row_shown("multitoneFreqSpacing"));
  QVERIFY(!f.row_shown("multitoneStartFreq"));
  QVERIFY(!f.find<ui_double_spin_box_t>("symbolRate")->isEnabled());
  QVERIFY(!f.find<QComboBox>("filterType")->isEnabled());
  QVERIFY(!f.find<ui_double_spin_box_t>("WaveformFrameNumber")->isEnabled());
  QVERIFY(!f.find<ui_double_spin_box_t>("multitoneNotchStartFreq")->isEnabled());
  f.choose("multitoneMode", 1);
  QVERIFY(!f.row_shown("multitoneFreqSpacing"));
  QVERIFY(f.row_shown("multitoneStartFreq"));
  // Start above stop pulls stop up.
  f.type("multitoneStartFreq", QStringLiteral("3 MHz"));
  QCOMPARE(f.find<ui_double_spin_box_t>("multitoneStopFreq")->value(), 3e6);

  f.choose("modulationType", MODULATOR_CUSTOM);
  QVERIFY(f.row_shown("customConstellationName"));
  QVERIFY(f.find<ui_double_spin_box_t>("symbolRate")->isEnabled());

  f.choose("modulationType", MODULATOR_LFM);
  QVERIFY(!f.row_shown("customConstellationName"));
  QVERIFY(f.row_shown("lfmBandWidth"));
  QVERIFY(!f.row_shown("lfmSweepData"));
  QCOMPARE(f.find<QLabel>("SampleRate")->text(), QStringLiteral("100 MHz"));
}

void test_custom_iq_setup_widget_t::lfm_segment_table_follows_the_engine() {
  fixture_t f;
  f.choose("modulationType", MODULATOR_LFM);
  f.choose("lfmMode", 1);
  auto* table = f.find<QTableWidget>("lfmSweepData");
  QVERIFY(f.row_shown("lfmSweepData"));
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

void test_custom_iq_setup_widget_t::labels_fit_for_every_modulator() {
  // Every name and read-only value fits its column, for every modulator (chirp with segments,
  // multitone with its notch).
  fixture_t f;
  f.engine.set_lfm_mode(true);
  f.engine.set_multitone_notch_enable(true);
  f.widget.show();
  auto* tree = f.find<QTreeWidget>("CustomIqSetupTree");
  for (const auto& [type, text] : common_lib::modulator_type_text_map()) {
    f.choose("modulationType", type);
    QApplication::processEvents();
    const QFontMetrics metrics(tree->font());
    for (QTreeWidgetItemIterator it(tree, QTreeWidgetItemIterator::NotHidden); *it != nullptr;
         ++it) {
      if ((*it)->parent() != nullptr && !(*it)->isFirstColumnSpanned()) {
        const int needed = metrics.horizontalAdvance((*it)->text(0)) + tree->indentation();
        QVERIFY2(needed <= tree->columnWidth(0), qPrintable((*it)->text(0)));
      }
    }
    // Read-only values and summaries are not cut either.
    for (const QLabel* label : tree->viewport()->findChildren<QLabel*>()) {
      if (label->isVisible()) {
        QVERIFY2(label->fontMetrics().horizontalAdvance(label->text()) <= label->width(),
                 qPrintable(label->text()));
      }
    }
    grab_if_asked(f.widget, QStringLiteral("custom_iq_setup_%1").arg(type));
  }
}

// The four signal views: spectrum against the tone's own frequency, CCDF against the Gaussian
// law, the I/Q view fed from another thread, and empty or broken input.

#include <QtTest>
#include <cmath>
#include <random>
#include <thread>

#include "ui/chart/ui_ccdf_view.h"
#include "ui/chart/ui_constellation_chart.h"
#include "ui/chart/ui_fft_spectrum_view.h"
#include "ui/chart/ui_frequency_view.h"
#include "ui/chart/ui_iq_waveform_view.h"
#include "ui/chart/ui_vchart_plot_widget.h"
#include "ui/chart/ui_vchart_sampled_curve_item.h"
#include "ui/chart/ui_vchart_xy_curve_item.h"

using namespace nal;

namespace {

lib_iq_data_arr_t tone(std::size_t count, fp64 frequency_hz, fp64 rate_hz, fp64 amplitude) {
  lib_iq_data_arr_t samples(count);
  for (std::size_t n = 0; n < count; ++n) {
    samples[n] = std::polar(amplitude, 2.0 * M_PI * frequency_hz * static_cast<fp64>(n) / rate_hz);
  }
  return samples;
}

std::size_t peak_index(const ui_vchart_sampled_curve_item_t& curve) {
  const std::vector<fp64>& levels = curve.samples().values();
  return static_cast<std::size_t>(std::max_element(levels.begin(), levels.end()) - levels.begin());
}

// The measured CCDF at x dB, read from the curve's points.
fp64 probability_at(const ui_vchart_xy_curve_item_t& curve, const ui_vchart_view_box_t& box,
                    fp64 x_db) {
  ui_vchart_range_t bounds;
  if (!curve.data_bounds(bounds)) {
    return -1.0;
  }
  const QString text = curve.read_out(x_db, 0.0, box);
  return text.section(QLatin1Char(' '), -1).toDouble();
}

}  // namespace

class test_signal_views_t : public QObject {
  Q_OBJECT

 private slots:
  void spectrum_peaks_at_the_tone_frequency_data();
  void spectrum_peaks_at_the_tone_frequency();
  void spectrum_floor_holds_for_zeros_and_broken_samples();
  void ccdf_follows_the_gaussian_law_for_noise();
  void ccdf_of_a_constant_envelope_is_a_step();
  void frequency_view_reads_the_deviation_of_fsk();
  void iq_view_takes_samples_from_another_thread();
  void constellation_is_round_and_labelled_in_bits();
  void empty_input_leaves_empty_axes();
};

void test_signal_views_t::spectrum_peaks_at_the_tone_frequency_data() {
  QTest::addColumn<int>("count");
  QTest::addColumn<fp64>("frequency");
  QTest::addColumn<fp64>("rate");
  QTest::newRow("negative, odd length") << 1125 << -250e3 << 2.25e6;
  QTest::newRow("off the bin grid") << 1000 << 333.3e3 << 1e6;
}

void test_signal_views_t::spectrum_peaks_at_the_tone_frequency() {
  QFETCH(int, count);
  QFETCH(fp64, frequency);
  QFETCH(fp64, rate);
  ui_fft_spectrum_view_t view;
  const std::size_t size = static_cast<std::size_t>(count);
  // The page hands the length in seconds and the number of points; their ratio is the rate.
  view.update_fft_wave(tone(size, frequency, rate, 0.5), count / rate, static_cast<uint32>(count));
  const ui_vchart_sampled_curve_item_t& levels = *view.levels();
  QCOMPARE(levels.samples().size(), size);
  const std::size_t peak = peak_index(levels);
  QVERIFY2(std::fabs(levels.x_of(peak) - frequency) <= 0.5 * rate / count,
           qPrintable(QString::number(levels.x_of(peak))));
  // On the bin grid all of the tone is in one bin: 20 log10(0.5).
  const fp64 bin = frequency * count / rate;
  if (std::fabs(bin - std::round(bin)) < 1e-9) {
    QVERIFY(std::fabs(levels.samples().values()[peak] - 20.0 * std::log10(0.5)) < 1e-9);
  }
  QVERIFY(view.peak_caption().startsWith(QStringLiteral("Peak ")));
}

void test_signal_views_t::spectrum_floor_holds_for_zeros_and_broken_samples() {
  ui_fft_spectrum_view_t view;
  lib_iq_data_arr_t samples(256, 0.0);
  view.update_fft_wave(samples, 256e-6, 256);
  for (const fp64 level : view.levels()->samples().values()) {
    QCOMPARE(level, -200.0);
  }
  // NaN and infinity count as silence instead of spoiling every bin.
  samples = tone(256, 62.5e3, 1e6, 1.0);
  samples[10] = {std::nan(""), 0.0};
  samples[20] = {0.0, HUGE_VAL};
  view.update_fft_wave(samples, 256e-6, 256);
  for (const fp64 level : view.levels()->samples().values()) {
    QVERIFY(std::isfinite(level) && level >= -200.0 && level <= 0.0);
  }
  QVERIFY(std::fabs(view.levels()->x_of(peak_index(*view.levels())) - 62.5e3) < 1e-6);
}

// Complex Gaussian noise has exponentially distributed power: P(p >= x mean) = exp(-x).
void test_signal_views_t::ccdf_follows_the_gaussian_law_for_noise() {
  std::mt19937 random(0);
  std::normal_distribution<fp64> normal(0.0, 1.0);
  lib_iq_data_arr_t noise(400000);
  for (lib_iq_sample_t& sample : noise) {
    sample = {normal(random), normal(random)};
  }
  ui_ccdf_view_t view;
  view.update_ccdf(noise);
  const auto& box = view.plot()->view_box();
  for (const fp64 x_db : {0.5, 3.0, 6.0, 8.0}) {
    const fp64 expected = std::exp(-std::pow(10.0, x_db / 10.0));
    const fp64 measured = probability_at(*view.measured(), box, x_db);
    QVERIFY2(
        std::fabs(measured - expected) < 0.05 * expected,
        qPrintable(QStringLiteral("%1 dB: %2 against %3").arg(x_db).arg(measured).arg(expected)));
  }
}

void test_signal_views_t::ccdf_of_a_constant_envelope_is_a_step() {
  ui_ccdf_view_t view;
  lib_iq_data_arr_t samples = tone(1000, 1.0, 7.0, 2.0);
  samples.push_back({std::nan(""), 1.0});
  view.update_ccdf(samples);
  ui_vchart_range_t bounds;
  QVERIFY(view.measured()->data_bounds(bounds));
  QVERIFY(bounds.x_max < 0.01);
  QCOMPARE(bounds.y_max, 1.0);
  // Silence has no mean power to compare with: only the reference stays.
  view.update_ccdf(lib_iq_data_arr_t(100, 0.0));
  QVERIFY(!view.measured()->data_bounds(bounds));
}

// Two tones in turn, +-150 kHz at 4 MHz, 40 samples each, with a silent gap: the view reads back
// each tone's frequency and leaves the gap (undefined phase) out.
void test_signal_views_t::frequency_view_reads_the_deviation_of_fsk() {
  const fp64 rate = 4e6;
  lib_iq_data_arr_t samples;
  fp64 phase = 0.3;
  for (int symbol = 0; symbol < 20; ++symbol) {
    const fp64 frequency = (symbol % 2 == 0) ? 150e3 : -150e3;
    for (int k = 0; k < 40; ++k) {
      samples.push_back(symbol == 7 ? lib_iq_sample_t(0.0) : std::polar(0.8, phase));
      phase += 2.0 * M_PI * frequency / rate;
    }
  }
  ui_frequency_view_t view;
  view.update_frequency_wave(samples, samples.size() / rate, static_cast<uint32>(samples.size()));
  const std::vector<fp64>& read = view.frequency()->samples().values();
  QCOMPARE(read.size(), samples.size() - 1);
  for (std::size_t n = 1; n < samples.size(); ++n) {
    const int symbol = static_cast<int>((n - 1) / 40);
    const bool silent = symbol == 7 || static_cast<int>(n / 40) == 7;
    if (silent) {
      QVERIFY(std::isnan(read[n - 1]));
    } else {
      QVERIFY(std::fabs(std::fabs(read[n - 1]) - 150e3) < 1e-6);
    }
  }
  QCOMPARE(view.frequency()->x_of(0), 1.0 / rate);
  view.update_frequency_wave({}, 1.0, 10);
  ui_vchart_range_t bounds;
  QVERIFY(!view.frequency()->data_bounds(bounds));
}

void test_signal_views_t::iq_view_takes_samples_from_another_thread() {
  ui_iq_waveform_view_t view;
  lib_iq_data_arr_t samples = tone(100000, 1.0, 100.0, 1.0);
  samples[5] = {HUGE_VAL, std::nan("")};
  std::thread worker([&view, &samples] { view.update_iq_wave(samples); });
  worker.join();
  QCOMPARE(view.in_phase()->samples().size(), std::size_t{0});
  QTRY_COMPARE(view.in_phase()->samples().size(), samples.size());
  QCOMPARE(view.quadrature()->samples().values()[1], samples[1].imag());
  ui_vchart_range_t bounds;
  QVERIFY(view.in_phase()->data_bounds(bounds));
  QVERIFY(bounds.y_max <= 1.0 && bounds.y_min >= -1.0);
  QCOMPARE(bounds.x_max, 99999.0);
}

void test_signal_views_t::constellation_is_round_and_labelled_in_bits() {
  ui_constellation_chart_t chart;
  chart.resize(800, 450);
  chart.show();
  QVERIFY(QTest::qWaitForWindowExposed(&chart));
  lib_constellation_map_t points;
  for (uint32 s = 0; s < 8; ++s) {
    points[s] = std::polar(1.0, M_PI / 4.0 * s);
  }
  chart.update_constellation(points);
  const auto& box = chart.plot()->view_box();
  const fp64 x_per_pixel = (box.visible().x_max - box.visible().x_min) / box.pixel_rect().width();
  const fp64 y_per_pixel = (box.visible().y_max - box.visible().y_min) / box.pixel_rect().height();
  QVERIFY(std::fabs(x_per_pixel - y_per_pixel) < 1e-9 * x_per_pixel);
  // Hovering over symbol 5 names it with three bits.
  const QPointF at = box.to_pixel(points[5].real(), points[5].imag()) + QPointF(2.0, 1.0);
  QMouseEvent move(QEvent::MouseMove, at, chart.plot()->mapToGlobal(at.toPoint()), Qt::NoButton,
                   Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(chart.plot(), &move);
  QVERIFY2(chart.plot()->read_out().contains(QStringLiteral("101 (")),
           qPrintable(chart.plot()->read_out()));
}

void test_signal_views_t::empty_input_leaves_empty_axes() {
  ui_iq_waveform_view_t iq;
  ui_fft_spectrum_view_t spectrum;
  ui_constellation_chart_t constellation;
  ui_ccdf_view_t ccdf;
  iq.update_iq_wave({});
  spectrum.update_fft_wave({}, 0.0, 0);
  constellation.update_constellation({});
  ccdf.update_ccdf({});
  for (QWidget* view : std::initializer_list<QWidget*>{&iq, &spectrum, &constellation, &ccdf}) {
    view->resize(800, 450);
    QVERIFY(!view->grab().isNull());
  }
  ui_vchart_range_t bounds;
  QVERIFY(!iq.in_phase()->data_bounds(bounds));
  QVERIFY(!spectrum.levels()->data_bounds(bounds));
  QVERIFY(spectrum.peak_caption().isEmpty());
}

int run_signal_view_tests(int argc, char** argv) {
  test_signal_views_t tests;
  return QTest::qExec(&tests, argc, argv);
}

#include "test_signal_views.moc"

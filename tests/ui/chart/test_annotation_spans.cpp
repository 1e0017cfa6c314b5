// The annotations of the I/Q view: rows that keep a frame above its fields, the spans a zoom
// shows on the sample and the time axis, labels only where they fit, the check box that hides
// them, and a drawing cost bounded by the plot's width.

#include <QCheckBox>
#include <QFontMetricsF>
#include <QtTest>
#include <limits>
#include <set>

#include "ui/chart/ui_iq_waveform_view.h"
#include "ui/chart/ui_vchart_plot_widget.h"
#include "ui/chart/ui_vchart_span_item.h"

using namespace nal;

namespace {

constexpr uint64 k_frame_spacing = 1500;

// Frames of 1,000 samples every 1,500, reported frame first as engines do: a preamble of 200, a
// header of 30 (too short for its label at the zooms below), a payload of 770.
lib_waveform_annotations_t frames(int count) {
  lib_waveform_annotations_t out;
  for (int k = 0; k < count; ++k) {
    const uint64 start = static_cast<uint64>(k) * k_frame_spacing;
    out.push_back({start, 1000, "frame " + std::to_string(k + 1)});
    out.push_back({start, 200, "preamble"});
    out.push_back({start + 200, 30, "header"});
    out.push_back({start + 230, 770, "payload"});
  }
  return out;
}

std::vector<std::string> row_labels(const ui_vchart_span_rows_t& rows, int row) {
  std::vector<std::string> labels;
  for (const ui_vchart_span_rows_t::span_t& span : rows.row(row)) {
    labels.push_back(span.label);
  }
  return labels;
}

// The labels of the bands a view draws, row by row, and those among them that carry their label.
struct drawn_t {
  std::vector<std::set<std::string>> rows;
  std::set<std::string> labelled;
};

drawn_t drawn(const ui_iq_waveform_view_t& view) {
  const ui_vchart_span_item_t& spans = *view.annotations();
  const QFontMetricsF metrics(view.plot()->font());
  drawn_t out;
  for (const ui_vchart_span_item_t::band_t& band : spans.bands(view.plot()->view_box(), metrics)) {
    out.rows.resize(static_cast<std::size_t>(band.row) + 1);
    const std::string& label = spans.spans().row(band.row)[band.span].label;
    out.rows[static_cast<std::size_t>(band.row)].insert(label);
    if (band.labelled) {
      out.labelled.insert(label);
    }
  }
  return out;
}

void show_samples(ui_iq_waveform_view_t& view, std::size_t count,
                  const lib_waveform_annotations_t& annotations) {
  lib_iq_data_arr_t samples(count);
  for (std::size_t n = 0; n < count; ++n) {
    samples[n] = {0.8 * std::sin(0.05 * n), 0.8 * std::cos(0.05 * n)};
  }
  view.show_prepared(ui_iq_waveform_view_t::prepare(samples, annotations));
}

void zoom_x(ui_iq_waveform_view_t& view, fp64 first, fp64 last) {
  ui_vchart_view_box_t& box = view.plot()->view_box();
  ui_vchart_range_t range = box.visible();
  range.x_min = first;
  range.x_max = last;
  QVERIFY(box.set_visible(range));
  view.plot()->items_changed();
}

bool shown_at(QWidget& widget, const QSize& size) {
  widget.resize(size);
  widget.show();
  return QTest::qWaitForWindowExposed(&widget);
}

QImage plot_image(ui_iq_waveform_view_t& view) {
  return view.plot()->grab().toImage();
}

}  // namespace

class test_annotation_spans_t : public QObject {
  Q_OBJECT

 private slots:
  void rows_keep_frames_above_their_fields();
  void zoom_shows_the_spans_in_view_on_either_axis();
  void labels_fit_and_bands_never_overlap();
  void check_box_hides_them_and_an_empty_list_draws_nothing();
  void drawing_cost_is_bounded_by_the_width();
};

void test_annotation_spans_t::rows_keep_frames_above_their_fields() {
  // Reported fields first: the layout must not depend on the engine's order.
  lib_waveform_annotations_t reversed = frames(2);
  std::reverse(reversed.begin(), reversed.end());
  for (const lib_waveform_annotations_t& segments : {frames(2), reversed}) {
    ui_vchart_span_rows_t rows;
    rows.assign(segments);
    QCOMPARE(rows.row_count(), 2);
    QCOMPARE(row_labels(rows, 0), (std::vector<std::string>{"frame 1", "frame 2"}));
    QCOMPARE(row_labels(rows, 1), (std::vector<std::string>{"preamble", "header", "payload",
                                                            "preamble", "header", "payload"}));
    QCOMPARE(rows.first_ending_after(1, 1000.0), std::size_t{3});
    QCOMPARE(rows.first_ending_after(0, 2500.0), std::size_t{2});
  }

  // Overlapping without nesting takes a second row; what is free again goes back to the first.
  ui_vchart_span_rows_t rows;
  rows.assign({{0, 100, "a"}, {50, 100, "b"}, {150, 10, "c"}, {160, 0, "empty"}});
  QCOMPARE(row_labels(rows, 0), (std::vector<std::string>{"a", "c"}));
  QCOMPARE(row_labels(rows, 1), (std::vector<std::string>{"b"}));

  // Six levels of nesting keep four; a count past the last index does not wrap round.
  lib_waveform_annotations_t deep;
  for (uint64 level = 0; level < 6; ++level) {
    deep.push_back({level, 100 - 2 * level, "level " + std::to_string(level)});
  }
  deep.push_back({200, std::numeric_limits<uint64>::max(), "tail"});
  rows.assign(deep);
  QCOMPARE(rows.row_count(), ui_vchart_span_rows_t::k_max_rows);
  const ui_vchart_span_rows_t::span_t& tail = rows.row(0).back();
  QCOMPARE(tail.label, std::string("tail"));
  QVERIFY(tail.end > tail.begin);
}

void test_annotation_spans_t::zoom_shows_the_spans_in_view_on_either_axis() {
  ui_iq_waveform_view_t view;
  QVERIFY(shown_at(view, QSize(900, 500)));
  show_samples(view, 3 * k_frame_spacing, frames(3));
  QVERIFY(view.annotations_box()->isVisible());

  const drawn_t full = drawn(view);
  QCOMPARE(full.rows.size(), std::size_t{2});
  QCOMPARE(full.rows[0], (std::set<std::string>{"frame 1", "frame 2", "frame 3"}));

  // The gap before frame 2 up to the middle of frame 3's preamble.
  zoom_x(view, 1400.0, 3100.0);
  drawn_t zoomed = drawn(view);
  QCOMPARE(zoomed.rows[0], (std::set<std::string>{"frame 2", "frame 3"}));
  QCOMPARE(zoomed.rows[1], (std::set<std::string>{"preamble", "header", "payload"}));
  QVERIFY(zoomed.labelled.count("frame 2") == 1 && zoomed.labelled.count("header") == 0);

  // On the time axis the spans keep their place among the samples.
  view.set_sample_rate(1e6);
  zoom_x(view, 1.4e-3, 2.1e-3);
  zoomed = drawn(view);
  QCOMPARE(zoomed.rows[0], (std::set<std::string>{"frame 2"}));
  const ui_vchart_view_box_t& box = view.plot()->view_box();
  QCOMPARE(view.annotations()->read_out(1.6e-3, 0.0, box), QString("frame 2 / preamble"));
  QCOMPARE(view.annotations()->read_out(1.715e-3, 0.0, box), QString("frame 2 / header"));
  QVERIFY(view.annotations()->read_out(1.2e-3, 0.0, box).isEmpty());
}

void test_annotation_spans_t::labels_fit_and_bands_never_overlap() {
  ui_iq_waveform_view_t view;
  QVERIFY(shown_at(view, QSize(700, 400)));
  show_samples(view, 40 * k_frame_spacing, frames(40));
  const QFontMetricsF metrics(view.plot()->font());
  const ui_vchart_span_item_t& spans = *view.annotations();
  for (const std::pair<fp64, fp64>& range :
       {std::pair<fp64, fp64>{0.0, 60000.0}, {2900.0, 4800.0}, {100.0, 260.0}}) {
    zoom_x(view, range.first, range.second);
    const std::vector<ui_vchart_span_item_t::band_t> bands =
        spans.bands(view.plot()->view_box(), metrics);
    QVERIFY(!bands.empty());
    for (std::size_t b = 0; b < bands.size(); ++b) {
      const ui_vchart_span_item_t::band_t& band = bands[b];
      // In the lanes above the data, within its width: no strip hides a sample.
      const QRectF& data = view.plot()->view_box().pixel_rect();
      QVERIFY(band.rect.bottom() <= data.top() && band.rect.top() >= 0.0);
      QVERIFY(band.rect.left() >= data.left() && band.rect.right() <= data.right() + 1.0);
      const QString label = QString::fromStdString(spans.spans().row(band.row)[band.span].label);
      if (band.labelled) {
        QVERIFY2(metrics.horizontalAdvance(label) < band.rect.width(), qPrintable(label));
      }
      if (b > 0 && bands[b - 1].row == band.row) {
        QVERIFY(bands[b - 1].rect.right() <= band.rect.left() + 1.0);
      }
    }
  }
  // Forty frames in 640 pixels: no frame label fits, and none is drawn.
  zoom_x(view, 0.0, 60000.0);
  QVERIFY(drawn(view).labelled.empty());
}

void test_annotation_spans_t::check_box_hides_them_and_an_empty_list_draws_nothing() {
  ui_iq_waveform_view_t view;
  QVERIFY(shown_at(view, QSize(900, 500)));
  show_samples(view, 3 * k_frame_spacing, frames(3));
  // The same samples without annotations, at the same plot size.
  ui_iq_waveform_view_t plain;
  QVERIFY(shown_at(plain, view.plot()->size()));
  show_samples(plain, 3 * k_frame_spacing, {});
  QVERIFY(!plain.annotations_box()->isVisible());
  QCOMPARE(plain.plot()->size(), view.plot()->size());

  const QImage shaded = plot_image(view);
  QVERIFY(shaded != plot_image(plain));
  QCheckBox* box = view.annotations_box();
  QVERIFY(box->isChecked() && (box->focusPolicy() & Qt::TabFocus));
  box->setFocus();

  // The cursor over frame 1 reads its name, until the spans are hidden.
  const QPointF over_frame = view.plot()->view_box().to_pixel(500.0, 0.0);
  QMouseEvent move(QEvent::MouseMove, over_frame, view.plot()->mapToGlobal(over_frame.toPoint()),
                   Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(view.plot(), &move);
  QVERIFY2(view.plot()->read_out().contains("frame 1 / payload"),
           qPrintable(view.plot()->read_out()));
  QTest::keyClick(box, Qt::Key_Space);
  QVERIFY(!box->isChecked());
  QVERIFY(!view.plot()->read_out().contains("frame"));
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(view.plot(), &leave);
  QCOMPARE(plot_image(view), plot_image(plain));
  QTest::keyClick(box, Qt::Key_Space);
  QCOMPARE(plot_image(view), shaded);

  // New samples without annotations take the old ones away.
  show_samples(view, 3 * k_frame_spacing, {});
  QVERIFY(!view.annotations_box()->isVisible());
  QTRY_COMPARE(view.plot()->size(), view.size());
  plain.resize(view.size());
  QTRY_COMPARE(plain.plot()->size(), view.size());
  QCOMPARE(plot_image(view), plot_image(plain));
}

// A million one-sample spans: the bands drawn stay within one per pixel column and row.
void test_annotation_spans_t::drawing_cost_is_bounded_by_the_width() {
  ui_iq_waveform_view_t view;
  view.resize(800, 400);
  lib_waveform_annotations_t segments;
  for (uint64 n = 0; n < 1'000'000; ++n) {
    segments.push_back({2 * n, 1, "s"});
  }
  segments.push_back({0, 2'000'000, "all"});
  view.show_prepared(ui_iq_waveform_view_t::prepare(lib_iq_data_arr_t(16, 0.0), segments));
  view.set_sample_rate(0.0);
  const std::vector<ui_vchart_span_item_t::band_t> bands =
      view.annotations()->bands(view.plot()->view_box(), QFontMetricsF(view.plot()->font()));
  const fp64 width = view.plot()->view_box().pixel_rect().width();
  QVERIFY(!bands.empty());
  QVERIFY2(static_cast<fp64>(bands.size()) <= 2.0 * (width + 2.0),
           qPrintable(QString::number(bands.size())));
}

int run_annotation_span_tests(int argc, char** argv) {
  test_annotation_spans_t tests;
  return QTest::qExec(&tests, argc, argv);
}

#include "test_annotation_spans.moc"

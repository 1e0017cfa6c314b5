// Zoom, pan, rubber band and read-out of the plot widget, driven by synthetic events on an
// offscreen widget.

#include <QApplication>
#include <QImage>
#include <QtTest>
#include <cmath>

#include "ui/chart/ui_vchart_axis.h"
#include "ui/chart/ui_vchart_plot_widget.h"
#include "ui/chart/ui_vchart_sampled_curve_item.h"

using nal::fp64;
using nal::ui_vchart_minmax_pyramid_t;
using nal::ui_vchart_plot_widget_t;
using nal::ui_vchart_range_t;
using nal::ui_vchart_sampled_curve_item_t;

namespace {

void send_mouse(QWidget* widget, QEvent::Type type, QPointF position, Qt::MouseButton button,
                Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QMouseEvent event(type, position, widget->mapToGlobal(position.toPoint()), button, buttons,
                    modifiers);
  QApplication::sendEvent(widget, &event);
}

void drag(QWidget* widget, QPointF from, QPointF to, Qt::MouseButton button,
          Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  send_mouse(widget, QEvent::MouseButtonPress, from, button, button, modifiers);
  send_mouse(widget, QEvent::MouseMove, (from + to) / 2.0, Qt::NoButton, button, modifiers);
  send_mouse(widget, QEvent::MouseMove, to, Qt::NoButton, button, modifiers);
  send_mouse(widget, QEvent::MouseButtonRelease, to, button, Qt::NoButton, modifiers);
}

void wheel(QWidget* widget, QPointF position, int delta,
           Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QWheelEvent event(position, widget->mapToGlobal(position.toPoint()), QPoint(), QPoint(0, delta),
                    Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
  QApplication::sendEvent(widget, &event);
}

fp64 x_span(const ui_vchart_range_t& range) {
  return range.x_max - range.x_min;
}
fp64 y_span(const ui_vchart_range_t& range) {
  return range.y_max - range.y_min;
}

}  // namespace

class test_plot_interaction_t : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void cleanup();
  void wheel_zooms_around_the_cursor();
  void left_drag_pans();
  void rubber_band_zooms_to_its_rectangle();
  void read_out_names_the_sample_under_the_cursor();
  void painting_shows_a_single_spike_among_millions();

 private:
  ui_vchart_plot_widget_t* _plot = nullptr;
  ui_vchart_sampled_curve_item_t* _ramp = nullptr;
};

// A ramp, y = x, over samples 0 to 999.
void test_plot_interaction_t::init() {
  _plot = new ui_vchart_plot_widget_t;
  _plot->resize(800, 450);
  _plot->view_box().y_axis().set_engineering(false);
  _ramp = _plot->add_item<ui_vchart_sampled_curve_item_t>();
  _ramp->set_name(QStringLiteral("I"));
  std::vector<fp64> values(1000);
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = static_cast<fp64>(i);
  }
  ui_vchart_minmax_pyramid_t samples;
  samples.assign(std::move(values));
  _ramp->set_samples(std::move(samples), 0.0, 1.0);
  _plot->data_changed();
  _plot->show();
  QVERIFY(QTest::qWaitForWindowExposed(_plot));
}

void test_plot_interaction_t::cleanup() {
  delete _plot;
  _plot = nullptr;
}

void test_plot_interaction_t::wheel_zooms_around_the_cursor() {
  auto& box = _plot->view_box();
  const QRectF rect = box.pixel_rect();
  const QPointF at(rect.left() + 0.3 * rect.width(), rect.top() + 0.6 * rect.height());
  const ui_vchart_range_t before = box.visible();
  const fp64 x_under = box.x_at(at.x());
  const fp64 y_under = box.y_at(at.y());
  wheel(_plot, at, 120);
  QCOMPARE(x_span(box.visible()), x_span(before) / 1.25);
  QCOMPARE(y_span(box.visible()), y_span(before) / 1.25);
  QVERIFY(std::fabs(box.x_at(at.x()) - x_under) < 1e-9 * x_span(before));
  QVERIFY(std::fabs(box.y_at(at.y()) - y_under) < 1e-9 * y_span(before));
  // Ctrl zooms x alone; two notches back out return to the former x span.
  const fp64 y_kept = y_span(box.visible());
  wheel(_plot, at, -240, Qt::ControlModifier);
  QCOMPARE(y_span(box.visible()), y_kept);
  QCOMPARE(x_span(box.visible()), x_span(before) * 1.25);
}

void test_plot_interaction_t::left_drag_pans() {
  auto& box = _plot->view_box();
  const ui_vchart_range_t before = box.visible();
  const fp64 per_pixel_x = x_span(before) / box.pixel_rect().width();
  const fp64 per_pixel_y = y_span(before) / box.pixel_rect().height();
  const QPointF from = box.pixel_rect().center();
  drag(_plot, from, from + QPointF(-100, 40), Qt::LeftButton);
  // The data follows the hand: dragging left shows larger x, dragging down larger y.
  QVERIFY(std::fabs(box.visible().x_min - (before.x_min + 100 * per_pixel_x)) < 1e-9);
  QVERIFY(std::fabs(box.visible().y_min - (before.y_min + 40 * per_pixel_y)) < 1e-9);
  QCOMPARE(x_span(box.visible()), x_span(before));
}

void test_plot_interaction_t::rubber_band_zooms_to_its_rectangle() {
  auto& box = _plot->view_box();
  const QRectF rect = box.pixel_rect();
  const QPointF a(rect.left() + 100, rect.top() + 50);
  const QPointF b(rect.left() + 300, rect.top() + 200);
  const ui_vchart_range_t expected{box.x_at(a.x()), box.x_at(b.x()), box.y_at(b.y()),
                                   box.y_at(a.y())};
  drag(_plot, b, a, Qt::RightButton);
  QVERIFY(std::fabs(box.visible().x_min - expected.x_min) < 1e-9);
  QVERIFY(std::fabs(box.visible().x_max - expected.x_max) < 1e-9);
  QVERIFY(std::fabs(box.visible().y_min - expected.y_min) < 1e-9);
  QVERIFY(std::fabs(box.visible().y_max - expected.y_max) < 1e-9);
  // A band of a couple of pixels is a slip of the hand, not a zoom.
  const ui_vchart_range_t zoomed = box.visible();
  drag(_plot, rect.center(), rect.center() + QPointF(2, 2), Qt::RightButton);
  QVERIFY(box.visible() == zoomed);
}

void test_plot_interaction_t::read_out_names_the_sample_under_the_cursor() {
  auto& box = _plot->view_box();
  const QPointF at(box.x_to_pixel(500.2), box.pixel_rect().center().y());
  send_mouse(_plot, QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton);
  const QString text = _plot->read_out();
  // The ramp's value is its index: the nearest sample, 500.
  QVERIFY2(text.contains(QStringLiteral("I 500")), qPrintable(text));
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(_plot, &leave);
  QVERIFY(_plot->read_out().isEmpty());
}

void test_plot_interaction_t::painting_shows_a_single_spike_among_millions() {
  std::vector<fp64> values(3000000, 0.0);
  values[2222222] = 1.0;
  values[0] = -1.0;
  ui_vchart_minmax_pyramid_t samples;
  samples.assign(std::move(values));
  _ramp->set_colour(QColor(255, 0, 0));
  _ramp->set_samples(std::move(samples), 0.0, 1.0);
  _plot->data_changed();
  QImage image(_plot->size(), QImage::Format_ARGB32);
  _plot->render(&image);
  const auto& box = _plot->view_box();
  const int x = static_cast<int>(box.x_to_pixel(2222222.0));
  const int y_top = static_cast<int>(std::ceil(box.y_to_pixel(0.98)));
  int red = 0;
  for (int dx = -1; dx <= 1; ++dx) {
    if (qRed(image.pixel(x + dx, y_top)) > 200 && qGreen(image.pixel(x + dx, y_top)) < 50) {
      ++red;
    }
  }
  QVERIFY(red > 0);
}

int run_plot_interaction_tests(int argc, char** argv) {
  test_plot_interaction_t tests;
  return QTest::qExec(&tests, argc, argv);
}

#include "test_plot_interaction.moc"

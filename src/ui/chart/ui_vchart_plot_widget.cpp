#include "ui/chart/ui_vchart_plot_widget.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>
#include <QThread>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "ui/chart/ui_vchart_frame_painter.h"

namespace nal {
namespace {

constexpr fp64 k_zoom_step = 1.25;
constexpr fp64 k_key_pan_fraction = 0.1;

QPalette instrument_palette(QPalette palette) {
  palette.setColor(QPalette::Window, QColor(0x1b, 0x20, 0x26));
  palette.setColor(QPalette::Base, QColor(0x0d, 0x11, 0x16));
  palette.setColor(QPalette::WindowText, QColor(0xc9, 0xd1, 0xd9));
  palette.setColor(QPalette::Mid, QColor(0x2a, 0x31, 0x3a));
  palette.setColor(QPalette::Highlight, QColor(0x9a, 0xb8, 0xd6));
  return palette;
}

}  // namespace

ui_vchart_plot_widget_t::ui_vchart_plot_widget_t(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("VChartPlot"));
  setPalette(instrument_palette(palette()));
  setAutoFillBackground(true);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::CrossCursor);
  _update_layout();
  data_changed();
}

QSize ui_vchart_plot_widget_t::sizeHint() const {
  return QSize(640, 360);
}
QSize ui_vchart_plot_widget_t::minimumSizeHint() const {
  return QSize(200, 120);
}

ui_vchart_plot_widget_t* ui_vchart_plot_widget_t::fill(QWidget* host) {
  ui_vchart_plot_widget_t* plot = new ui_vchart_plot_widget_t(host);
  QVBoxLayout* layout = new QVBoxLayout(host);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(plot);
  return plot;
}

void ui_vchart_plot_widget_t::run_in_thread_of(QObject* target, std::function<void()> call) {
  if (QThread::currentThread() == target->thread()) {
    call();
  } else {
    QMetaObject::invokeMethod(target, std::move(call), Qt::QueuedConnection);
  }
}

void ui_vchart_plot_widget_t::set_auto_y_range(fp64 min, fp64 max) {
  _fixed_y = true;
  _fixed_y_min = min;
  _fixed_y_max = max;
}

void ui_vchart_plot_widget_t::data_changed() {
  bool any = false;
  ui_vchart_range_t all;
  for (const std::unique_ptr<ui_vchart_item_t>& item : _items) {
    ui_vchart_range_t bounds;
    if (item->data_bounds(bounds)) {
      all.include(bounds, any);
    }
  }
  if (!any) {
    all = {0.0, 1.0, -1.0, 1.0};
  }
  const fp64 x_margin = _x_margin * (all.x_max - all.x_min);
  all.x_min -= x_margin;
  all.x_max += x_margin;
  if (_fixed_y) {
    all.y_min = _fixed_y_min;
    all.y_max = _fixed_y_max;
  } else {
    // Headroom, so that the extremes do not sit on the frame; in axis coordinates, so that a
    // logarithmic axis gets it too.
    const ui_vchart_axis_t& y_axis = _box.y_axis();
    const fp64 low = y_axis.to_axis(all.y_min);
    const fp64 high = y_axis.to_axis(all.y_max);
    const fp64 margin = 0.05 * (high - low);
    all.y_min = y_axis.from_axis(low - margin);
    all.y_max = y_axis.from_axis(high + margin);
  }
  _box.set_full_range(all.x_min, all.x_max, all.y_min, all.y_max);
  _update_layout();
  _view_changed(true);
}

void ui_vchart_plot_widget_t::items_changed() {
  _data_layer_valid = false;
  // An item shown or hidden changes what the cursor reads.
  _update_read_out();
  update();
}

void ui_vchart_plot_widget_t::_update_layout() {
  QMargins margins = ui_vchart_frame_painter_t::margins(_box, fontMetrics());
  margins.setTop(margins.top() + static_cast<int>(std::ceil(_lanes_height())));
  _box.set_pixel_rect(QRectF(rect().marginsRemoved(margins)));
}

fp64 ui_vchart_plot_widget_t::_lanes_height() const {
  const QFontMetricsF metrics(font());
  fp64 height = 0.0;
  for (const std::unique_ptr<ui_vchart_item_t>& item : _items) {
    height = std::max(height, item->lanes_height(metrics));
  }
  return height;
}

void ui_vchart_plot_widget_t::_view_changed(bool changed) {
  if (!changed) {
    return;
  }
  _update_read_out();
  update();
  emit sig_visible_range_changed();
}

void ui_vchart_plot_widget_t::_render_data_layer() {
  const QRectF& rect = _box.pixel_rect();
  if (_data_layer_valid && _data_layer_range == _box.visible() && _data_layer_rect == rect) {
    return;
  }
  const qreal ratio = devicePixelRatioF();
  const QSize size(static_cast<int>(std::ceil(rect.width() * ratio)),
                   static_cast<int>(std::ceil(rect.height() * ratio)));
  if (_data_layer.size() != size) {
    // Opaque: copying it to the screen needs no blending.
    _data_layer = QImage(size, QImage::Format_RGB32);
  }
  _data_layer.setDevicePixelRatio(ratio);
  _data_layer.fill(palette().color(QPalette::Base));
  QPainter painter(&_data_layer);
  painter.setFont(font());
  painter.translate(-rect.topLeft());
  ui_vchart_frame_painter_t::paint_grid(painter, _box, palette());
  for (const std::unique_ptr<ui_vchart_item_t>& item : _items) {
    item->paint(painter, _box);
  }
  _data_layer_valid = true;
  _data_layer_range = _box.visible();
  _data_layer_rect = rect;
}

void ui_vchart_plot_widget_t::paintEvent(QPaintEvent* /*event*/) {
  _update_layout();
  QPainter painter(this);
  QStyleOption option;
  option.initFrom(this);
  style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
  const QRectF& rect = _box.pixel_rect();
  _render_data_layer();
  painter.drawImage(rect.topLeft(), _data_layer);
  for (const std::unique_ptr<ui_vchart_item_t>& item : _items) {
    item->paint_lanes(painter, _box);
  }
  const qreal header_bottom = std::ceil(rect.top() - _lanes_height());
  ui_vchart_frame_painter_t::paint_axes(painter, _box, palette());
  ui_vchart_frame_painter_t::paint_legend(painter, _box, _items, palette(), header_bottom);
  if (_cursor_shown && _drag != drag_t::pan) {
    ui_vchart_frame_painter_t::paint_cursor(painter, _box, _cursor, _read_out, palette(),
                                            header_bottom);
  }
  if (_drag == drag_t::rubber_band) {
    QColor fill = palette().color(QPalette::Highlight);
    fill.setAlpha(40);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 0, Qt::DashLine));
    painter.setBrush(fill);
    painter.drawRect(QRectF(_press_position, _last_position).normalized());
  }
}

void ui_vchart_plot_widget_t::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  _update_layout();
}

void ui_vchart_plot_widget_t::wheelEvent(QWheelEvent* event) {
  const QPoint delta = event->angleDelta();
  const fp64 steps = (delta.y() != 0 ? delta.y() : delta.x()) / 120.0;
  if (steps == 0.0) {
    return;
  }
  const fp64 factor = std::pow(k_zoom_step, steps);
  const QPointF at = event->position();
  const QRectF& rect = _box.pixel_rect();
  const Qt::KeyboardModifiers modifiers = event->modifiers();
  // Over an axis, or with a modifier, only one axis zooms.
  const bool below = at.y() > rect.bottom() && at.x() >= rect.left();
  const bool left_of = at.x() < rect.left() && at.y() <= rect.bottom();
  const bool x_only = (modifiers & Qt::ControlModifier) || below;
  const bool y_only = (modifiers & Qt::ShiftModifier) || left_of;
  _view_changed(_box.zoom(at, y_only && !x_only ? 1.0 : factor, x_only && !y_only ? 1.0 : factor));
  event->accept();
}

void ui_vchart_plot_widget_t::mousePressEvent(QMouseEvent* event) {
  _press_position = event->pos();
  _last_position = event->pos();
  const bool band = event->button() == Qt::RightButton ||
                    (event->button() == Qt::LeftButton && (event->modifiers() & Qt::ShiftModifier));
  if (band) {
    _drag = drag_t::rubber_band;
  } else if (event->button() == Qt::LeftButton) {
    _drag = drag_t::pan;
    setCursor(Qt::ClosedHandCursor);
  }
  event->accept();
}

void ui_vchart_plot_widget_t::mouseMoveEvent(QMouseEvent* event) {
  const QPoint position = event->pos();
  if (_drag == drag_t::pan) {
    _view_changed(_box.pan(position - _last_position));
  } else if (_drag == drag_t::rubber_band) {
    update();
  }
  _last_position = position;
  _cursor = position;
  _cursor_shown = _box.pixel_rect().contains(position);
  _update_read_out();
  update();
}

void ui_vchart_plot_widget_t::mouseReleaseEvent(QMouseEvent* event) {
  if (_drag == drag_t::rubber_band) {
    _last_position = event->pos();
    _view_changed(_box.zoom_to(QRectF(_press_position, _last_position)));
  }
  _drag = drag_t::none;
  setCursor(Qt::CrossCursor);
  update();
}

void ui_vchart_plot_widget_t::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    _box.reset();
    _view_changed(true);
  }
}

void ui_vchart_plot_widget_t::keyPressEvent(QKeyEvent* event) {
  const QRectF& rect = _box.pixel_rect();
  const QPointF centre = rect.center();
  const fp64 dx = rect.width() * k_key_pan_fraction;
  const fp64 dy = rect.height() * k_key_pan_fraction;
  switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      _view_changed(_box.zoom(centre, k_zoom_step, k_zoom_step));
      break;
    case Qt::Key_Minus:
      _view_changed(_box.zoom(centre, 1.0 / k_zoom_step, 1.0 / k_zoom_step));
      break;
    case Qt::Key_Left:
      _view_changed(_box.pan(QPointF(dx, 0.0)));
      break;
    case Qt::Key_Right:
      _view_changed(_box.pan(QPointF(-dx, 0.0)));
      break;
    case Qt::Key_Up:
      _view_changed(_box.pan(QPointF(0.0, dy)));
      break;
    case Qt::Key_Down:
      _view_changed(_box.pan(QPointF(0.0, -dy)));
      break;
    case Qt::Key_Home:
      _box.reset();
      _view_changed(true);
      break;
    case Qt::Key_Escape:
      _drag = drag_t::none;
      update();
      break;
    default:
      QWidget::keyPressEvent(event);
      return;
  }
  event->accept();
}

void ui_vchart_plot_widget_t::leaveEvent(QEvent* event) {
  _cursor_shown = false;
  _read_out.clear();
  update();
  QWidget::leaveEvent(event);
}

void ui_vchart_plot_widget_t::_update_read_out() {
  if (!_cursor_shown) {
    _read_out.clear();
    return;
  }
  const fp64 x = _box.x_at(_cursor.x());
  const fp64 y = _box.y_at(_cursor.y());
  const fp64 resolution = std::fabs(_box.x_at(1.0) - _box.x_at(0.0));
  QString text = _box.x_axis().format_value(x, resolution);
  for (const std::unique_ptr<ui_vchart_item_t>& item : _items) {
    const QString value = item->read_out(x, y, _box);
    if (!value.isEmpty()) {
      text += QStringLiteral("   ") + value;
    }
  }
  _read_out = text;
}

}  // namespace nal

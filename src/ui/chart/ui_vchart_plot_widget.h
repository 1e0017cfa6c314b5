#pragma once
// A plot: one view box with its two axes and the items drawn in it, on a dark instrument face.
//
// Mouse: the wheel zooms around the cursor (Ctrl: x only, Shift: y only; over an axis, that axis
// only); a left drag pans; a right drag, or a left drag with Shift held, draws a rubber band and
// zooms to it; a double click returns to the full range. Keys: + and - zoom around the centre,
// the arrows pan by a tenth of the view, Home returns to the full range, Escape drops a rubber
// band. Moving the cursor over the data shows x and each item's value there at the top right.
//
// The items are painted into a cached image, redrawn only when the data, the visible range or
// the size change; the cursor and the rubber band are drawn over it. GUI thread only.

#include <QImage>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "ui/chart/ui_vchart_item.h"
#include "ui/chart/ui_vchart_view_box.h"

namespace nal {

class ui_vchart_plot_widget_t : public QWidget {
  Q_OBJECT

 public:
  explicit ui_vchart_plot_widget_t(QWidget* parent = nullptr);

  ui_vchart_view_box_t& view_box() { return _box; }
  const ui_vchart_view_box_t& view_box() const { return _box; }

  // Adds an item of type T, owned by the plot and drawn after those added before it.
  template <class T>
  T* add_item() {
    std::unique_ptr<T> item = std::make_unique<T>();
    T* raw = item.get();
    _items.push_back(std::move(item));
    return raw;
  }

  // A plot that fills `host` edge to edge, for the views built on one plot.
  static ui_vchart_plot_widget_t* fill(QWidget* host);
  // Runs `call` at once on `target`'s thread, or queues it there from another thread; a queued
  // call is dropped when `target` is gone by then. Lets a view be updated from a worker.
  static void run_in_thread_of(QObject* target, std::function<void()> call);

  // Margin added on each side of the data's x extent by auto range, as a fraction of it
  // (0 by default; y always gets 5 % unless fixed).
  void set_auto_x_margin(fp64 fraction) { _x_margin = fraction; }
  // Fixes the y range that auto range returns to, instead of the data's extent (data values).
  void set_auto_y_range(fp64 min, fp64 max);
  // Call after the items' data changed: the full range is taken from the data again and shown.
  void data_changed();
  // Repaints the items after a change that leaves the ranges alone.
  void items_changed();

  // The text of the cursor read-out, empty while the cursor is away from the data.
  const QString& read_out() const { return _read_out; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 signals:
  void sig_visible_range_changed();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  enum class drag_t { none, pan, rubber_band };

  void _update_layout();
  fp64 _lanes_height() const;
  void _render_data_layer();
  void _view_changed(bool changed);
  void _update_read_out();

  ui_vchart_view_box_t _box;
  std::vector<std::unique_ptr<ui_vchart_item_t>> _items;
  fp64 _x_margin = 0.0;
  bool _fixed_y = false;
  fp64 _fixed_y_min = 0.0;
  fp64 _fixed_y_max = 1.0;

  QImage _data_layer;
  bool _data_layer_valid = false;
  ui_vchart_range_t _data_layer_range;
  QRectF _data_layer_rect;

  drag_t _drag = drag_t::none;
  QPoint _press_position;
  QPoint _last_position;
  bool _cursor_shown = false;
  QPoint _cursor;
  QString _read_out;
};

}  // namespace nal

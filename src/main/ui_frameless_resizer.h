#pragma once
// Resizing of a frameless top-level widget from its edges and corners on platforms without the
// Windows hit-test message. It watches the widget's native window, so it sees the mouse before
// any child does: within `border` pixels of an edge the cursor shows the resize shape, and a
// left press asks the window system to resize (QWindow::startSystemResize); where no window
// manager offers that, the drag resizes the widget itself. GUI thread only.

#include <QObject>
#include <QPoint>
#include <QRect>

class QWidget;
class QWindow;

namespace nal {

class ui_frameless_resizer_t : public QObject {
  Q_OBJECT

 public:
  ui_frameless_resizer_t(QWidget* window, int border);

  // Off while the window fills the screen.
  void set_enabled(bool enabled);
  // The edges under a point in window coordinates; none in the interior.
  Qt::Edges edges_at(const QPoint& position) const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool _on_native_mouse(QEvent* event);
  void _show_cursor(Qt::Edges edges, const QPoint& position);
  void _resize_to(const QPoint& global_position);

  QWidget* _window;
  QWindow* _native = nullptr;
  int _border;
  bool _enabled = true;
  bool _cursor_shown = false;
  // A drag that the resizer carries out itself.
  Qt::Edges _drag_edges;
  QPoint _drag_start;
  QRect _start_geometry;
};

}  // namespace nal

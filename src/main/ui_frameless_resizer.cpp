#include "main/ui_frameless_resizer.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace nal {

namespace {

Qt::CursorShape cursor_for(Qt::Edges edges) {
  if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge)) {
    return Qt::SizeFDiagCursor;
  }
  if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge)) {
    return Qt::SizeBDiagCursor;
  }
  if (edges & (Qt::LeftEdge | Qt::RightEdge)) {
    return Qt::SizeHorCursor;
  }
  return Qt::SizeVerCursor;
}

}  // namespace

ui_frameless_resizer_t::ui_frameless_resizer_t(QWidget* window, int border)
    : QObject(window), _window(window), _border(border) {
  window->installEventFilter(this);
}

void ui_frameless_resizer_t::set_enabled(bool enabled) {
  _enabled = enabled;
}

Qt::Edges ui_frameless_resizer_t::edges_at(const QPoint& position) const {
  Qt::Edges edges;
  if (position.x() >= 0 && position.x() < _border) {
    edges |= Qt::LeftEdge;
  } else if (position.x() >= _window->width() - _border && position.x() < _window->width()) {
    edges |= Qt::RightEdge;
  }
  if (position.y() >= 0 && position.y() < _border) {
    edges |= Qt::TopEdge;
  } else if (position.y() >= _window->height() - _border && position.y() < _window->height()) {
    edges |= Qt::BottomEdge;
  }
  const bool inside = position.x() >= 0 && position.x() < _window->width() && position.y() >= 0 &&
                      position.y() < _window->height();
  return inside ? edges : Qt::Edges();
}

bool ui_frameless_resizer_t::eventFilter(QObject* watched, QEvent* event) {
  // The native window exists once the widget is shown; watch it from then on.
  if (watched == _window && event->type() == QEvent::Show && _native == nullptr) {
    _native = _window->windowHandle();
    if (_native != nullptr) {
      _native->installEventFilter(this);
    }
  }
  if (watched == _native && _native != nullptr) {
    return _on_native_mouse(event);
  }
  return QObject::eventFilter(watched, event);
}

bool ui_frameless_resizer_t::_on_native_mouse(QEvent* event) {
  const QEvent::Type type = event->type();
  if (type != QEvent::MouseMove && type != QEvent::MouseButtonPress &&
      type != QEvent::MouseButtonRelease) {
    return false;
  }
  auto* mouse = static_cast<QMouseEvent*>(event);
  if (_drag_edges) {
    if (type == QEvent::MouseMove) {
      _resize_to(mouse->globalPos());
    } else if (type == QEvent::MouseButtonRelease) {
      _drag_edges = Qt::Edges();
    }
    return true;
  }
  const Qt::Edges edges = _enabled ? edges_at(mouse->pos()) : Qt::Edges();
  if (type == QEvent::MouseMove && mouse->buttons() == Qt::NoButton) {
    _show_cursor(edges, mouse->pos());
    return false;
  }
  if (type == QEvent::MouseButtonPress && mouse->button() == Qt::LeftButton && edges) {
    if (!_native->startSystemResize(edges)) {
      _drag_edges = edges;
      _drag_start = mouse->globalPos();
      _start_geometry = _window->geometry();
    }
    return true;
  }
  return false;
}

void ui_frameless_resizer_t::_show_cursor(Qt::Edges edges, const QPoint& position) {
  if (edges) {
    _native->setCursor(cursor_for(edges));
    _cursor_shown = true;
    return;
  }
  if (_cursor_shown) {
    // Back to the cursor of the widget under the mouse.
    const QWidget* under = _window->childAt(position);
    _native->setCursor(under != nullptr ? under->cursor() : _window->cursor());
    _cursor_shown = false;
  }
}

void ui_frameless_resizer_t::_resize_to(const QPoint& global_position) {
  const QPoint delta = global_position - _drag_start;
  const QSize minimum = _window->minimumSizeHint().expandedTo(_window->minimumSize());
  QRect geometry = _start_geometry;
  if (_drag_edges & Qt::LeftEdge) {
    geometry.setLeft(std::min(geometry.left() + delta.x(), geometry.right() - minimum.width()));
  }
  if (_drag_edges & Qt::RightEdge) {
    geometry.setRight(std::max(geometry.right() + delta.x(), geometry.left() + minimum.width()));
  }
  if (_drag_edges & Qt::TopEdge) {
    geometry.setTop(std::min(geometry.top() + delta.y(), geometry.bottom() - minimum.height()));
  }
  if (_drag_edges & Qt::BottomEdge) {
    geometry.setBottom(std::max(geometry.bottom() + delta.y(), geometry.top() + minimum.height()));
  }
  _window->setGeometry(geometry);
}

}  // namespace nal

#pragma once
// The frameless main window's own title bar: the product mark, a title, and the minimise,
// restore, maximise and close buttons. It drags the window, and a double click toggles between
// full size and the saved normal geometry. The window acts on its four signals. GUI thread only.

#include <QPoint>
#include <QSize>
#include <QWidget>

class QLabel;
class QPushButton;

namespace nal {

class ui_title_bar_t : public QWidget {
  Q_OBJECT

 public:
  explicit ui_title_bar_t(QWidget* parent = nullptr);

  void set_title_icon(const QString& path, QSize size);
  void set_title_content(const QString& text);
  // Type 1 is the main window's: restore hidden at the start, no drag at full size, double
  // click toggles.
  void set_button_type(int type);
  // The normal geometry that restore returns to.
  void save_restore_info(const QPoint& position, const QSize& size);
  void get_restore_info(QPoint& position, QSize& size) const;
  bool is_maximized_shown() const;

 signals:
  void signalButtonMinClicked();
  void signalButtonRestoreClicked();
  void signalButtonMaxClicked();
  void signalButtonCloseClicked();

 public slots:
  void onButtonMinClicked();
  void onButtonRestoreClicked();
  void onButtonMaxClicked();
  void onButtonCloseClicked();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  QPushButton* _make_button(int standard_pixmap, const QString& tooltip);

  QLabel* _icon_label;
  QLabel* _title_label;
  QPushButton* _min_button;
  QPushButton* _restore_button;
  QPushButton* _max_button;
  QPushButton* _close_button;
  int _button_type = 0;
  bool _dragging = false;
  QPoint _last_drag_position;
  QPoint _restore_position;
  QSize _restore_size;
};

}  // namespace nal

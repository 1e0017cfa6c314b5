#include "main/ui_title_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QStyle>

namespace nal {

ui_title_bar_t::ui_title_bar_t(QWidget* parent)
    : QWidget(parent),
      _icon_label(new QLabel(this)),
      _title_label(new QLabel(this)),
      _min_button(_make_button(QStyle::SP_TitleBarMinButton, tr("Minimise"))),
      _restore_button(_make_button(QStyle::SP_TitleBarNormalButton, tr("Restore"))),
      _max_button(_make_button(QStyle::SP_TitleBarMaxButton, tr("Maximise"))),
      _close_button(_make_button(QStyle::SP_TitleBarCloseButton, tr("Close"))) {
  setAttribute(Qt::WA_StyledBackground);
  setObjectName("TitleBar");
  _title_label->setObjectName("TitleContent");
  _title_label->setAlignment(Qt::AlignCenter);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(10, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(_icon_label);
  layout->addWidget(_title_label, 1);
  layout->addWidget(_min_button);
  layout->addWidget(_restore_button);
  layout->addWidget(_max_button);
  layout->addWidget(_close_button);
  connect(_min_button, &QPushButton::clicked, this, &ui_title_bar_t::onButtonMinClicked);
  connect(_restore_button, &QPushButton::clicked, this, &ui_title_bar_t::onButtonRestoreClicked);
  connect(_max_button, &QPushButton::clicked, this, &ui_title_bar_t::onButtonMaxClicked);
  connect(_close_button, &QPushButton::clicked, this, &ui_title_bar_t::onButtonCloseClicked);
}

QPushButton* ui_title_bar_t::_make_button(int standard_pixmap, const QString& tooltip) {
  auto* button = new QPushButton(this);
  button->setObjectName("Setting");
  button->setFocusPolicy(Qt::NoFocus);
  button->setFixedSize(30, 30);
  button->setIcon(style()->standardIcon(static_cast<QStyle::StandardPixmap>(standard_pixmap)));
  button->setIconSize(QSize(12, 12));
  button->setToolTip(tooltip);
  return button;
}

void ui_title_bar_t::set_title_icon(const QString& path, QSize size) {
  _icon_label->setPixmap(QIcon(path).pixmap(size));
  _icon_label->setFixedSize(size);
}

void ui_title_bar_t::set_title_content(const QString& text) {
  _title_label->setText(text);
}

void ui_title_bar_t::set_button_type(int type) {
  _button_type = type;
  if (type == 1) {
    _restore_button->setVisible(false);
  }
}

void ui_title_bar_t::save_restore_info(const QPoint& position, const QSize& size) {
  _restore_position = position;
  _restore_size = size;
}

void ui_title_bar_t::get_restore_info(QPoint& position, QSize& size) const {
  position = _restore_position;
  size = _restore_size;
}

bool ui_title_bar_t::is_maximized_shown() const {
  return _max_button->isHidden();
}

void ui_title_bar_t::onButtonMinClicked() {
  emit signalButtonMinClicked();
}

void ui_title_bar_t::onButtonRestoreClicked() {
  _restore_button->setVisible(false);
  _max_button->setVisible(true);
  emit signalButtonRestoreClicked();
}

void ui_title_bar_t::onButtonMaxClicked() {
  _max_button->setVisible(false);
  _restore_button->setVisible(true);
  emit signalButtonMaxClicked();
}

void ui_title_bar_t::onButtonCloseClicked() {
  emit signalButtonCloseClicked();
}

void ui_title_bar_t::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    QWidget::mousePressEvent(event);
    return;
  }
  if (_button_type == 1 && _max_button->isHidden()) {
    return;
  }
  _dragging = true;
  _last_drag_position = event->globalPos();
}

void ui_title_bar_t::mouseMoveEvent(QMouseEvent* event) {
  if (_dragging) {
    QWidget* top = window();
    top->move(top->pos() + event->globalPos() - _last_drag_position);
    _last_drag_position = event->globalPos();
  }
  QWidget::mouseMoveEvent(event);
}

void ui_title_bar_t::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    _dragging = false;
  }
  QWidget::mouseReleaseEvent(event);
}

void ui_title_bar_t::mouseDoubleClickEvent(QMouseEvent* event) {
  if (_button_type == 1 && event->button() == Qt::LeftButton) {
    _dragging = false;
    if (!_max_button->isHidden()) {
      onButtonMaxClicked();
    } else {
      onButtonRestoreClicked();
    }
  }
  QWidget::mouseDoubleClickEvent(event);
}

}  // namespace nal

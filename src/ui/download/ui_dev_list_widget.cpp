#include "ui/download/ui_dev_list_widget.h"

#include <QFrame>
#include <QKeyEvent>
#include <QLabel>

#include "ui/download/ui_dev_item.h"
#include "ui/download/ui_devices_model.h"

namespace nal {

ui_dev_list_widget_t::ui_dev_list_widget_t(QWidget* parent)
    : QListWidget(parent), _overlay(new QLabel(this)) {
  setObjectName(QStringLiteral("DevList"));
  setSelectionMode(QAbstractItemView::SingleSelection);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  // The rows draw their texts in their own colours over the selection, so the current row is
  // only tinted, to keep red and grey texts readable on it.
  QPalette tinted = palette();
  QColor highlight = tinted.color(QPalette::Highlight);
  highlight.setAlpha(48);
  tinted.setColor(QPalette::Highlight, highlight);
  setPalette(tinted);
  _overlay->setObjectName(QStringLiteral("DevListOverlay"));
  _overlay->setText(QStringLiteral("Updating Devices Information..."));
  _overlay->setAlignment(Qt::AlignCenter);
  _overlay->setAutoFillBackground(true);
  _overlay->setAttribute(Qt::WA_TransparentForMouseEvents);
  _overlay->hide();
}

void ui_dev_list_widget_t::set_devices_model(ui_devices_model_t* model) {
  if (_model != nullptr) {
    disconnect(_model, nullptr, this, nullptr);
  }
  _model = model;
  connect(_model, &ui_devices_model_t::sig_update_ui, this, &ui_dev_list_widget_t::_rebuild);
  _rebuild();
}

void ui_dev_list_widget_t::set_overlay_visible(bool visible) {
  _overlay->setGeometry(rect());
  _overlay->setVisible(visible);
  _overlay->raise();
}

bool ui_dev_list_widget_t::is_overlay_visible() const {
  return !_overlay->isHidden();
}

ui_dev_item_t* ui_dev_list_widget_t::get_item(const QString& resName) const {
  for (int row = 0; row < count(); ++row) {
    auto* dev_item = qobject_cast<ui_dev_item_t*>(itemWidget(item(row)));
    if (dev_item != nullptr && dev_item->get_resource_name() == resName) {
      return dev_item;
    }
  }
  return nullptr;
}

void ui_dev_list_widget_t::_rebuild() {
  clear();
  for (const QString& name : _model->get_devices().keys()) {
    if (count() > 0) {
      _add_split_line();
    }
    _add_row(name);
  }
}

void ui_dev_list_widget_t::_add_split_line() {
  auto* line = new QFrame(this);
  line->setObjectName(QStringLiteral("SplitLine"));
  line->setFrameShape(QFrame::HLine);
  line->setFrameShadow(QFrame::Sunken);
  auto* list_item = new QListWidgetItem(this);
  list_item->setFlags(Qt::NoItemFlags);
  list_item->setSizeHint(QSize(0, line->sizeHint().height()));
  setItemWidget(list_item, line);
}

void ui_dev_list_widget_t::_add_row(const QString& resName) {
  auto* row = new ui_dev_item_t(this);
  row->show_device(_model->get_devices().value(resName));
  connect(_model, &ui_devices_model_t::sig_update_dev_info, row,
          &ui_dev_item_t::on_update_dev_info);
  connect(row, &ui_dev_item_t::sig_selected_changed, _model, &ui_devices_model_t::set_selected);
  connect(row, &ui_dev_item_t::sig_connect_resource, this,
          &ui_dev_list_widget_t::sig_connect_resource);
  auto* list_item = new QListWidgetItem(this);
  list_item->setSizeHint(QSize(0, ui_dev_item_t::row_height));
  setItemWidget(list_item, row);
}

ui_dev_item_t* ui_dev_list_widget_t::_current_item() const {
  return currentItem() != nullptr ? qobject_cast<ui_dev_item_t*>(itemWidget(currentItem()))
                                  : nullptr;
}

void ui_dev_list_widget_t::keyPressEvent(QKeyEvent* event) {
  ui_dev_item_t* row = _current_item();
  const int key = event->key();
  if (row != nullptr && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
    // Taken here, so that Enter on a row does not also press the dialog's default button.
    row->request_connection();
    event->accept();
    return;
  }
  if (row != nullptr && key == Qt::Key_Space) {
    row->toggle_selected();
    event->accept();
    return;
  }
  QListWidget::keyPressEvent(event);
}

void ui_dev_list_widget_t::resizeEvent(QResizeEvent* event) {
  QListWidget::resizeEvent(event);
  _overlay->setGeometry(rect());
}

}  // namespace nal

#include "ui/pages/ui_tab_widget.h"

#include <QStackedLayout>
#include <QVBoxLayout>

#include "ui/pages/ui_close_button.h"
#include "ui/pages/ui_tab_bar.h"

namespace nal {

ui_tab_widget_t::ui_tab_widget_t(QWidget* parent)
    : QFrame(parent), _tab_bar(new ui_tab_bar_t(this)) {
  auto* body = new QFrame(this);
  body->setObjectName("Body");
  _stack = new QStackedLayout(body);
  _stack->setContentsMargins(0, 0, 0, 0);
  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(0);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(_tab_bar, 7);
  layout->addWidget(body, 93);
  connect(_tab_bar, &ui_tab_bar_t::sig_current_tab_changed, this,
          &ui_tab_widget_t::_on_current_tab_changed);
  connect(_tab_bar, &ui_tab_bar_t::sig_tab_closed, this, &ui_tab_widget_t::_on_tab_closed);
  connect(_tab_bar->add_button(), &QPushButton::clicked, this, &ui_tab_widget_t::sig_add_home);
}

void ui_tab_widget_t::add_page(QWidget* page, const QString& text, const QIcon& icon) {
  _stack->addWidget(page);
  _tab_bar->add_tab(text, icon);
  _tab_bar->set_current_index(_tab_bar->count() - 1);
}

void ui_tab_widget_t::replace_current_page(QWidget* page, const QString& text) {
  const int index = _stack->currentIndex();
  if (index < 0) {
    add_page(page, text);
    return;
  }
  _close_page(index);
  _stack->insertWidget(index, page);
  _stack->setCurrentIndex(index);
  _tab_bar->rebuild_tab(index, text, QIcon());
  _tab_bar->set_current_index(index);
}

void ui_tab_widget_t::remove_all_pages() {
  for (int index = count() - 1; index >= 0; --index) {
    _tab_bar->remove_tab(index);
    _close_page(index);
  }
}

int ui_tab_widget_t::current_index() const {
  return _stack->currentIndex();
}

int ui_tab_widget_t::count() const {
  return _stack->count();
}

QWidget* ui_tab_widget_t::page(int index) const {
  return _stack->widget(index);
}

void ui_tab_widget_t::set_current_index(int index) {
  _tab_bar->set_current_index(index);
}

void ui_tab_widget_t::_on_current_tab_changed(int index) {
  _stack->setCurrentIndex(index);
}

void ui_tab_widget_t::_on_tab_closed(int index) {
  _close_page(index);
}

void ui_tab_widget_t::_close_page(int index) {
  QWidget* closing = _stack->widget(index);
  if (closing == nullptr) {
    return;
  }
  _stack->removeWidget(closing);
  closing->close();
}

}  // namespace nal

#include "ui/pages/ui_tab_bar.h"

#include <QHBoxLayout>

#include "ui/pages/ui_close_button.h"
#include "ui/pages/ui_tab_button.h"

namespace nal {

ui_tab_bar_t::ui_tab_bar_t(QWidget* parent)
    : QFrame(parent),
      _tab_layout(new QHBoxLayout),
      _add_button(new ui_close_button_t(":/image/add_tab.png", 8, 20, this)) {
  setObjectName("TabBar");
  setFixedHeight(40);
  _tab_layout->setSpacing(1);
  _tab_layout->setContentsMargins(0, 0, 0, 0);
  _tab_layout->setAlignment(Qt::AlignLeft);
  auto* layout = new QHBoxLayout(this);
  layout->setSpacing(10);
  layout->setContentsMargins(0, 0, 0, 2);
  layout->addLayout(_tab_layout);
  layout->addWidget(_add_button, 5, Qt::AlignLeft);
  _add_button->setToolTip(tr("New Home tab"));
}

void ui_tab_bar_t::add_tab(const QString& text, const QIcon& icon) {
  auto* button = new ui_tab_button_t(text, icon, this);
  button->set_closable(_closable);
  connect(button, &QPushButton::pressed, this, &ui_tab_bar_t::_on_tab_pressed);
  connect(button->close_button(), &QPushButton::pressed, this, &ui_tab_bar_t::_on_close_pressed);
  _tab_layout->addWidget(button);
}

void ui_tab_bar_t::rebuild_tab(int index, const QString& text, const QIcon& icon) {
  ui_tab_button_t* button = tab_button(index);
  if (button == nullptr) {
    return;
  }
  button->setText(text);
  button->setIcon(icon);
  button->set_selected(true);
}

void ui_tab_bar_t::remove_tab(int index) {
  ui_tab_button_t* button = tab_button(index);
  if (button == nullptr) {
    return;
  }
  _tab_layout->removeWidget(button);
  button->close();
  if (index < _current_index) {
    --_current_index;
  } else if (index == _current_index) {
    _current_index = -1;
  }
}

int ui_tab_bar_t::count() const {
  return _tab_layout->count();
}

void ui_tab_bar_t::set_current_index(int index) {
  if (index < 0 || index >= count() || index == _current_index) {
    return;
  }
  if (ui_tab_button_t* old_button = tab_button(_current_index)) {
    old_button->set_selected(false);
  }
  tab_button(index)->set_selected(true);
  _current_index = index;
  emit sig_current_tab_changed(index);
}

ui_tab_button_t* ui_tab_bar_t::tab_button(int index) const {
  if (index < 0 || index >= count()) {
    return nullptr;
  }
  return qobject_cast<ui_tab_button_t*>(_tab_layout->itemAt(index)->widget());
}

void ui_tab_bar_t::set_closable(bool closable) {
  _closable = closable;
  _add_button->setVisible(closable);
  for (int i = 0; i < count(); ++i) {
    tab_button(i)->set_closable(closable);
  }
}

int ui_tab_bar_t::tab_spacing() const {
  return _tab_layout->spacing();
}

void ui_tab_bar_t::set_tab_spacing(int spacing) {
  _tab_layout->setSpacing(spacing);
}

void ui_tab_bar_t::_on_tab_pressed() {
  auto* button = qobject_cast<ui_tab_button_t*>(sender());
  set_current_index(_tab_layout->indexOf(button));
}

void ui_tab_bar_t::_on_close_pressed() {
  auto* button = qobject_cast<ui_tab_button_t*>(qobject_cast<QWidget*>(sender())->parentWidget());
  const int index = _tab_layout->indexOf(button);
  if (index < 0) {
    return;
  }
  const int old_current = _current_index;
  _tab_layout->removeWidget(button);
  button->close();
  emit sig_tab_closed(index);
  if (count() == 0) {
    _current_index = -1;
    _add_button->click();
    return;
  }
  set_current_index(old_current - 1);
  // Closing the current first tab leaves the index on the tab that took its place, which the
  // pages follow; mark it so that one tab always shows as selected.
  if (ui_tab_button_t* current = tab_button(_current_index); current && !current->is_selected()) {
    current->set_selected(true);
  }
}

}  // namespace nal

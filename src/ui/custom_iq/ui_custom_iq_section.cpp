#include "ui/custom_iq/ui_custom_iq_section.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

namespace nal {

ui_custom_iq_section_t::ui_custom_iq_section_t(custom_iq_t& engine, QTreeWidgetItem& group,
                                               QObject* parent)
    : QObject(parent), _engine(engine), _group(group) {}

void ui_custom_iq_section_t::set_rows_visible(bool visible) {
  for (const auto& row : _rows) {
    row->set_visible(visible);
  }
}

void ui_custom_iq_section_t::set_rows_enabled(bool enabled) {
  for (const auto& row : _rows) {
    row->set_enabled(enabled);
  }
}

void ui_custom_iq_section_t::fit_row_heights() {
  for (const auto& row : _rows) {
    row->fit_height();
  }
}

ui_tree_parameter_t& ui_custom_iq_section_t::_add_row(const QString& name, QWidget* editor) {
  _rows.push_back(std::make_unique<ui_tree_parameter_t>(_group, name, editor));
  return *_rows.back();
}

ui_tree_parameter_t& ui_custom_iq_section_t::_add_wide_row(QWidget* widget) {
  _rows.push_back(std::make_unique<ui_tree_parameter_t>(_group, widget));
  return *_rows.back();
}

ui_tree_parameter_t& ui_custom_iq_section_t::_row_of(const QWidget* editor) {
  const auto found = std::find_if(_rows.begin(), _rows.end(),
                                  [editor](const auto& row) { return row->editor() == editor; });
  Q_ASSERT(found != _rows.end());
  return **found;
}

void ui_custom_iq_section_t::_apply(const std::function<void()>& setter) {
  setter();
  emit sig_edited();
}

ui_double_spin_box_t* ui_custom_iq_section_t::_add_number(const QString& name,
                                                          const QString& object_name,
                                                          const QString& unit,
                                                          std::function<void(fp64)> commit) {
  auto* box = new ui_double_spin_box_t;
  box->setObjectName(object_name);
  box->set_unit(unit);
  ui_tree_parameter_t& row = _add_row(name, box);
  row.set_limits_text(box->limits_text());
  connect(box, &ui_double_spin_box_t::sig_limits_changed, this,
          [&row](const QString& limits) { row.set_limits_text(limits); });
  connect(box, &ui_double_spin_box_t::sig_value_committed, this,
          [this, commit](fp64 value) { _apply([&] { commit(value); }); });
  return box;
}

ui_double_spin_box_t* ui_custom_iq_section_t::_add_count(const QString& name,
                                                         const QString& object_name,
                                                         std::function<void(uint32)> commit) {
  ui_double_spin_box_t* box = _add_number(name, object_name, QString(), [commit](fp64 value) {
    commit(static_cast<uint32>(std::llround(value)));
  });
  box->set_integer(true);
  return box;
}

QComboBox* ui_custom_iq_section_t::_add_choice(const QString& name, const QString& object_name,
                                               const std::vector<choice_t>& entries,
                                               std::function<void(uint32)> commit) {
  auto* combo = new QComboBox;
  combo->setObjectName(object_name);
  for (const choice_t& entry : entries) {
    combo->addItem(entry.text, entry.value);
  }
  _add_row(name, combo);
  connect(combo, QOverload<int>::of(&QComboBox::activated), this, [this, combo, commit](int index) {
    _apply([&] { commit(combo->itemData(index).toUInt()); });
  });
  return combo;
}

QCheckBox* ui_custom_iq_section_t::_add_flag(const QString& name, const QString& object_name,
                                             std::function<void(bool)> commit) {
  auto* check = new QCheckBox;
  check->setObjectName(object_name);
  _add_row(name, check);
  connect(check, &QCheckBox::clicked, this,
          [this, commit](bool checked) { _apply([&] { commit(checked); }); });
  return check;
}

QLineEdit* ui_custom_iq_section_t::_add_text(const QString& name, const QString& object_name,
                                             std::function<void(const std::string&)> commit) {
  auto* edit = new QLineEdit;
  edit->setObjectName(object_name);
  _add_row(name, edit);
  connect(edit, &QLineEdit::editingFinished, this, [this, edit, commit] {
    if (edit->isModified()) {
      edit->setModified(false);
      _apply([&] { commit(edit->text().toStdString()); });
    }
  });
  return edit;
}

QLabel* ui_custom_iq_section_t::_add_readout(const QString& name, const QString& object_name) {
  auto* label = new QLabel;
  label->setObjectName(object_name);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  _add_row(name, label);
  return label;
}

QLabel* ui_custom_iq_section_t::_add_dialog_launcher(const QString& name,
                                                     const QString& object_name,
                                                     std::function<void()> open) {
  auto* holder = new QWidget;
  auto* summary = new QLabel;
  auto* button = new QPushButton(tr("Edit..."));
  button->setObjectName(object_name);
  auto* layout = new QHBoxLayout(holder);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(summary, 1);
  layout->addWidget(button);
  _add_row(name, holder);
  connect(button, &QPushButton::clicked, this, std::move(open));
  return summary;
}

void ui_custom_iq_section_t::_show(ui_double_spin_box_t* box, fp64 value, fp64 minimum,
                                   fp64 maximum) {
  // The box emits no value for a programmatic change; its limits signal keeps the row's tooltip.
  box->set_range(minimum, maximum);
  box->set_value(value);
}

void ui_custom_iq_section_t::_show(QComboBox* combo, uint32 value) {
  const QSignalBlocker blocker(combo);
  combo->setCurrentIndex(combo->findData(value));
}

void ui_custom_iq_section_t::_show(QCheckBox* check, bool value) {
  const QSignalBlocker blocker(check);
  check->setChecked(value);
}

void ui_custom_iq_section_t::_show(QLineEdit* edit, const std::string& text) {
  const QString shown = QString::fromStdString(text);
  // A name being typed is kept until its editing finishes.
  if (edit->text() != shown && !(edit->hasFocus() && edit->isModified())) {
    const QSignalBlocker blocker(edit);
    edit->setText(shown);
  }
}

}  // namespace nal

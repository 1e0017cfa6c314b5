#pragma once
// Common ground of the Custom IQ setup boxes and panels: a share of the rows of one group of the
// setup tree, bound to the engine. Each control calls its engine setter when the user commits a
// change (then sig_edited), and refresh_from_engine() writes the engine's values and limits back
// into the controls with their signals blocked, so a refresh never calls a setter. Controls react
// only to user actions (commit, activated, clicked), never to a programmatic change.

#include <QObject>
#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "custom_iq/custom_iq.h"
#include "ui/widgets/ui_double_spin_box.h"
#include "ui/widgets/ui_tree_parameter.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QTreeWidgetItem;

namespace nal {

class ui_custom_iq_section_t : public QObject {
  Q_OBJECT

 public:
  // One entry of a choice: the text shown and the engine's enumeration value.
  struct choice_t {
    QString text;
    uint32 value;
  };

  // Writes the engine's state into every control of the section; calls no setter.
  virtual void refresh_from_engine() = 0;
  // Shows or hides every row of the section.
  void set_rows_visible(bool visible);
  // Enables or greys out every row of the section.
  void set_rows_enabled(bool enabled);
  // Sets every row's height from its editor, after the style has settled the editors' sizes.
  virtual void fit_row_heights();

  // The entries of an enumeration's text map from `first` to `last`; "&&" is shown as "&".
  template <typename enum_t>
  static std::vector<choice_t> choices(const std::map<enum_t, std::string>& map, uint32 first,
                                       uint32 last);

 signals:
  // The section called a setter of the engine.
  void sig_edited();

 protected:
  ui_custom_iq_section_t(custom_iq_t& engine, QTreeWidgetItem& group, QObject* parent);

  // Rows, in the order they appear. `object_name` is the state file's element name, which the
  // style sheet and tests use to find the control.
  ui_double_spin_box_t* _add_number(const QString& name, const QString& object_name,
                                    const QString& unit, std::function<void(fp64)> commit);
  ui_double_spin_box_t* _add_count(const QString& name, const QString& object_name,
                                   std::function<void(uint32)> commit);
  QComboBox* _add_choice(const QString& name, const QString& object_name,
                         const std::vector<choice_t>& entries, std::function<void(uint32)> commit);
  QCheckBox* _add_flag(const QString& name, const QString& object_name,
                       std::function<void(bool)> commit);
  QLineEdit* _add_text(const QString& name, const QString& object_name,
                       std::function<void(const std::string&)> commit);
  // A read-only value.
  QLabel* _add_readout(const QString& name, const QString& object_name);
  // A summary of a value too large for one line, with a button "Edit..." that calls `open`.
  // The summary label is returned; the button is named `object_name`.
  QLabel* _add_dialog_launcher(const QString& name, const QString& object_name,
                               std::function<void()> open);
  ui_tree_parameter_t& _add_row(const QString& name, QWidget* editor);
  ui_tree_parameter_t& _add_wide_row(QWidget* widget);
  // The row that holds `editor`, one of this section's own.
  ui_tree_parameter_t& _row_of(const QWidget* editor);

  // Runs a user's change through the engine and tells the page.
  void _apply(const std::function<void()>& setter);

  template <typename value_t>
  static void _show(ui_double_spin_box_t* box, const custom_iq_bounded_value_t<value_t>& bounded);
  static void _show(ui_double_spin_box_t* box, fp64 value, fp64 minimum, fp64 maximum);
  static void _show(QComboBox* combo, uint32 value);
  static void _show(QCheckBox* check, bool value);
  static void _show(QLineEdit* edit, const std::string& text);

  custom_iq_t& _engine;
  QTreeWidgetItem& _group;

 private:
  std::vector<std::unique_ptr<ui_tree_parameter_t>> _rows;
};

template <typename enum_t>
std::vector<ui_custom_iq_section_t::choice_t> ui_custom_iq_section_t::choices(
    const std::map<enum_t, std::string>& map, uint32 first, uint32 last) {
  std::vector<choice_t> entries;
  for (const auto& [value, text] : map) {
    if (value >= first && value <= last) {
      entries.push_back(
          {QString::fromStdString(text).replace(QLatin1String("&&"), QLatin1String("&")),
           static_cast<uint32>(value)});
    }
  }
  return entries;
}

template <typename value_t>
void ui_custom_iq_section_t::_show(ui_double_spin_box_t* box,
                                   const custom_iq_bounded_value_t<value_t>& bounded) {
  _show(box, static_cast<fp64>(bounded.value()), static_cast<fp64>(bounded.minimum()),
        static_cast<fp64>(bounded.maximum()));
}

}  // namespace nal

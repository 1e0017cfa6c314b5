#pragma once
// The widget test classes, run together by test_widgets_main.cpp.

#include <QObject>

class test_double_spin_box_t : public QObject {
  Q_OBJECT

 private slots:
  void typed_units_commit_on_enter_only();
  void focus_loss_commits_and_escape_reverts();
  void steps_are_decade_aware();
};

class test_pattern_editors_t : public QObject {
  Q_OBJECT

 private slots:
  void constellation_file_round_trip();
  void malformed_constellation_files_name_the_line_data();
  void malformed_constellation_files_name_the_line();
  void malformed_file_leaves_the_editor_and_engine_alone();
  void constellation_check_agrees_with_the_modulator();
  void bit_pattern_file_round_trip_and_errors();
};

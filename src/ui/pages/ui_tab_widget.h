#pragma once
// A tab bar over a stack of pages. The main window's tabs hold one protocol page each; a page's
// setup and view tabs use the same widget with fixed tabs. Pages given to it are owned by the
// stack and closed (which deletes pages that carry Qt::WA_DeleteOnClose) when their tab closes.
// GUI thread only.

#include <QFrame>
#include <QIcon>

class QStackedLayout;

namespace nal {

class ui_tab_bar_t;

class ui_tab_widget_t : public QFrame {
  Q_OBJECT

 public:
  explicit ui_tab_widget_t(QWidget* parent = nullptr);

  // Appends `page` with its tab and makes it current.
  void add_page(QWidget* page, const QString& text, const QIcon& icon = QIcon());
  // Closes the current page and puts `page` in its place, with `text` and no icon.
  void replace_current_page(QWidget* page, const QString& text);
  // Closes every page, last first, without the new Home tab that closing the last one by hand
  // brings.
  void remove_all_pages();

  int current_index() const;
  int count() const;
  QWidget* page(int index) const;
  void set_current_index(int index);
  ui_tab_bar_t* tab_bar() const { return _tab_bar; }

 signals:
  // The add button was pressed, or the last tab was closed.
  void sig_add_home();

 private slots:
  void _on_current_tab_changed(int index);
  void _on_tab_closed(int index);

 private:
  void _close_page(int index);

  ui_tab_bar_t* _tab_bar;
  QStackedLayout* _stack;
};

}  // namespace nal

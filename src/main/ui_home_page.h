#pragma once
// The page of a fresh tab: a grid of protocol buttons. Choosing a protocol asks the main window
// to replace this page by that protocol's page.

#include <QFrame>

namespace nal {

class ui_home_page_t : public QFrame {
  Q_OBJECT

 public:
  explicit ui_home_page_t(QWidget* parent = nullptr);
};

}  // namespace nal

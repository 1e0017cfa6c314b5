#pragma once
// The page of a fresh tab: a grid of protocol buttons. Choosing a protocol asks the main window
// to replace this page by that protocol's page.

#include <QFrame>
#include <QString>
#include <vector>

#include "cfg/cfg_protocol_type.h"

namespace nal {

class ui_home_page_t : public QFrame {
  Q_OBJECT

 public:
  // One button of the grid: its caption, and the protocols it offers (a menu when more than one).
  struct entry_t {
    QString caption;
    std::vector<protocol_type_t> protocols;
    int row;
    int column;
  };
  // Every button, in grid order; each protocol appears once.
  static const std::vector<entry_t>& entries();

  explicit ui_home_page_t(QWidget* parent = nullptr);
};

}  // namespace nal

#include "main/ui_home_page.h"

#include <QGridLayout>
#include <QVBoxLayout>

#include "main/ui_home_square_btn.h"
#include "main/ui_main_window.h"
#include "main/ui_popup_menu.h"
#include "main/ui_protocol_tab_text.h"

namespace nal {

namespace {

// A menu of protocol kinds, a separator after the first.
void attach_menu(ui_home_square_btn_t* button, const std::vector<protocol_type_t>& types) {
  auto* menu = new PopupMenu(button, button);
  bool first = true;
  for (protocol_type_t type : types) {
    const QString text = protocol_tab_text(type);
    menu->addAction(text, button, [text] {
      if (ui_main_window_t* main_window = ui_find_main_window()) {
        main_window->addTabPage(text);
      }
    });
    if (first) {
      menu->addSeparator();
      first = false;
    }
  }
  button->setMenu(menu);
}

}  // namespace

const std::vector<ui_home_page_t::entry_t>& ui_home_page_t::entries() {
  static const std::vector<entry_t> entries = {
      {"Bluetooth", {PROTOCOL_BLUETOOTH_BR_EDR, PROTOCOL_BLUETOOTH_LE}, 0, 0},
      {"IoT",
       {PROTOCOL_802154_OQPSK_BPSK, PROTOCOL_802154_SUN_FSK, PROTOCOL_802154_SUN_OFDM,
        PROTOCOL_G9959},
       0,
       1},
      {protocol_tab_text(PROTOCOL_CUSTOM_OFDM), {PROTOCOL_CUSTOM_OFDM}, 0, 2},
      {protocol_tab_text(PROTOCOL_CUSTOM_IQ), {PROTOCOL_CUSTOM_IQ}, 0, 3},
      {protocol_tab_text(PROTOCOL_TOOLKIT), {PROTOCOL_TOOLKIT}, 1, 0},
  };
  return entries;
}

ui_home_page_t::ui_home_page_t(QWidget* parent) : QFrame(parent) {
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("HomePage");
  auto* inner = new QWidget(this);
  inner->setFixedWidth(1200);
  auto* grid = new QGridLayout(inner);
  grid->setHorizontalSpacing(20);
  grid->setVerticalSpacing(40);
  grid->setContentsMargins(40, 0, 40, 0);

  for (const entry_t& entry : entries()) {
    auto* button = new ui_home_square_btn_t(entry.caption, inner);
    if (entry.protocols.size() > 1) {
      attach_menu(button, entry.protocols);
    }
    grid->addWidget(button, entry.row, entry.column);
  }

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 40, 0, 180);
  layout->addWidget(inner, 0, Qt::AlignHCenter);
}

}  // namespace nal

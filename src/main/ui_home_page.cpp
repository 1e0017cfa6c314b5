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
void attach_menu(ui_home_square_btn_t* button, std::initializer_list<protocol_type_t> types) {
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

ui_home_page_t::ui_home_page_t(QWidget* parent) : QFrame(parent) {
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("HomePage");
  auto* inner = new QWidget(this);
  inner->setFixedWidth(1200);
  auto* grid = new QGridLayout(inner);
  grid->setHorizontalSpacing(20);
  grid->setVerticalSpacing(40);
  grid->setContentsMargins(40, 0, 40, 0);

  auto* bluetooth = new ui_home_square_btn_t("Bluetooth", inner);
  attach_menu(bluetooth, {PROTOCOL_BLUETOOTH_BR_EDR, PROTOCOL_BLUETOOTH_LE});
  auto* iot = new ui_home_square_btn_t("IoT", inner);
  attach_menu(iot, {PROTOCOL_802154_OQPSK_BPSK, PROTOCOL_802154_SUN_FSK, PROTOCOL_802154_SUN_OFDM,
                    PROTOCOL_G9959});
  grid->addWidget(bluetooth, 0, 0);
  grid->addWidget(iot, 0, 1);
  grid->addWidget(new ui_home_square_btn_t(protocol_tab_text(PROTOCOL_CUSTOM_OFDM), inner), 0, 2);
  grid->addWidget(new ui_home_square_btn_t(protocol_tab_text(PROTOCOL_CUSTOM_IQ), inner), 0, 3);
  grid->addWidget(new ui_home_square_btn_t("Toolkit", inner), 1, 0);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 40, 0, 180);
  layout->addWidget(inner, 0, Qt::AlignHCenter);
}

}  // namespace nal

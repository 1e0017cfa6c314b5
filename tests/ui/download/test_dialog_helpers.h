#pragma once
// What the suites share: the row texts as the user sees them, a spy on what a label painted,
// and the wait for the list that the Download dialog asks for once it is shown.

#include <QApplication>
#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QStringList>
#include <QTest>
#include <QTimer>

#include "ui/download/ui_dev_item.h"
#include "ui/download/ui_dev_list_widget.h"
#include "ui/download/ui_devices_model.h"
#include "ui/download/ui_dialog_download_waveform_data.h"

namespace test_ui_download {

// The second label of a row.
inline const QString unknown_text = QStringLiteral(
    "<span style='color:red;'>Unknow</span> <span style=\"color:#888;\">[Double click to "
    "connect device]</span>");
inline const QString connecting_text = QStringLiteral(
    "<span style=\"color:#0069D9;\">[=]</span> <u style=\"color:#aaa;\">Connecting device, "
    "please wait...</u>");
inline QString known_text(const QString& idn) {
  return QStringLiteral("<span style=\"color:#3c3;\">[√]</span> <u style=\"color:#aaa;\">") + idn +
         QStringLiteral(".</u>");
}
// The status label of a row, by status 0 to 3.
inline const QStringList status_texts = {
    QString(), QStringLiteral("<span style='color:#197DDF;'>[Downloading...]</span>"),
    QStringLiteral("<span style='color:#3c3;'>[Download OK (√)]</span>"),
    QStringLiteral("<span style='color:red;'>[Download Failed (×)]</span>")};

inline nal::ui_dev_item_t* row(const nal::ui_dialog_download_waveform_data_t& dialog,
                               const QString& name) {
  return dialog.get_dev_list()->get_item(name);
}

// Ticks or unticks the row of `name` with the mouse.
inline void tick(const nal::ui_dialog_download_waveform_data_t& dialog, const QString& name) {
  QTest::mouseClick(row(dialog, name)->findChild<QCheckBox*>(QStringLiteral("DevItemSelect")),
                    Qt::LeftButton);
}

// What a user does to make a device a target: a double click on the row, then its tick box.
inline void connect_and_tick(const nal::ui_dialog_download_waveform_data_t& dialog,
                             const QString& name) {
  QTest::mouseDClick(row(dialog, name), Qt::LeftButton);
  tick(dialog, name);
}

inline QLabel* info_label(nal::ui_dev_item_t* row) {
  return row->findChild<QLabel*>(QStringLiteral("DevItemInfo"));
}
inline QLabel* status_label(nal::ui_dev_item_t* row) {
  return row->findChild<QLabel*>(QStringLiteral("DevItemStatus"));
}

// Records the text of a label each time it is painted.
class paint_spy_t : public QObject {
 public:
  explicit paint_spy_t(QLabel* label) : _label(label) { label->installEventFilter(this); }

  QString last_painted() const { return painted.isEmpty() ? QString() : painted.last(); }

  QStringList painted;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == _label && event->type() == QEvent::Paint) {
      painted.append(_label->text());
    }
    return false;
  }

 private:
  QLabel* _label;
};

// Shows the dialog and waits for the list it asks for; false when it never came.
inline bool show_and_list(nal::ui_dialog_download_waveform_data_t& dialog) {
  dialog.show();
  return QTest::qWaitForWindowExposed(&dialog) &&
         QTest::qWaitFor([&dialog] { return !dialog.get_dev_list()->is_overlay_visible(); });
}

// Answers the next message box with its default button, keeping its title and text.
class message_box_answer_t {
 public:
  message_box_answer_t() {
    _timer.setInterval(10);
    QObject::connect(&_timer, &QTimer::timeout, [this] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box != nullptr) {
        title = box->windowTitle();
        text = box->text();
        icon = box->icon();
        _timer.stop();
        box->accept();
      }
    });
    _timer.start();
  }

  QString title;
  QString text;
  QMessageBox::Icon icon = QMessageBox::NoIcon;

 private:
  QTimer _timer;
};

}  // namespace test_ui_download

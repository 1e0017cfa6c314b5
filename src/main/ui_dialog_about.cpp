#include "main/ui_dialog_about.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "cfg/cfg_software_version.h"

namespace nal {

ui_dialog_about_t::ui_dialog_about_t(QWidget* parent) : QDialog(parent) {
  setObjectName("AboutDialog");
  setWindowTitle("About");
  setWindowIcon(QIcon(":/image/Wavelume.pro"));
  setModal(true);

  auto* icon = new QLabel(this);
  icon->setPixmap(QIcon(":/image/Wavelume.pro").pixmap(64, 64));
  auto* name = new QLabel("Wavelume", this);
  name->setObjectName("AboutProductName");
  auto* version = new QLabel(QStringLiteral("  Version: ") + cfg_software_version, this);
  auto* summary = new QLabel(tr("Baseband I/Q waveforms for vector signal generators."), this);

  auto* acknowledge = new QPushButton("Open Source Acknowledge", this);
  acknowledge->setObjectName("OpenSourceAcknowledge");
  auto* close = new QPushButton("Close", this);
  close->setDefault(true);
  connect(acknowledge, &QPushButton::clicked, this, [this] {
    QMessageBox::information(this, "Open Source Acknowledge", open_source_acknowledgement());
  });
  connect(close, &QPushButton::clicked, this, &QDialog::accept);

  auto* text = new QVBoxLayout;
  text->addWidget(name);
  text->addWidget(version);
  text->addWidget(summary);
  auto* header = new QHBoxLayout;
  header->addWidget(icon, 0, Qt::AlignTop);
  header->addSpacing(12);
  header->addLayout(text, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(acknowledge);
  buttons->addStretch();
  buttons->addWidget(close);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(20, 20, 20, 16);
  layout->setSpacing(16);
  layout->addLayout(header);
  layout->addLayout(buttons);
}

QString ui_dialog_about_t::open_source_acknowledgement() {
  return tr(
      "Wavelume is built on these open source libraries:\n\n"
      "Qt 5 (LGPL 3) - application framework\n"
      "FFTW 3 (GPL 2 or later) - fast Fourier transforms\n"
      "pugixml (MIT) - XML of state and project files\n"
      "zlib (zlib licence) - compressed archive entries\n"
      "OpenMP runtime of the compiler - parallel convolution\n\n"
      "Their authors have our thanks.");
}

}  // namespace nal

#include "ui/widgets/ui_text_file.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextCodec>

namespace nal {
namespace {

QString tr(const char* text) {
  return QCoreApplication::translate("ui_text_file_t", text);
}

}  // namespace

bool ui_text_file_t::read(const QString& path, QString& text, QString& error) {
  const QString name = QFileInfo(path).fileName();
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    error = tr("Cannot open %1: %2").arg(name, file.errorString());
    return false;
  }
  if (file.size() > max_size) {
    error = tr("%1 is too large for a pattern file (%2 bytes)").arg(name).arg(file.size());
    return false;
  }
  const QByteArray bytes = file.readAll();
  QTextCodec::ConverterState state;
  const QString decoded =
      QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
  if (state.invalidChars > 0 || bytes.contains('\0')) {
    error = tr("%1 is not a text file").arg(name);
    return false;
  }
  text = decoded;
  return true;
}

bool ui_text_file_t::write(const QString& path, const QString& text, QString& error) {
  QSaveFile file(path);
  if (file.open(QIODevice::WriteOnly | QIODevice::Text)) {
    file.write(text.toUtf8());
    if (file.commit()) {
      return true;
    }
  }
  error = tr("Cannot write %1: %2").arg(QFileInfo(path).fileName(), file.errorString());
  return false;
}

}  // namespace nal

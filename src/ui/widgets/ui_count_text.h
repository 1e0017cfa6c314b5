#pragma once
// Counts in words, "1 bit", "7 bits", for the summaries and messages of the setup widgets.

#include <QString>

namespace nal {

class ui_count_text_t {
 public:
  static QString bits(qint64 count) {
    return of(count, QStringLiteral("bit"), QStringLiteral("bits"));
  }
  static QString points(qint64 count) {
    return of(count, QStringLiteral("point"), QStringLiteral("points"));
  }

 private:
  static QString of(qint64 count, const QString& one, const QString& many) {
    return QStringLiteral("%1 %2").arg(count).arg(count == 1 ? one : many);
  }
};

}  // namespace nal

#include "ui/widgets/ui_constellation_file.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <map>

#include "ui/widgets/ui_count_text.h"
#include "ui/widgets/ui_text_file.h"

namespace nal {
namespace {

QString tr(const char* text) {
  return QCoreApplication::translate("ui_constellation_file_t", text);
}

QString point_text(const lib_iq_sample_t& point) {
  return QStringLiteral("(%1, %2)").arg(point.real(), 0, 'g', 10).arg(point.imag(), 0, 'g', 10);
}

bool read_real(const QString& text, fp64& value) {
  bool ok = false;
  const fp64 read = text.toDouble(&ok);
  if (!ok || !std::isfinite(read)) {
    return false;
  }
  value = read;
  return true;
}

// One data line, already without its comment: false with the reason.
bool parse_line(const QString& line, ui_constellation_row_t& row, QString& reason) {
  static const QRegularExpression separators(QStringLiteral("[,;\\s]+"));
  const QStringList fields = line.trimmed().split(separators, Qt::SkipEmptyParts);
  if (fields.size() != 3) {
    reason = tr("expected three values \"symbol, I, Q\", found %1").arg(fields.size());
    return false;
  }
  bool ok = false;
  const uint symbol = fields[0].toUInt(&ok);
  if (!ok || symbol >= ui_constellation_file_t::max_points) {
    reason = tr("symbol \"%1\" is not a whole number from 0 to %2")
                 .arg(fields[0])
                 .arg(ui_constellation_file_t::max_points - 1);
    return false;
  }
  fp64 i = 0.0;
  fp64 q = 0.0;
  if (!read_real(fields[1], i)) {
    reason = tr("I \"%1\" is not a number").arg(fields[1]);
    return false;
  }
  if (!read_real(fields[2], q)) {
    reason = tr("Q \"%1\" is not a number").arg(fields[2]);
    return false;
  }
  row.symbol = symbol;
  row.point = lib_iq_sample_t(i, q);
  return true;
}

bool is_power_of_two(std::size_t count) {
  return count >= 2 && (count & (count - 1)) == 0;
}

bool same_point(const lib_iq_sample_t& a, const lib_iq_sample_t& b) {
  return std::fabs(a.real() - b.real()) <= common_lib::lib_tolerance &&
         std::fabs(a.imag() - b.imag()) <= common_lib::lib_tolerance;
}

}  // namespace

bool ui_constellation_file_t::parse(const QString& text, ui_constellation_rows_t& rows,
                                    QString& error) {
  ui_constellation_rows_t read_rows;
  const QStringList lines = text.split(QLatin1Char('\n'));
  for (int index = 0; index < lines.size(); ++index) {
    const QString data = lines[index].section(QLatin1Char('#'), 0, 0).trimmed();
    if (data.isEmpty()) {
      continue;
    }
    if (read_rows.size() >= max_points) {
      error = tr("Line %1: more than %2 points").arg(index + 1).arg(max_points);
      return false;
    }
    ui_constellation_row_t row;
    QString reason;
    if (!parse_line(data, row, reason)) {
      error = tr("Line %1: %2").arg(index + 1).arg(reason);
      return false;
    }
    read_rows.push_back(row);
  }
  if (read_rows.empty()) {
    error = tr("The file holds no points");
    return false;
  }
  rows = std::move(read_rows);
  return true;
}

QString ui_constellation_file_t::print(const ui_constellation_rows_t& rows) {
  QString text = QStringLiteral("# Custom constellation: symbol, I, Q\n");
  for (const ui_constellation_row_t& row : rows) {
    // 17 significant digits bring every double back unchanged.
    text += QStringLiteral("%1, %2, %3\n")
                .arg(row.symbol)
                .arg(row.point.real(), 0, 'g', 17)
                .arg(row.point.imag(), 0, 'g', 17);
  }
  return text;
}

bool ui_constellation_file_t::read(const QString& path, ui_constellation_rows_t& rows,
                                   QString& error) {
  QString text;
  return ui_text_file_t::read(path, text, error) && parse(text, rows, error);
}

bool ui_constellation_file_t::write(const QString& path, const ui_constellation_rows_t& rows,
                                    QString& error) {
  return ui_text_file_t::write(path, print(rows), error);
}

QString ui_constellation_file_t::check(const ui_constellation_rows_t& rows) {
  if (rows.empty()) {
    return tr("No points");
  }
  std::map<uint32, lib_iq_sample_t> by_symbol;
  for (const ui_constellation_row_t& row : rows) {
    if (!by_symbol.emplace(row.symbol, row.point).second) {
      return tr("Symbol %1 is given twice").arg(row.symbol);
    }
  }
  const std::size_t count = rows.size();
  if (!is_power_of_two(count)) {
    return tr("%1: the count must be a power of two (2, 4, 8, ...)")
        .arg(ui_count_text_t::points(static_cast<qint64>(count)));
  }
  if (by_symbol.rbegin()->first >= count) {
    return tr("Symbols must run from 0 to %1: %2 is out of range")
        .arg(count - 1)
        .arg(by_symbol.rbegin()->first);
  }
  ui_constellation_rows_t sorted = rows;
  std::sort(sorted.begin(), sorted.end(),
            [](const ui_constellation_row_t& a, const ui_constellation_row_t& b) {
              return a.point.real() != b.point.real() ? a.point.real() < b.point.real()
                                                      : a.point.imag() < b.point.imag();
            });
  for (std::size_t i = 1; i < sorted.size(); ++i) {
    if (same_point(sorted[i - 1].point, sorted[i].point)) {
      return tr("Symbols %1 and %2 share the point %3")
          .arg(std::min(sorted[i - 1].symbol, sorted[i].symbol))
          .arg(std::max(sorted[i - 1].symbol, sorted[i].symbol))
          .arg(point_text(sorted[i].point));
    }
  }
  return QString();
}

lib_constellation_map_t ui_constellation_file_t::to_map(const ui_constellation_rows_t& rows) {
  lib_constellation_map_t map;
  for (const ui_constellation_row_t& row : rows) {
    map.emplace(row.symbol, row.point);
  }
  return map;
}

ui_constellation_rows_t ui_constellation_file_t::from_map(const lib_constellation_map_t& map) {
  ui_constellation_rows_t rows;
  rows.reserve(map.size());
  for (const auto& [symbol, point] : map) {
    rows.push_back({symbol, point});
  }
  return rows;
}

}  // namespace nal

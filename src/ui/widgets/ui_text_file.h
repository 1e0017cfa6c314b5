#pragma once
// Small UTF-8 text files of the setup dialogs (constellations, bit patterns): whole-file read with
// a size limit, and atomic write, so a failed save never leaves half a file behind.

#include <QString>

namespace nal {

class ui_text_file_t {
 public:
  // Larger files are refused: no hand-made pattern comes near this.
  static constexpr qint64 max_size = 16 * 1024 * 1024;

  // False with a message naming the file when it cannot be opened, is too large or is not text.
  static bool read(const QString& path, QString& text, QString& error);
  static bool write(const QString& path, const QString& text, QString& error);
};

}  // namespace nal

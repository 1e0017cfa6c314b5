#pragma once
// One instrument session: opens, closes, writes commands and blocks, and reads replies. Its Qt
// parent is always the visa_resource_manager_t whose session it opens on. The only command it
// sends by itself is "*IDN?". Reads and writes block up to the session's timeout. Owns no
// lock; one thread at a time.

#include <QByteArray>
#include <QObject>
#include <QString>

#include "comm/comm_block.h"
#include "comm/comm_visa_types.h"

namespace nal {

class visa_resource_manager_t;

class visa_resource_t : public QObject {
  Q_OBJECT

 public:
  // Replies longer than this are refused: an instrument that streams without end cannot
  // exhaust memory.
  static constexpr int max_reply_bytes = 1 << 20;

  // Created closed.
  visa_resource_t(visa_resource_manager_t* manager, const QString& resource_name);
  ~visa_resource_t() override;

  // Opens the session and asks "*IDN?". True at once when already open; true even when the
  // instrument does not answer. A failure is written to the debug log.
  bool open(std::uint32_t access_mode, std::uint32_t timeout_ms);
  // close, then open with no lock and a timeout of comm_default_timeout_ms.
  bool reopen();
  // True when closed, or closed with success or VI_WARN_NULL_OBJECT.
  bool close();
  comm_vi_status_t set_attribute(std::uint32_t attribute, comm_vi_attr_state_t value);
  // Writes the bytes as they are, no terminator added; the count written, 0 on failure.
  std::uint32_t write_command(const QByteArray& command);
  // Reads in 256-byte pieces until a read ends with plain success; empty on any error.
  QByteArray read_reply();
  // write_command, then read_reply when something was written.
  QByteArray query(const QByteArray& command);
  // The block as one message: a viWrite per piece, with VI_ATTR_SEND_END_EN off for all but the
  // last, so that the instrument sees a single block and END only after its last byte. A VISA
  // library that refuses the attribute gets the block joined into one viWrite instead. END is
  // on again afterwards, also after a failure. The count written, 0 unless all of it was.
  // Nothing is logged.
  std::uint64_t write_block(const comm_block_t& block);
  // Queries "*IDN?" and keeps the trimmed reply; true when it is not empty.
  bool refresh_idn();

  // The last identification while open, otherwise empty.
  QString get_idn() const { return is_open() ? _idn : QString(); }
  bool is_open() const { return _session != 0; }
  const QString& get_resource_name() const { return _resource_name; }
  // The parent manager, or null.
  visa_resource_manager_t* get_manager() const;

 private:
  // One viWrite of all `size` bytes on the open session.
  comm_vi_status_t _write(const unsigned char* bytes, std::size_t size, std::uint32_t& written);
  // Switches END on the last byte of each viWrite on or off; true when the session took it.
  bool _send_end(bool enabled);

  QString _resource_name;
  comm_vi_session_t _session = 0;
  QString _idn;
};

}  // namespace nal

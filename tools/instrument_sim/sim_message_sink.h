#pragma once
// The instrument behind every transport: it assembles one written message from the pieces a
// transport delivers, and at the message's end records it and acts on it. A message that begins
// "IQDA " is a block and is kept whole (as bytes, MD5 or size); "*IDN?" leaves the identification
// line as the reply to be read; anything else is recorded and ignored. One per instrument
// session, used by one thread.

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

#include "tools/instrument_sim/sim_wire_record.h"

class QCryptographicHash;

namespace wavelume_sim {

class sim_message_sink_t {
 public:
  // The reply to "*IDN?", line feed included.
  static const char* const identification;

  sim_message_sink_t(sim_wire_record_t& record, sim_transport_t transport, int session,
                     sim_block_keeping_t keeping);
  ~sim_message_sink_t();
  sim_message_sink_t(const sim_message_sink_t&) = delete;
  sim_message_sink_t& operator=(const sim_message_sink_t&) = delete;

  void feed(const unsigned char* data, std::size_t size);
  // Ends the message begun by `feed`; without one nothing is recorded.
  void end_message();
  bool message_begun() const { return _size > 0; }
  // Bytes fed to the message so far.
  std::size_t message_size() const { return _size; }
  // True once the message is known to be a block.
  bool in_block() const { return _is_block; }

  // The first bytes that tell a block from a command.
  static constexpr std::size_t block_prefix_size = 5;

  // The reply waiting to be read, and taking `count` bytes of it (fewer if shorter).
  const std::string& pending_reply() const { return _reply; }
  std::string take_reply(std::size_t count);

  // Records a connect, read or close of this session, happening now; `bytes` are those of a
  // reply served.
  void record_event(sim_wire_event_t::kind_t kind, const std::string& bytes = {});

  sim_wire_record_t& record() { return _record; }
  sim_transport_t transport() const { return _transport; }
  int session() const { return _session; }

 private:
  sim_wire_record_t& _record;
  const sim_transport_t _transport;
  const int _session;
  const sim_block_keeping_t _keeping;

  std::size_t _size = 0;
  bool _is_block = false;
  std::chrono::steady_clock::time_point _started;
  std::chrono::steady_clock::time_point _last_byte;
  // The head until the kind is known, then the text of a command or the bytes of a block kept
  // as bytes.
  std::string _text;
  std::unique_ptr<QCryptographicHash> _hash;
  std::string _reply;
};

}  // namespace wavelume_sim

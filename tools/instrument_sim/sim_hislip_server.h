#pragma once
// HiSLIP (IVI-6.1, version 1.0, synchronized mode) on one port for both channels. A connection
// is the synchronous channel when it opens with Initialize, which creates a session, and the
// asynchronous one when it opens with AsyncInitialize for an existing session. Data and DataEnd
// on the synchronous channel feed the instrument; DataEnd ends a message, and a reply goes back
// as one DataEnd carrying the message ID of the message that asked. The asynchronous channel
// answers AsyncMaximumMessageSize, AsyncLock, AsyncLockInfo, AsyncRemoteLocalControl,
// AsyncStatusQuery and AsyncDeviceClear. Data before both channels stand, or a Data payload
// above the announced maximum message size, is refused as the standard says (FatalError 2,
// Error 4); a malformed header ends the connection with FatalError 1.

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "tools/instrument_sim/sim_tcp_server.h"
#include "tools/instrument_sim/sim_wire_record.h"

namespace wavelume_sim {

struct sim_hislip_options_t {
  // Announced in AsyncMaximumMessageSizeResponse: the largest Data payload accepted.
  std::uint64_t max_message_size = 1024 * 1024;
  sim_block_keeping_t keeping = sim_block_keeping_t::md5;
};

class sim_hislip_server_t : public sim_tcp_server_t {
 public:
  sim_hislip_server_t(sim_wire_record_t& record, sim_hislip_options_t options);
  ~sim_hislip_server_t() override;

  // The largest Data or DataEnd payload received so far.
  std::uint64_t largest_payload() const;

 protected:
  // See base class.
  void serve(int socket) override;

 private:
  struct header_t;
  struct session_t;

  void _serve_synchronous(int socket, const header_t& initialize);
  void _serve_asynchronous(int socket, const header_t& initialize);
  // Reads and discards a payload; false when the connection ends.
  static bool _skip(int socket, std::uint64_t size);

  sim_wire_record_t& _record;
  const sim_hislip_options_t _options;
  mutable std::mutex _mutex;
  std::map<std::uint16_t, std::shared_ptr<session_t>> _sessions;
  std::uint16_t _last_session_id = 0;
  std::uint64_t _largest_payload = 0;
};

}  // namespace wavelume_sim

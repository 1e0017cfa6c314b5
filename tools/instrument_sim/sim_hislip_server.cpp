#include "tools/instrument_sim/sim_hislip_server.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <string>
#include <vector>

#include "tools/instrument_sim/sim_message_sink.h"
#include "tools/instrument_sim/sim_socket_io.h"

namespace wavelume_sim {

namespace {

enum message_type_t : std::uint8_t {
  INITIALIZE = 0,
  INITIALIZE_RESPONSE = 1,
  FATAL_ERROR = 2,
  ERROR = 3,
  ASYNC_LOCK = 4,
  ASYNC_LOCK_RESPONSE = 5,
  DATA = 6,
  DATA_END = 7,
  DEVICE_CLEAR_COMPLETE = 8,
  DEVICE_CLEAR_ACKNOWLEDGE = 9,
  ASYNC_REMOTE_LOCAL_CONTROL = 10,
  ASYNC_REMOTE_LOCAL_RESPONSE = 11,
  TRIGGER = 12,
  ASYNC_MAXIMUM_MESSAGE_SIZE = 15,
  ASYNC_MAXIMUM_MESSAGE_SIZE_RESPONSE = 16,
  ASYNC_INITIALIZE = 17,
  ASYNC_INITIALIZE_RESPONSE = 18,
  ASYNC_DEVICE_CLEAR = 19,
  ASYNC_STATUS_QUERY = 21,
  ASYNC_STATUS_RESPONSE = 22,
  ASYNC_DEVICE_CLEAR_ACKNOWLEDGE = 23,
  ASYNC_LOCK_INFO = 24,
  ASYNC_LOCK_INFO_RESPONSE = 25,
};

enum fatal_error_t : std::uint8_t {
  POORLY_FORMED_HEADER = 1,
  CHANNELS_NOT_ESTABLISHED = 2,
  INVALID_INITIALIZATION = 3,
};

enum error_t : std::uint8_t { UNRECOGNIZED_MESSAGE_TYPE = 1, MESSAGE_TOO_LARGE = 4 };

constexpr std::uint16_t protocol_version = 0x0100;
constexpr std::uint16_t vendor_id = ('W' << 8) | 'L';
constexpr std::size_t header_size = 16;
constexpr std::size_t sub_address_limit = 256;
constexpr std::size_t receive_chunk = 256 * 1024;

std::uint64_t big_endian(const unsigned char* bytes, int count) {
  std::uint64_t value = 0;
  for (int i = 0; i < count; ++i) {
    value = (value << 8) | bytes[i];
  }
  return value;
}

void put_big_endian(std::string& out, std::uint64_t value, int count) {
  for (int i = count - 1; i >= 0; --i) {
    out.push_back(static_cast<char>(value >> (8 * i)));
  }
}

bool accepted_sub_address(const std::string& name) {
  return name.size() > 6 && name.compare(0, 6, "hislip") == 0 &&
         std::all_of(name.begin() + 6, name.end(),
                     [](unsigned char c) { return std::isdigit(c) != 0; });
}

}  // namespace

struct sim_hislip_server_t::header_t {
  std::uint8_t type = 0;
  std::uint8_t control = 0;
  std::uint32_t parameter = 0;
  std::uint64_t payload_size = 0;

  // False when the connection ended or the header is not a HiSLIP header.
  bool read(int socket, bool& well_formed) {
    unsigned char bytes[header_size];
    well_formed = true;
    if (!sim_receive_exact(socket, bytes, header_size)) {
      return false;
    }
    if (bytes[0] != 'H' || bytes[1] != 'S') {
      well_formed = false;
      return false;
    }
    type = bytes[2];
    control = bytes[3];
    parameter = static_cast<std::uint32_t>(big_endian(bytes + 4, 4));
    payload_size = big_endian(bytes + 8, 8);
    return true;
  }

  static bool send(int socket, std::uint8_t type, std::uint8_t control, std::uint32_t parameter,
                   const std::string& payload = {}) {
    std::string message = "HS";
    message.push_back(static_cast<char>(type));
    message.push_back(static_cast<char>(control));
    put_big_endian(message, parameter, 4);
    put_big_endian(message, payload.size(), 8);
    message += payload;
    return sim_send_all(socket, message.data(), message.size());
  }
};

struct sim_hislip_server_t::session_t {
  std::unique_ptr<sim_message_sink_t> sink;
  std::atomic<bool> asynchronous_attached{false};
};

sim_hislip_server_t::sim_hislip_server_t(sim_wire_record_t& record, sim_hislip_options_t options)
    : _record(record), _options(options) {}

sim_hislip_server_t::~sim_hislip_server_t() {
  stop();
}

std::uint64_t sim_hislip_server_t::largest_payload() const {
  std::lock_guard<std::mutex> lock(_mutex);
  return _largest_payload;
}

void sim_hislip_server_t::serve(int socket) {
  header_t first;
  bool well_formed = true;
  if (!first.read(socket, well_formed)) {
    if (!well_formed) {
      header_t::send(socket, FATAL_ERROR, POORLY_FORMED_HEADER, 0);
    }
    return;
  }
  if (first.type == INITIALIZE) {
    _serve_synchronous(socket, first);
  } else if (first.type == ASYNC_INITIALIZE) {
    _serve_asynchronous(socket, first);
  } else {
    header_t::send(socket, FATAL_ERROR, INVALID_INITIALIZATION, 0);
  }
}

bool sim_hislip_server_t::_skip(int socket, std::uint64_t size) {
  std::vector<unsigned char> buffer(std::min<std::uint64_t>(size, receive_chunk));
  while (size > 0) {
    const std::size_t piece =
        static_cast<std::size_t>(std::min<std::uint64_t>(size, buffer.size()));
    if (!sim_receive_exact(socket, buffer.data(), piece)) {
      return false;
    }
    size -= piece;
  }
  return true;
}

void sim_hislip_server_t::_serve_synchronous(int socket, const header_t& initialize) {
  if (initialize.payload_size > sub_address_limit) {
    header_t::send(socket, FATAL_ERROR, INVALID_INITIALIZATION, 0);
    return;
  }
  std::string sub_address(static_cast<std::size_t>(initialize.payload_size), '\0');
  if (!sim_receive_exact(socket, sub_address.data(), sub_address.size())) {
    return;
  }
  if (!accepted_sub_address(sub_address)) {
    header_t::send(socket, FATAL_ERROR, INVALID_INITIALIZATION, 0, "unknown sub-address");
    return;
  }
  auto session = std::make_shared<session_t>();
  session->sink = std::make_unique<sim_message_sink_t>(_record, sim_transport_t::hislip,
                                                       _record.next_session(), _options.keeping);
  std::uint16_t session_id = 0;
  {
    std::lock_guard<std::mutex> lock(_mutex);
    session_id = ++_last_session_id;
    _sessions[session_id] = session;
  }
  sim_message_sink_t& sink = *session->sink;
  sink.record_event(sim_wire_event_t::CONNECT);
  header_t::send(socket, INITIALIZE_RESPONSE, 0,
                 (std::uint32_t{protocol_version} << 16) | session_id);

  std::vector<unsigned char> buffer(receive_chunk);
  header_t header;
  bool well_formed = true;
  bool open = true;
  while (open && header.read(socket, well_formed)) {
    switch (header.type) {
      case DATA:
      case DATA_END: {
        if (!session->asynchronous_attached) {
          header_t::send(socket, FATAL_ERROR, CHANNELS_NOT_ESTABLISHED, 0);
          open = false;
          break;
        }
        {
          std::lock_guard<std::mutex> lock(_mutex);
          _largest_payload = std::max(_largest_payload, header.payload_size);
        }
        if (header.payload_size > _options.max_message_size) {
          open = _skip(socket, header.payload_size) &&
                 header_t::send(socket, ERROR, MESSAGE_TOO_LARGE, 0);
          break;
        }
        for (std::uint64_t left = header.payload_size; open && left > 0;) {
          const std::size_t piece =
              static_cast<std::size_t>(std::min<std::uint64_t>(left, buffer.size()));
          open = sim_receive_exact(socket, buffer.data(), piece);
          if (open) {
            sink.feed(buffer.data(), piece);
          }
          left -= piece;
        }
        if (open && header.type == DATA_END) {
          sink.end_message();
          if (!sink.pending_reply().empty()) {
            const std::string reply = sink.take_reply(sink.pending_reply().size());
            sink.record_event(sim_wire_event_t::READ, reply);
            open = header_t::send(socket, DATA_END, 0, header.parameter, reply);
          }
        }
        break;
      }
      case DEVICE_CLEAR_COMPLETE:
        sink.end_message();
        sink.take_reply(sink.pending_reply().size());
        open = _skip(socket, header.payload_size) &&
               header_t::send(socket, DEVICE_CLEAR_ACKNOWLEDGE, 0, 0);
        break;
      case TRIGGER:
        open = _skip(socket, header.payload_size);
        break;
      default:
        open = _skip(socket, header.payload_size) &&
               header_t::send(socket, ERROR, UNRECOGNIZED_MESSAGE_TYPE, 0);
    }
  }
  if (!well_formed) {
    header_t::send(socket, FATAL_ERROR, POORLY_FORMED_HEADER, 0);
  }
  sink.end_message();
  sink.record_event(sim_wire_event_t::CLOSE);
  std::lock_guard<std::mutex> lock(_mutex);
  _sessions.erase(session_id);
}

void sim_hislip_server_t::_serve_asynchronous(int socket, const header_t& initialize) {
  std::shared_ptr<session_t> session;
  {
    std::lock_guard<std::mutex> lock(_mutex);
    const auto found = _sessions.find(static_cast<std::uint16_t>(initialize.parameter));
    if (initialize.parameter <= 0xFFFF && found != _sessions.end()) {
      session = found->second;
    }
  }
  if (!session || session->asynchronous_attached.exchange(true) ||
      !_skip(socket, initialize.payload_size)) {
    header_t::send(socket, FATAL_ERROR, INVALID_INITIALIZATION, 0);
    return;
  }
  header_t::send(socket, ASYNC_INITIALIZE_RESPONSE, 0, vendor_id);
  header_t header;
  bool well_formed = true;
  bool open = true;
  while (open && header.read(socket, well_formed)) {
    if (header.type == ASYNC_MAXIMUM_MESSAGE_SIZE) {
      std::string size;
      put_big_endian(size, _options.max_message_size, 8);
      open = _skip(socket, header.payload_size) &&
             header_t::send(socket, ASYNC_MAXIMUM_MESSAGE_SIZE_RESPONSE, 0, 0, size);
      continue;
    }
    open = _skip(socket, header.payload_size);
    switch (header.type) {
      case ASYNC_LOCK:
        open = open && header_t::send(socket, ASYNC_LOCK_RESPONSE, 1, 0);
        break;
      case ASYNC_LOCK_INFO:
        open = open && header_t::send(socket, ASYNC_LOCK_INFO_RESPONSE, 0, 0);
        break;
      case ASYNC_REMOTE_LOCAL_CONTROL:
        open = open && header_t::send(socket, ASYNC_REMOTE_LOCAL_RESPONSE, 0, 0);
        break;
      case ASYNC_STATUS_QUERY:
        open = open && header_t::send(socket, ASYNC_STATUS_RESPONSE, 0, 0);
        break;
      case ASYNC_DEVICE_CLEAR:
        open = open && header_t::send(socket, ASYNC_DEVICE_CLEAR_ACKNOWLEDGE, 0, 0);
        break;
      default:
        open = open && header_t::send(socket, ERROR, UNRECOGNIZED_MESSAGE_TYPE, 0);
    }
  }
  if (!well_formed) {
    header_t::send(socket, FATAL_ERROR, POORLY_FORMED_HEADER, 0);
  }
}

}  // namespace wavelume_sim

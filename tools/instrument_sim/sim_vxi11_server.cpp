#include "tools/instrument_sim/sim_vxi11_server.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "tools/instrument_sim/sim_message_sink.h"

namespace wavelume_sim {

namespace {

enum procedure_t : std::uint32_t {
  NULL_PROCEDURE = 0,
  CREATE_LINK = 10,
  DEVICE_WRITE = 11,
  DEVICE_READ = 12,
  DESTROY_LINK = 23,
};

enum error_t : std::int32_t {
  NO_ERROR = 0,
  DEVICE_NOT_ACCESSIBLE = 3,
  INVALID_LINK = 4,
  PARAMETER_ERROR = 5,
  IO_TIMEOUT = 15,
};

constexpr std::uint32_t flag_end = 0x08;
constexpr std::uint32_t flag_termination_character = 0x80;
constexpr std::uint32_t reason_request_count = 0x1;
constexpr std::uint32_t reason_character = 0x2;
constexpr std::uint32_t reason_end = 0x4;
constexpr std::size_t device_name_limit = 256;

bool accessible(const std::string& device) {
  return device.size() > 4 && device.compare(0, 4, "inst") == 0 &&
         std::all_of(device.begin() + 4, device.end(),
                     [](unsigned char c) { return std::isdigit(c) != 0; });
}

}  // namespace

sim_vxi11_server_t::sim_vxi11_server_t(sim_wire_record_t& record, sim_vxi11_options_t options)
    : sim_rpc_server_t(program, version, std::size_t{options.max_receive_size} + 4096,
                       options.reply_fragment_size),
      _record(record),
      _options(options) {}

sim_vxi11_server_t::~sim_vxi11_server_t() {
  stop();
}

sim_rpc_server_t::accept_status_t sim_vxi11_server_t::call(int socket, std::uint32_t procedure,
                                                           sim_xdr_reader_t& arguments,
                                                           sim_xdr_writer_t& results) {
  switch (procedure) {
    case NULL_PROCEDURE:
      return SUCCESS;
    case CREATE_LINK:
      _create_link(socket, arguments, results);
      break;
    case DEVICE_WRITE:
      _device_write(socket, arguments, results);
      break;
    case DEVICE_READ:
      _device_read(socket, arguments, results);
      break;
    case DESTROY_LINK:
      _destroy_link(socket, arguments, results);
      break;
    default:
      return PROC_UNAVAIL;
  }
  return arguments.ok() ? SUCCESS : GARBAGE_ARGS;
}

void sim_vxi11_server_t::_create_link(int socket, sim_xdr_reader_t& arguments,
                                      sim_xdr_writer_t& results) {
  arguments.i32();  // client id
  arguments.u32();  // lock device
  arguments.u32();  // lock timeout
  const std::string device = arguments.string(device_name_limit);
  if (!arguments.ok() || !accessible(device)) {
    results.i32(DEVICE_NOT_ACCESSIBLE);
    results.u32(0);
    results.u32(0);
    results.u32(0);
    return;
  }
  auto link = std::make_unique<link_t>();
  link->socket = socket;
  const int session = _record.next_session();
  link->sink = std::make_unique<sim_message_sink_t>(_record, sim_transport_t::vxi11, session,
                                                    _options.keeping);
  link->sink->record_event(sim_wire_event_t::CONNECT);
  {
    std::lock_guard<std::mutex> lock(_mutex);
    _links[static_cast<std::uint32_t>(session)] = std::move(link);
  }
  results.i32(NO_ERROR);
  results.u32(static_cast<std::uint32_t>(session));
  results.u32(0);  // no abort channel
  results.u32(_options.max_receive_size);
}

void sim_vxi11_server_t::_device_write(int socket, sim_xdr_reader_t& arguments,
                                       sim_xdr_writer_t& results) {
  const std::uint32_t link_id = arguments.u32();
  arguments.u32();  // I/O timeout
  arguments.u32();  // lock timeout
  const std::uint32_t flags = arguments.u32();
  const unsigned char* data = nullptr;
  std::size_t size = 0;
  arguments.opaque(data, size);
  link_t* link = _find(socket, link_id);
  std::int32_t error = NO_ERROR;
  if (!arguments.ok()) {
    return;
  }
  if (link == nullptr) {
    error = INVALID_LINK;
  } else if (size > _options.max_receive_size) {
    error = PARAMETER_ERROR;
  } else {
    ++_device_write_calls;
    link->sink->feed(data, size);
    if ((flags & flag_end) != 0) {
      link->sink->end_message();
    }
  }
  results.i32(error);
  results.u32(error == NO_ERROR ? static_cast<std::uint32_t>(size) : 0);
}

void sim_vxi11_server_t::_device_read(int socket, sim_xdr_reader_t& arguments,
                                      sim_xdr_writer_t& results) {
  const std::uint32_t link_id = arguments.u32();
  const std::uint32_t request_size = arguments.u32();
  arguments.u32();  // I/O timeout
  arguments.u32();  // lock timeout
  const std::uint32_t flags = arguments.u32();
  const char termination = static_cast<char>(arguments.u32());
  link_t* link = _find(socket, link_id);
  if (!arguments.ok()) {
    return;
  }
  if (link == nullptr || link->sink->pending_reply().empty()) {
    results.i32(link == nullptr ? INVALID_LINK : IO_TIMEOUT);
    results.u32(0);
    results.opaque(nullptr, 0);
    return;
  }
  const std::string& pending = link->sink->pending_reply();
  std::size_t count = std::min<std::size_t>(request_size, pending.size());
  std::uint32_t reason = 0;
  if ((flags & flag_termination_character) != 0) {
    const std::size_t found = pending.find(termination);
    if (found != std::string::npos && found < count) {
      count = found + 1;
      reason |= reason_character;
    }
  }
  const std::string piece = link->sink->take_reply(count);
  if (link->sink->pending_reply().empty()) {
    reason |= reason_end;
  } else if ((reason & reason_character) == 0) {
    reason |= reason_request_count;
  }
  link->sink->record_event(sim_wire_event_t::READ, piece);
  results.i32(NO_ERROR);
  results.u32(reason);
  results.opaque(piece.data(), piece.size());
}

void sim_vxi11_server_t::_destroy_link(int socket, sim_xdr_reader_t& arguments,
                                       sim_xdr_writer_t& results) {
  const std::uint32_t link_id = arguments.u32();
  if (!arguments.ok()) {
    return;
  }
  link_t* link = _find(socket, link_id);
  if (link != nullptr) {
    link->sink->end_message();
    link->sink->record_event(sim_wire_event_t::CLOSE);
    _remove(link_id);
  }
  results.i32(link == nullptr ? INVALID_LINK : NO_ERROR);
}

void sim_vxi11_server_t::closed(int socket) {
  std::vector<std::unique_ptr<link_t>> orphans;
  {
    std::lock_guard<std::mutex> lock(_mutex);
    for (auto it = _links.begin(); it != _links.end();) {
      if (it->second->socket == socket) {
        orphans.push_back(std::move(it->second));
        it = _links.erase(it);
      } else {
        ++it;
      }
    }
  }
  // A link left without destroy_link ends with its connection.
  for (auto& link : orphans) {
    link->sink->end_message();
    link->sink->record_event(sim_wire_event_t::CLOSE);
  }
}

sim_vxi11_server_t::link_t* sim_vxi11_server_t::_find(int socket, std::uint32_t link_id) {
  std::lock_guard<std::mutex> lock(_mutex);
  const auto found = _links.find(link_id);
  return found == _links.end() || found->second->socket != socket ? nullptr : found->second.get();
}

void sim_vxi11_server_t::_remove(std::uint32_t link_id) {
  std::lock_guard<std::mutex> lock(_mutex);
  _links.erase(link_id);
}

}  // namespace wavelume_sim

#include "tools/instrument_sim/sim_message_sink.h"

#include <QCryptographicHash>

#include <algorithm>
#include <cctype>
#include <cstring>

namespace wavelume_sim {

namespace {

constexpr char block_prefix[] = "IQDA ";
constexpr std::size_t block_prefix_size = sizeof block_prefix - 1;
// Commands are short; a longer message that is no block is counted but not held.
constexpr std::size_t command_limit = 64 * 1024;
constexpr std::size_t head_size = sim_wire_event_t::head_size;

// The command without surrounding white space, in upper case: SCPI ignores case.
std::string normalized(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) {
    return {};
  }
  std::string command = text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
  std::transform(command.begin(), command.end(), command.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return command;
}

}  // namespace

const char* const sim_message_sink_t::identification =
    "Wavelume,Loopback Instrument Simulator,SIM0001,1.0\n";

sim_message_sink_t::sim_message_sink_t(sim_wire_record_t& record, sim_transport_t transport,
                                       int session, sim_block_keeping_t keeping)
    : _record(record), _transport(transport), _session(session), _keeping(keeping) {}

sim_message_sink_t::~sim_message_sink_t() = default;

void sim_message_sink_t::feed(const unsigned char* data, std::size_t size) {
  if (size == 0) {
    return;
  }
  if (_size == 0) {
    _started = std::chrono::steady_clock::now();
  }
  _last_byte = std::chrono::steady_clock::now();
  const bool kind_known = _size >= block_prefix_size;
  _size += size;
  if (_is_block) {
    if (_hash) {
      _hash->addData(reinterpret_cast<const char*>(data), static_cast<int>(size));
    }
    const std::size_t held = _keeping == sim_block_keeping_t::bytes
                                 ? size
                                 : std::min(size, head_size - std::min(head_size, _text.size()));
    _text.append(reinterpret_cast<const char*>(data), held);
    return;
  }
  const std::size_t taken = std::min(size, command_limit - std::min(command_limit, _text.size()));
  _text.append(reinterpret_cast<const char*>(data), taken);
  if (kind_known || _text.size() < block_prefix_size ||
      std::memcmp(_text.data(), block_prefix, block_prefix_size) != 0) {
    return;
  }
  // The head has just shown a block: what was held so far is its beginning.
  _is_block = true;
  const char* rest = reinterpret_cast<const char*>(data) + taken;
  if (_keeping != sim_block_keeping_t::size_only) {
    _hash = std::make_unique<QCryptographicHash>(QCryptographicHash::Md5);
    _hash->addData(_text.data(), static_cast<int>(_text.size()));
    _hash->addData(rest, static_cast<int>(size - taken));
  }
  if (_keeping == sim_block_keeping_t::bytes) {
    _text.append(rest, size - taken);
  } else {
    _text.resize(std::min(_text.size(), head_size));
  }
}

void sim_message_sink_t::end_message() {
  if (_size == 0) {
    return;
  }
  sim_wire_event_t event;
  event.transport = _transport;
  event.kind = sim_wire_event_t::WRITE;
  event.session = _session;
  event.size = _size;
  event.head = _text.substr(0, sim_wire_event_t::head_size);
  event.time = _started;
  event.last_byte_time = _last_byte;
  _record.add_event(std::move(event));
  if (_is_block) {
    sim_kept_block_t block;
    block.transport = _transport;
    block.session = _session;
    block.size = _size;
    if (_hash) {
      block.md5 = _hash->result().toHex().toStdString();
    }
    if (_keeping == sim_block_keeping_t::bytes) {
      block.bytes = std::move(_text);
    }
    _record.add_block(std::move(block));
  } else if (normalized(_text) == "*IDN?") {
    _reply = identification;
  }
  _size = 0;
  _is_block = false;
  _text.clear();
  _hash.reset();
}

void sim_message_sink_t::record_event(sim_wire_event_t::kind_t kind, const std::string& bytes) {
  sim_wire_event_t event;
  event.transport = _transport;
  event.kind = kind;
  event.session = _session;
  event.size = bytes.size();
  event.head = bytes.substr(0, head_size);
  event.time = std::chrono::steady_clock::now();
  event.last_byte_time = event.time;
  _record.add_event(std::move(event));
}

std::string sim_message_sink_t::take_reply(std::size_t count) {
  const std::string piece = _reply.substr(0, count);
  _reply.erase(0, piece.size());
  return piece;
}

}  // namespace wavelume_sim
